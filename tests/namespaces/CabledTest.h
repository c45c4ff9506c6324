#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/reachability/NetlinkReachability.h"
#include "platform/linux/threads/LinuxSerialQueue.h"
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

/// Starts a real reachability source in the namespace of the calling thread and keeps what it says.
class SourceWatcher {
 public:
  explicit SourceWatcher(std::vector<std::string> targets = {})
      : service_(queue_, std::move(targets)), source_(service_.createWithAddress({16, 2}, error_)) {
    if (!source_) return;
    source_->setCallback([this] { take(); }, {});
    source_->setDispatchQueue(queue_);
  }
  ~SourceWatcher() {
    // A call that is running reads the source: it ends before the source does.
    if (source_) source_->setCallback({}, {});
    queue_->sync([] {});
    source_.reset();
    queue_->stop(SerialQueue::Duration(10));
  }
  SourceWatcher(const SourceWatcher&) = delete;
  SourceWatcher& operator=(const SourceWatcher&) = delete;

  [[nodiscard]] int error() const { return error_; }
  [[nodiscard]] ReachabilitySource& source() { return *source_; }
  [[nodiscard]] LinuxSerialQueue& queue() { return *queue_; }

  /// Reads now; none when that fails.
  std::optional<std::uint32_t> read() {
    std::uint32_t flags = 0;
    return source_->flags(flags) == 0 ? std::optional(flags) : std::nullopt;
  }

  /// Waits until a change was told after which the flags read as `expected`; the flags at last.
  std::uint32_t await(std::uint32_t expected) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, patience(), [&] { return last_ == expected; });
    return last_.value_or(~std::uint32_t{0});
  }

  [[nodiscard]] std::size_t calls() const {
    const std::lock_guard lock(mutex_);
    return calls_;
  }

 private:
  void take() {
    const auto flags = read();
    const std::lock_guard lock(mutex_);
    ++calls_;
    last_ = flags;
    changed_.notify_all();
  }

  const std::shared_ptr<LinuxSerialQueue> queue_ = std::make_shared<LinuxSerialQueue>("watcher");
  NetlinkReachabilityService service_;
  int error_ = 0;
  std::unique_ptr<ReachabilitySource> source_;

  mutable std::mutex mutex_;
  std::condition_variable changed_;
  // Guarded by mutex_.
  std::optional<std::uint32_t> last_;
  std::size_t calls_ = 0;
};

}  // namespace kifo::testing
