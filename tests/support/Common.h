#pragma once

// What nearly every test uses.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "testing/FakePlatform.h"

namespace kifo {

using Lines = std::vector<std::string>;

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Ge;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Le;
using ::testing::Not;
using ::testing::Pair;
using ::testing::SizeIs;
using ::testing::StartsWith;
using ::testing::UnorderedElementsAre;

}  // namespace kifo

namespace kifo::testing {

/// A test on a platform of fakes.
class FakesTest : public ::testing::Test {
 protected:
  InstalledFakePlatform fake_;
};

/// Installs the platform of fakes with what `change` makes of it.
inline void installWith(const FakePlatform& fake, const std::function<void(Platform&)>& change) {
  Platform platform = fake.platform();
  change(platform);
  Platform::install(std::move(platform));
}

/// The last element. An empty list fails the test and does not end the process, as `back` may.
template <class List>
auto last(const List& list) {
  return list.at(list.size() - 1);
}

/// Runs `work` on several threads at once, each with its number, and waits for all of them.
inline void onThreads(int count, const std::function<void(int)>& work) {
  std::vector<std::thread> threads;
  for (int number = 0; number < count; ++number) threads.emplace_back(work, number);
  for (auto& thread : threads) thread.join();
}

}  // namespace kifo::testing
