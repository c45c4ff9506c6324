#pragma once

/// Marks the public classes and functions, which the shared libraries export.
#define KIFO_EXPORT __attribute__((visibility("default")))

/// Marks what one of the SDK's libraries uses of another one's internals. It is exported, but its
/// header is not installed: hosts cannot use it.
#define KIFO_SHARED __attribute__((visibility("default")))
