#include "Kifo_iOS_Common_Kit/storage/DataManager.h"

#include <string_view>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Inspect.h"
#include "Kifo_iOS_Common_Kit/storage/LogTable.h"
#include "Kifo_iOS_Common_Kit/storage/StoreTransaction.h"

namespace kifo {
namespace {

using Result = StoreConnection::Result;

constexpr auto kEmptyTried = "increaseTryCount - requestId is empty";

void print(std::string_view message) {
  Console::print(DataManager::LOG_TAG, message);
}

bool isId(const std::string& requestId) {
  return !requestId.empty() && LogTable::isQuotable(requestId);
}

void tellNotStored(const std::string& requestId, const char* reason, std::int64_t waiting,
                   std::int64_t limit) {
  KIFO_INSPECT("notStored", {{"requestId", requestId},
                             {"reason", reason},
                             {"waiting", std::to_string(waiting)},
                             {"limit", std::to_string(limit)}});
}

/// A row in the order of the select. The number fields stay 0. Kept for compatibility.
KifoLog logOf(const KifoSqliteManager::Row& row) {
  const auto text = [&](std::size_t cell) { return row[cell].value_or(""); };
  return {0, text(1), text(2), text(3), 0, 0, 0, text(7)};
}

/// The transaction of `takeNext`. Either id may be empty.
Result deleteAndMark(StoreConnection& file, const std::shared_ptr<Counters>& counters,
                     const std::string& delivered, const std::string& next) {
  StoreTransaction transaction(file, counters);
  auto result = transaction.begun();
  // The deletion takes every tried row: it comes before the mark.
  if (result.isDone && !delivered.empty()) result = file.run(LogTable::remove(delivered));
  if (result.isDone && !next.empty()) {
    result = file.run(LogTable::markTried(next));
    result.isDone = result.rowsChanged > 0;
  }
  if (result.isDone) return transaction.commit(/*changes=*/true);
  transaction.rollback();
  return result;
}

DataManager::Taken takeFrom(StoreConnection& file, const std::shared_ptr<Counters>& counters,
                            const std::string& delivered,
                            const std::function<bool(const std::optional<KifoLog>&)>& chooses) {
  DataManager::Taken taken;
  bool isChosen = false;
  auto result = file.run(LogTable::selectFirstWaiting(delivered), [&](const auto& row) {
    taken.row = logOf(row);
    isChosen = chooses(taken.row);
  });
  // A second time with the same row. Kept for compatibility.
  if (result.isDone) isChosen = chooses(taken.row) || isChosen;
  if (isChosen && taken.row && taken.row->_requestId.empty()) print(kEmptyTried);
  isChosen = isChosen && taken.row && isId(taken.row->_requestId);
  if (!isChosen) taken.row.reset();
  if (result.isDone && (isChosen || !delivered.empty())) {
    result = deleteAndMark(file, counters, delivered, isChosen ? taken.row->_requestId : "");
  }
  if (!result.isDone) return {.isDeleted = false, .row = {}, .isLocked = result.isLocked};
  taken.isDeleted = !delivered.empty();
  return taken;
}

}  // namespace

void DataManager::createTable() const {
  print("Database is being created");
  if (manager_) manager_->prepareDb();
}

void DataManager::write(std::string statement, std::function<void(const Result&)> done) const {
  if (manager_) manager_->write({.statement = std::move(statement), .done = std::move(done)});
}

void DataManager::insertLog(std::int64_t count, std::int64_t limit, const KifoLog& log,
                            std::function<void(bool)> stored) const {
  const bool isFull = count >= limit;
  if (isFull || !LogTable::isQuotable(log)) {
    tellNotStored(log._requestId, isFull ? "cap" : "apostrophe", count, limit);
    if (stored) stored(false);
    return;
  }
  write(LogTable::insert(log), [stored = std::move(stored)](const Result& result) {
    if (stored) stored(result.isDone);
  });
}

bool DataManager::cacheLog(std::int64_t limit, const std::string& requestId,
                           std::function<KifoLog()> compose,
                           std::function<void(CopyOutcome)> copied) const {
  if (!manager_) return false;
  const bool isQueued = manager_->write({.compose = std::move(compose),
                                         .limit = limit,
                                         .requestId = requestId,
                                         .copied = std::move(copied)});
  if (!isQueued) tellNotStored(requestId, "cap", limit, limit);
  return isQueued;
}

void DataManager::deleteLog(const std::string& requestId, std::function<void()> removed) const {
  if (!isId(requestId)) return;
  write(LogTable::remove(requestId), [removed = std::move(removed)](const Result& result) {
    if (removed && result.isDone) removed();
  });
}

void DataManager::updateSyncStatus(const std::string& requestId, int success,
                                   std::function<void()> marked) const {
  // Said of every in-app query, which has no id. Kept for compatibility.
  if (requestId.empty()) print("Request id is empty");
  if (!isId(requestId)) return;
  write(LogTable::markAnswered(requestId, success),
        [marked = std::move(marked)](const Result& result) {
          if (marked && result.isDone) marked();
        });
}

void DataManager::increaseTryCount(const std::string& requestId,
                                   std::function<void(bool)> marked) const {
  if (requestId.empty()) print(kEmptyTried);
  if (!isId(requestId)) return;
  write(LogTable::markTried(requestId), [marked = std::move(marked)](const Result& result) {
    if (marked) marked(result.rowsChanged > 0);
  });
}

void DataManager::takeNext(const std::string& delivered,
                           std::function<bool(const std::optional<KifoLog>&)> chooses,
                           std::function<void(const Taken&)> done) const {
  if (!manager_) return;
  const std::string removed = isId(delivered) ? delivered : "";
  manager_->perform([removed, chooses = std::move(chooses), done = std::move(done),
                     counters = manager_->counters()](auto& file) {
    const Taken taken = takeFrom(file, counters, removed, chooses);
    file.close();
    done(taken);
  });
}

void DataManager::unsyncedLogCount(std::function<void(std::int64_t count)> completion) const {
  if (!manager_) return;
  manager_->rowCount(LogTable::kCountWaiting,
                     [completion = std::move(completion)](std::int32_t count, const auto&, bool) {
                       completion(count);
                     });
}

void DataManager::firstUnsyncedLog(
    std::function<void(const std::optional<KifoLog>&)> completion) const {
  if (!manager_) return;
  const auto first = std::make_shared<std::optional<KifoLog>>();
  manager_->performQuery(
      LogTable::selectFirstWaiting(),
      [first, completion = std::move(completion)](const auto* row, const auto&, bool) {
        if (row) *first = logOf(*row);
        completion(*first);
      });
}

}  // namespace kifo
