#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/runtime/Counters.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "Kifo_iOS_Common_Kit/storage/KifoLog.h"
#include "Kifo_iOS_Common_Kit/storage/StoreConnection.h"

namespace kifo {

/// What became of a request's copy.
enum class CopyOutcome {
  stored,
  cap,         ///< As many rows wait as the server allows.
  apostrophe,  ///< A text cannot be quoted.
  locked,      ///< Another process kept the file locked.
  failed,      ///< The file cannot be written.
};

/// A change of the table that waits for the main queue: a statement, or a request's copy, which has
/// `compose` instead.
struct PendingWrite {
  std::string statement = {};
  /// Runs on the main queue, once there is space for the row.
  std::function<KifoLog()> compose = {};
  std::int64_t limit = 0;      ///< Of a copy: the cap when its request was sent.
  std::string requestId = {};  ///< Of a copy.
  /// These get what the write came to, after the commit, on the main queue: `done` a statement's
  /// result, `copied` a copy's outcome.
  std::function<void(const StoreConnection::Result&)> done = {};
  std::function<void(CopyOutcome)> copied = {};
};

/// How many rows wait, for as long as the file's change counter stays the same: a deep table is not
/// counted anew for each copy.
struct KnownCount {
  std::uint32_t changeCounter = 0;
  std::int64_t waiting = 0;
};

/// The writes that wait, and their group commit: writes that follow one another are a group and run
/// in one transaction. A crash loses a whole group or nothing of it. A read that is queued between
/// two writes separates their groups, so that everything takes place in the order of the calls.
///
/// **Threading:** thread-safe; `run` on the main queue alone.
class PendingWrites {
 public:
  explicit PendingWrites(std::shared_ptr<Counters> counters) : counters_(std::move(counters)) {}

  using Groups = std::uint64_t;  ///< A number of groups, counted from the first one on.

  struct Added {
    bool isRefused = false;  ///< A copy, and as many copies as its limit wait here already.
    bool isFirst = false;    ///< Of its group: the caller queues a task that runs the group.
    Groups groups = 0;       ///< Those up to the write's own.
  };

  Added add(PendingWrite&& write) KIFO_EXCLUDES(mutex_);

  /// The next write begins a new group. Gives the groups up to now.
  Groups endGroup() KIFO_EXCLUDES(mutex_);

  /// The file is another one now: its rows are to be counted. Main queue only.
  void forgetCount() { knownCount_.reset(); }

  /// Drops every group and each write that comes later; no callback runs. For a queue that runs
  /// nothing more: the callbacks may hold the owner of this object.
  void close() KIFO_EXCLUDES(mutex_);

  /// Runs the first `groups` groups, except for those that have been run.
  void run(StoreConnection& file, Groups groups) KIFO_EXCLUDES(mutex_);

 private:
  std::optional<std::vector<PendingWrite>> take(Groups groups) KIFO_EXCLUDES(mutex_);
  void finish(std::span<const PendingWrite> writes) KIFO_EXCLUDES(mutex_);

  const std::shared_ptr<Counters> counters_;  ///< May be null.
  std::optional<KnownCount> knownCount_;      ///< Main queue only.

  Mutex mutex_;
  std::deque<std::vector<PendingWrite>> waiting_ KIFO_GUARDED_BY(mutex_);
  Groups begun_ KIFO_GUARDED_BY(mutex_) = 0;
  bool isOpen_ KIFO_GUARDED_BY(mutex_) = false;  ///< The last group takes more writes.
  bool isClosed_ KIFO_GUARDED_BY(mutex_) = false;
  std::int64_t copies_ KIFO_GUARDED_BY(mutex_) = 0;  ///< Not yet stored, those being run included.
};

}  // namespace kifo
