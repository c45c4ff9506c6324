#pragma once

/// Marks what the shared libraries export. Everything else stays inside them.
#define KIFO_EXPORT __attribute__((visibility("default")))
