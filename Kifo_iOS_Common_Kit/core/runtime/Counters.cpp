#include "Kifo_iOS_Common_Kit/core/runtime/Counters.h"

#include <algorithm>

namespace kifo {
namespace {

std::int64_t cameIn(const Counts& counts) {
  return counts[Counter::composed] + counts[Counter::found];
}

std::int64_t ended(const Counts& counts) {
  return counts[Counter::delivered] + counts.givenUp() + counts.dropped();
}

/// `sign` times each value of `other`, added to `counts`.
Counts added(Counts counts, const Counts& other, std::int64_t sign) {
  for (std::size_t index = 0; index < kCounters; ++index) {
    const auto counter = static_cast<Counter>(index);
    counts[counter] += sign * other[counter];
  }
  return counts;
}

}  // namespace

void Counters::takeWaiting() {
  // A row that another process has put there counts in no place yet.
  if (at(Counter::waiting).load() == 0) return add(Counter::found);
  at(Counter::waiting).fetch_sub(1, std::memory_order_release);
}

Counts Counters::session() const {
  Counts counts;
  const auto load = [&](Counter counter) {
    counts[counter] = values_[static_cast<std::size_t>(counter)].load(std::memory_order_acquire);
  };
  // Ends first, then `waiting`, then what came in.
  constexpr auto firstEnd = static_cast<std::size_t>(Counter::delivered);
  for (auto index = kCounters; index-- > firstEnd;) {
    const auto counter = static_cast<Counter>(index);
    if (counter != Counter::waiting) load(counter);
  }
  load(Counter::waiting);
  load(Counter::found);
  load(Counter::composed);
  counts[Counter::underWay] = cameIn(counts) - ended(counts) - counts[Counter::waiting];
  return counts;
}

Statistics Counters::readLocked() const {
  const Counts own = session();
  return {own, added(own, earlier_, 1), written_.has_value()};
}

Statistics Counters::read() const {
  const MutexLock lock(mutex_);
  return readLocked();
}

bool Counters::isFound() const {
  const MutexLock lock(mutex_);
  return isFound_;
}

void Counters::setFound(std::int64_t waitingRows, const std::optional<Counts>& kept) {
  const MutexLock lock(mutex_);
  isFound_ = true;
  at(Counter::found).fetch_add(waitingRows, std::memory_order_release);
  at(Counter::waiting).fetch_add(waitingRows, std::memory_order_release);
  written_ = kept;
  if (!kept) return;
  earlier_ = *kept;
  // The rows that wait are this session's from now on.
  const std::int64_t open = cameIn(*kept) - ended(*kept);
  earlier_[Counter::found] -= std::min(open, waitingRows);
  earlier_[Counter::droppedAtEndOfProcess] += std::max<std::int64_t>(open - waitingRows, 0);
}

std::optional<Counts> Counters::unwritten() const {
  const MutexLock lock(mutex_);
  if (!written_) return std::nullopt;
  Counts growth = added(readLocked().overLife, *written_, -1);
  growth[Counter::waiting] = 0;
  growth[Counter::underWay] = 0;
  return growth;
}

void Counters::wrote(const Counts& growth) {
  const MutexLock lock(mutex_);
  if (written_) written_ = added(*written_, growth, 1);
}

}  // namespace kifo
