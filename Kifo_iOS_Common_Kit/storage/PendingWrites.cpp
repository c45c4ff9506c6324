#include "Kifo_iOS_Common_Kit/storage/PendingWrites.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Inspect.h"
#include "Kifo_iOS_Common_Kit/storage/DataManager.h"
#include "Kifo_iOS_Common_Kit/storage/LogTable.h"
#include "Kifo_iOS_Common_Kit/storage/StoreTransaction.h"

namespace kifo {
namespace {

/// Keeps a transaction short, and with it the time until its callbacks run.
constexpr std::size_t kLargestTransaction = 256;

/// What a write came to. `refusal` is the reason for which a copy was not tried.
struct Outcome {
  StoreConnection::Result result;
  std::optional<CopyOutcome> refusal = {};

  [[nodiscard]] CopyOutcome ofCopy() const {
    if (result.isDone) return CopyOutcome::stored;
    return refusal.value_or(result.isLocked ? CopyOutcome::locked : CopyOutcome::failed);
  }
};

/// One transaction's way through its writes.
class Transaction {
 public:
  Transaction(StoreConnection& file, std::optional<KnownCount>& known,
              const std::shared_ptr<Counters>& counters)
      : file_(file),
        known_(known),
        transaction_(file, counters),
        changeCounter_(begun().isDone ? file.changeCounter() : std::nullopt) {}

  Outcome apply(const PendingWrite& write) {
    if (!begun().isDone) return {begun()};
    // Some failures, a full disk for one, end the transaction.
    if (!file_.isInTransaction()) return {};
    const Outcome outcome = write.compose ? insertCopy(write) : applyStatement(write);
    hasChanged_ = hasChanged_ || outcome.result.rowsChanged > 0;
    return outcome;
  }

  /// How the whole of it ended.
  StoreConnection::Result commit() {
    if (!begun().isDone) return begun();
    const auto committed = transaction_.commit(hasChanged_);
    keepCount(committed.isDone);
    // Kept for compatibility: a second count, whose result is not used. One that is known is not
    // taken.
    if (hasCopies_ && !known_) file_.count(LogTable::kCountWaiting);
    return committed;
  }

  /// Rows that wait, as far as they were counted.
  [[nodiscard]] std::int64_t waiting() const { return waiting_; }

 private:
  [[nodiscard]] const StoreConnection::Result& begun() const { return transaction_.begun(); }

  Outcome applyStatement(const PendingWrite& write) {
    isCounted_ = false;  // the statement may change it
    known_.reset();
    return {file_.run(write.statement)};
  }

  Outcome insertCopy(const PendingWrite& copy) {
    hasCopies_ = true;
    Outcome outcome;
    if (!isCounted_ && !count(outcome.result)) return outcome;
    if (waiting_ >= copy.limit) return {{}, CopyOutcome::cap};
    // What composing throws costs this copy alone.
    callHost(DataManager::LOG_TAG, [&] {
      const KifoLog log = copy.compose();
      if (LogTable::isQuotable(log)) {
        outcome.result = file_.run(LogTable::insert(log));
      } else {
        outcome.refusal = CopyOutcome::apostrophe;
      }
    });
    waiting_ += outcome.result.rowsChanged;
    return outcome;
  }

  /// Counts the rows that wait. False when that fails; `result` says why.
  bool count(StoreConnection::Result& result) {
    if (known_ && changeCounter_ == known_->changeCounter) {
      waiting_ = known_->waiting;
      return isCounted_ = true;
    }
    const auto counted = file_.count(LogTable::kCountWaiting, &result);
    if (!counted) return false;
    result = {};
    waiting_ = *counted;
    return isCounted_ = true;
  }

  void keepCount(bool isCommitted) {
    known_.reset();
    const auto after = file_.changeCounter();
    if (!isCommitted || !isCounted_ || !changeCounter_ || !after) return;
    // Another process may have written since the commit.
    const bool onlyOurs = *after == *changeCounter_ + (hasChanged_ ? 1 : 0);
    if (onlyOurs) known_ = KnownCount{*after, waiting_};
  }

