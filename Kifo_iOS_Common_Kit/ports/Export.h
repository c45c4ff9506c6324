#pragma once

/// Marks the public classes and functions, which the shared libraries export.
#define KIFO_EXPORT __attribute__((visibility("default")))

/// Marks what kifo::ui and kifo::testing use of kifo::kit's internals. It is exported, but its
/// header is not installed: hosts cannot use it.
#define KIFO_SHARED __attribute__((visibility("default")))
