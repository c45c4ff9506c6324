#pragma once

#include <gtest/gtest.h>

#include <chrono>

namespace kifo::testing {

/// How long a wait takes when what it waits for does not come. A test that has failed already waits
/// no more: it ends soon, however many waits follow.
inline std::chrono::seconds patience() {
  return std::chrono::seconds(::testing::Test::HasFailure() ? 0 : 20);
}

}  // namespace kifo::testing
