#pragma once

/// The SDK's version, sent with every event as "sdk_version". CMake reads it from here, so that
/// this line is the one place that says it.
#define KIFO_VERSION "1.2.10"
