#include "Kifo_iOS_Common_Kit/storage/DataManager.h"

#include <initializer_list>
#include <memory>
#include <string_view>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/Inspect.h"
#include "Kifo_iOS_Common_Kit/storage/KifoSqliteManager.h"

namespace kifo {
namespace {

KifoSqliteManager& store() {
  return KifoSqliteManager::sharedManager();
}

void print(std::string_view message) {
  Console::print(logTag("DataManager"), message);
}

/// Whether `text` stays inside single quotes: an apostrophe would end them, a zero byte the
/// statement.
bool isQuotable(std::string_view text) {
  return text.find_first_of(std::string_view("'\0", 2)) == std::string_view::npos;
}

bool isQuotable(const KifoLog& log) {
  return isQuotable(log._paramaters) && isQuotable(log._requestId) && isQuotable(log._url) &&
         isQuotable(log._httpMethod);
}

std::string joined(std::initializer_list<std::string_view> parts) {
  std::string text;
  for (const auto part : parts) text += part;
  return text;
}

std::string insertStatement(const KifoLog& log) {
  return joined(
      {"INSERT INTO ", DataManager::TABLE_NAME,
       " (PARAMETERS, REQUEST_ID, URL, DATE, ISSYNC, TRYCOUNT, HTTPMETHOD, ISSYNC_SUCCESS) "
       "VALUES ('",
       log._paramaters, "', '", log._requestId, "', '", log._url, "', ", std::to_string(log._date),
       ", ", std::to_string(log._isSync), ", ", std::to_string(log._tryCount), ", '",
       log._httpMethod, "', 0)"});
}

std::string deleteStatement(const std::string& requestId) {
  return joined({"delete from ", DataManager::TABLE_NAME, " where REQUEST_ID = '", requestId,
                 "' or TRYCOUNT > 0"});
}

KifoSqliteManager::QueryBlock whenSucceeded(std::function<void()> callback) {
  return [callback = std::move(callback)](const auto*, const auto&, bool) {
    if (callback && store().lastSucceeded()) callback();
  };
}

std::string countStatement() {
  return joined({"select count(*) from ", DataManager::TABLE_NAME,
                 " where ISSYNC_SUCCESS = 0 and TRYCOUNT = 0"});
}

/// A row in the order of the select. Cells are texts, and a number field takes numbers only, so the
/// number fields stay 0.
KifoLog logOf(const KifoSqliteManager::Row& row) {
  const auto text = [&](std::size_t cell) { return row[cell].value_or(""); };
  return {0, text(1), text(2), text(3), 0, 0, 0, text(7)};
}

}  // namespace

void DataManager::inOneTurn(std::function<void()> work) const {
  store().inOneTurn(std::move(work));
}

void DataManager::createTable() const {
  print("Database is being created");
  store().prepareDb();
}

void DataManager::insertLog(std::int64_t count, std::int64_t limit, const KifoLog& log,
                            std::function<void(bool)> stored) const {
  const bool isFull = count >= limit;
  if (isFull || !isQuotable(log)) {
    KIFO_INSPECT("notStored", {{"requestId", log._requestId},
                               {"reason", isFull ? "cap" : "apostrophe"},
                               {"waiting", std::to_string(count)},
                               {"limit", std::to_string(limit)}});
    if (stored) stored(false);
    return;
  }
  const bool isCounted = log._tryCount == 0;
  store().execute(
      insertStatement(log),
      [stored = std::move(stored)](const auto*, const auto&, bool) {
        if (stored) stored(store().rowsChanged() > 0);
      },
      isCounted ? std::optional(countStatement()) : std::nullopt);
}

void DataManager::cacheLog(std::int64_t limit, std::function<KifoLog()> log,
                           std::function<void(bool)> stored, Wake wake) const {
  const auto countAndInsert = [manager = *this, limit, log = std::move(log),
                               stored = std::move(stored)] {
    manager.unsyncedLogCount(
        [=](std::int64_t count) { manager.insertLog(count, limit, log(), stored); });
    manager.unsyncedLogCount([](std::int64_t) {});
  };
  store().inOneTurn(countAndInsert, wake);
}

void DataManager::deleteLog(const std::string& requestId, std::function<void()> removed) const {
  if (requestId.empty() || !isQuotable(requestId)) return;
  store().execute(deleteStatement(requestId), whenSucceeded(std::move(removed)));
}

void DataManager::deleteLogWithNext(const std::string& requestId,
                                    std::function<void()> removed) const {
  if (requestId.empty() || !isQuotable(requestId)) return;
  store().executeWithNext(deleteStatement(requestId), whenSucceeded(std::move(removed)));
}

void DataManager::updateSyncStatus(const std::string& requestId, int success,
                                   std::function<void()> marked) const {
  if (requestId.empty()) return print("Request id is empty");
  if (!isQuotable(requestId)) return;
  store().performQuery(
      joined({"update ", TABLE_NAME, " set ISSYNC_SUCCESS = ", std::to_string(success),
              ", ISSYNC = 1 where REQUEST_ID = '", requestId, "'"}),
      whenSucceeded(std::move(marked)));
}

void DataManager::increaseTryCount(const std::string& requestId,
                                   std::function<void(bool)> marked) const {
  if (requestId.empty()) return print("increaseTryCount - requestId is empty");
  if (!isQuotable(requestId)) return;
  store().execute(joined({"update ", TABLE_NAME,
                          " set TRYCOUNT = TRYCOUNT + 1 where REQUEST_ID = '", requestId, "'"}),
                  [marked = std::move(marked)](const auto*, const auto&, bool) {
                    if (marked) marked(store().rowsChanged() > 0);
                  });
}

void DataManager::unsyncedLogCount(std::function<void(std::int64_t count)> completion) const {
  store().rowCount(countStatement(),
                   [completion = std::move(completion)](std::int32_t count, const auto&, bool) {
                     completion(count);
                   });
}

void DataManager::firstUnsyncedLog(
    std::function<void(const std::optional<KifoLog>&)> completion) const {
  const auto records = std::make_shared<std::vector<KifoLog>>();
  store().performQuery(
      joined({"select ID, PARAMETERS, URL, HTTPMETHOD, DATE, TRYCOUNT, ISSYNC, REQUEST_ID from ",
              TABLE_NAME, " where ISSYNC_SUCCESS = 0 and TRYCOUNT = 0 LIMIT 1"}),
      [records, completion = std::move(completion)](const auto* row, const auto&, bool) {
        if (row) records->push_back(logOf(*row));
        completion(records->empty() ? std::nullopt : std::optional(records->front()));
      });
}

}  // namespace kifo