  StoreConnection& file_;
  std::optional<KnownCount>& known_;
  StoreTransaction transaction_;
  const std::optional<std::uint32_t> changeCounter_;
  std::int64_t waiting_ = 0;
  bool isCounted_ = false;  ///< `waiting_` is right: it is counted when it is needed.
  bool hasCopies_ = false;
  bool hasChanged_ = false;  ///< The commit changes the file.
};

void report(const PendingWrite& write, const Outcome& outcome, std::int64_t waiting) {
  constexpr std::array reasons = {"stored", "cap", "apostrophe", "locked", "failed"};
  if (!write.compose) return callHost(DataManager::LOG_TAG, write.done, outcome.result);
  if (!outcome.result.isDone) {
    KIFO_INSPECT("notStored", {{"requestId", write.requestId},
                               {"reason", reasons[static_cast<std::size_t>(outcome.ofCopy())]},
                               {"waiting", std::to_string(waiting)},
                               {"limit", std::to_string(write.limit)}});
  }
  callHost(DataManager::LOG_TAG, write.copied, outcome.ofCopy());
}

void runTransaction(StoreConnection& file, std::optional<KnownCount>& known,
                    const std::shared_ptr<Counters>& counters,
                    std::span<const PendingWrite> writes) {
  Transaction transaction(file, known, counters);
  std::vector<Outcome> outcomes;
  for (const PendingWrite& write : writes) outcomes.push_back(transaction.apply(write));
  const auto committed = transaction.commit();
  for (std::size_t index = 0; index < writes.size(); ++index) {
    Outcome& outcome = outcomes[index];
    if (outcome.result.isDone && !committed.isDone) outcome.result = committed;
    report(writes[index], outcome, transaction.waiting());
  }
}

}  // namespace

PendingWrites::Added PendingWrites::add(PendingWrite&& write) {
  const bool isCopy = static_cast<bool>(write.compose);
  const MutexLock lock(mutex_);
  if (isClosed_) return {};
  if (isCopy && copies_ >= write.limit) return {.isRefused = true};
  if (isCopy) ++copies_;
  const bool isFirst = !std::exchange(isOpen_, true);
  if (isFirst) {
    waiting_.emplace_back();
    ++begun_;
  }
  waiting_.back().push_back(std::move(write));
  return {.isFirst = isFirst, .groups = begun_};
}

PendingWrites::Groups PendingWrites::endGroup() {
  const MutexLock lock(mutex_);
  isOpen_ = false;
  return begun_;
}

std::optional<std::vector<PendingWrite>> PendingWrites::take(Groups groups) {
  const MutexLock lock(mutex_);
  const Groups taken = begun_ - waiting_.size();
  if (taken >= groups) return std::nullopt;
  auto group = std::move(waiting_.front());
  waiting_.pop_front();
  if (waiting_.empty()) isOpen_ = false;
  return group;
}

void PendingWrites::finish(std::span<const PendingWrite> writes) {
  const MutexLock lock(mutex_);
  copies_ -= std::ranges::count_if(writes, [](const auto& write) { return bool(write.compose); });
}

void PendingWrites::close() {
  std::deque<std::vector<PendingWrite>> dropped;  // destroyed outside the lock
  const MutexLock lock(mutex_);
  dropped.swap(waiting_);
  isOpen_ = false;
  isClosed_ = true;
  copies_ = 0;
}

void PendingWrites::run(StoreConnection& file, Groups groups) {
  while (const auto group = take(groups)) {
    for (std::span<const PendingWrite> left = *group; !left.empty();) {
      const auto writes = left.first(std::min(left.size(), kLargestTransaction));
      runTransaction(file, knownCount_, counters_, writes);
      finish(writes);
      left = left.subspan(writes.size());
    }
  }
}

}  // namespace kifo
