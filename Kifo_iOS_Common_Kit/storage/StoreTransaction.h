#pragma once

#include <memory>

#include "Kifo_iOS_Common_Kit/core/runtime/Counters.h"
#include "Kifo_iOS_Common_Kit/storage/StoreConnection.h"

namespace kifo {

/// Reads what the file held before this session wrote to it, unless that has been read. Main queue
/// only.
void findCounters(StoreConnection& file, Counters& counters);

/// A transaction that writes to the store. One that changes the file adds to the file's counters
/// what has been counted since the one before, so that they cost no commit of their own.
///
/// **Threading:** main queue only.
class StoreTransaction {
 public:
  static constexpr auto kCreateTable =
      "CREATE TABLE IF NOT EXISTS KifoStatistics (NAME TEXT PRIMARY KEY, VALUE INTEGER)";

  /// Begins it. `counters` may be null.
  StoreTransaction(StoreConnection& file, std::shared_ptr<Counters> counters);

  /// How the beginning went; unless it is done nothing is written.
  [[nodiscard]] const StoreConnection::Result& begun() const { return begun_; }

  /// Ends it. `changes` tells whether one of its statements changed the file.
  StoreConnection::Result commit(bool changes);
  void rollback() { file_.run("ROLLBACK"); }

 private:
  StoreConnection& file_;
  const std::shared_ptr<Counters> counters_;
  const StoreConnection::Result begun_;
};

}  // namespace kifo
