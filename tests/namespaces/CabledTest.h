#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>

#include "testing/NetworkNamespace.h"
#include "tests/support/Common.h"

namespace kifo::testing {

/// How long a wait takes when what it waits for does not come. A test that has failed already waits
/// no more: it ends soon, however many waits follow.
inline std::chrono::seconds patience() {
  return std::chrono::seconds(::testing::Test::HasFailure() ? 0 : 20);
}

/// A host and the net beyond it, on a cable, without a route yet:
///
///     host  up0    10.7.0.2, fd07::2
///     ──────┴────────┬──────────────
///     net   host0    10.7.0.1, fd07::1
///
/// The calling thread is inside the host while a test runs. Skipped where such a network may not be
/// made.
class CabledTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!NetworkNamespace::whyNot().empty()) GTEST_SKIP() << NetworkNamespace::whyNot();
    host_.emplace();
    net_.emplace();
    plug("up0");
    inside_.emplace(*host_);
  }

  /// Makes another cable in place of one that is gone.
  void plug(const std::string& interface) {
    host_->connect(interface, *net_, "host0");
    host("addr add 10.7.0.2/24 dev " + interface);
    host("addr add fd07::2/64 dev " + interface + " nodad");
    net("addr add 10.7.0.1/24 dev host0");
    net("addr add fd07::1/64 dev host0 nodad");
  }
  /// The words of an `ip` command on that side.
  void host(const std::string& words) { ASSERT_TRUE(host_->ip(words)) << words; }
  void net(const std::string& words) { ASSERT_TRUE(net_->ip(words)) << words; }

  std::optional<NetworkNamespace> host_;
  std::optional<NetworkNamespace> net_;
  std::optional<InNamespace> inside_;
};

}  // namespace kifo::testing
