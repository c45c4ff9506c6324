#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <optional>

#include "Kifo_iOS_Common_Kit/core/Statistics.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {

/// The counters of one session and, once the store was read, those that it keeps.
///
/// How they add up at every instant: counters only grow, but for `waiting`, and `underWay` is not
/// counted: it is what came in and is nowhere else. An event counts in `composed` first and at its
/// end last, each with release; `read` reads in the opposite order. So it sees each event that it
/// sees ended or waiting come in too, and one that moves meanwhile is under way.
///
/// **Threading:** `add` is thread-safe and takes no lock; the others say what they need.
class Counters {
 public:
  void add(Counter counter) { at(counter).fetch_add(1, std::memory_order_release); }

  /// A row waits whose event was under way. Main queue only, like the next one.
  void toWaiting() { add(Counter::waiting); }
  /// A row is taken up.
  void takeWaiting();

  /// All of them. Any thread; the lock that it takes is no sender's.
  [[nodiscard]] Statistics read() const KIFO_EXCLUDES(mutex_);

  // For the store, on the main queue.

  /// Whether `setFound` has been called.
  [[nodiscard]] bool isFound() const KIFO_EXCLUDES(mutex_);
  /// What the store held before this session wrote to it: how many rows wait, and its counters, if
  /// it keeps them. What they leave open and no row explains ended with its process.
  void setFound(std::int64_t waitingRows, const std::optional<Counts>& kept) KIFO_EXCLUDES(mutex_);
  /// By how much the store's counters are behind; none when it keeps none. Both gauges are 0.
  [[nodiscard]] std::optional<Counts> unwritten() const KIFO_EXCLUDES(mutex_);
  /// The store has added `growth` to its counters.
  void wrote(const Counts& growth) KIFO_EXCLUDES(mutex_);

 private:
  [[nodiscard]] std::atomic<std::int64_t>& at(Counter counter) {
    return values_[static_cast<std::size_t>(counter)];
  }
  [[nodiscard]] Counts session() const;
  [[nodiscard]] Statistics readLocked() const KIFO_REQUIRES(mutex_);

  std::array<std::atomic<std::int64_t>, kCounters> values_{};

  mutable Mutex mutex_;
  bool isFound_ KIFO_GUARDED_BY(mutex_) = false;
  /// What to add to the session's counters for those over the life of the store. Adds up to 0.
  Counts earlier_ KIFO_GUARDED_BY(mutex_);
  std::optional<Counts> written_ KIFO_GUARDED_BY(mutex_);  ///< As the store has them.
};

}  // namespace kifo
