#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "Kifo_iOS_Common_Kit/storage/KifoLog.h"
#include "Kifo_iOS_Common_Kit/storage/KifoSqliteManager.h"

namespace kifo {

/// The statements on the table of stored requests, "KifoLog". Values are pasted between single
/// quotes as they are; one that holds an apostrophe would break out of them, so its statement is
/// not run at all: such a request is never stored, and no value can become a statement of its own.
///
/// **Threading:** operations may be called from any thread; completions run on the main queue.
/// **Ownership:** holds its manager; without one every operation does nothing.
/// **Errors:** a statement that fails makes no completion and says nothing, unless the operation
/// says otherwise.
class DataManager {
 public:
  static constexpr std::string_view LOG_TAG = "Kifo DataManager:";  ///< Starts its console lines.

  static constexpr auto TABLE_NAME = "KifoLog";
  // Names of the record's fields, not of the columns; no statement uses them, nor MAXTRYCOUNT. Kept
  // for compatibility.
  static constexpr auto COL_ID = "_id";
  static constexpr auto COL_PARAMS = "_paramaters";
  static constexpr auto COL_REQUEST_ID = "_requestId";
  static constexpr auto COL_URL = "_url";
  static constexpr auto COL_DATE = "_date";
  static constexpr auto COL_SYNC = "_isSync";
  static constexpr auto COL_TRY_COUNT = "_tryCount";
  static constexpr auto COL_HTTP_METHOD = "_httpMethod";
  static constexpr int MAXTRYCOUNT = 1;

  /// What `takeNext` did.
  struct Taken {
    bool isDeleted = false;      ///< The delivered row is gone.
    std::optional<KifoLog> row;  ///< The row that is marked as tried now, and is to be sent.
    bool isLocked = false;       ///< Another process kept the file locked: nothing was changed.
  };

  explicit DataManager(
      std::shared_ptr<KifoSqliteManager> manager = KifoSqliteManager::sharedManager())
      : manager_(std::move(manager)) {}

  /// Prints that the database is being made, and prepares it.
  void createTable() const;

  /// Inserts `log` when `count` is below `limit`. `stored` learns whether a row was made.
  void insertLog(std::int64_t count, std::int64_t limit, const KifoLog& log,
                 std::function<void(bool)> stored = {}) const;

  /// Stores a request's copy, unless `limit` never-tried rows wait. Copies that wait for the main
  /// queue are stored in one transaction.
  /// `compose` makes the row on the main queue, where writing its texts costs no caller anything.
  /// `copied` runs after the commit and learns whether the copy is in the file.
  /// False, and nothing is kept or called, when `limit` copies wait for the main queue already.
  bool cacheLog(std::int64_t limit, const std::string& requestId, std::function<KifoLog()> compose,
                std::function<void(CopyOutcome)> copied = {}) const;

  /// Removes the request's row and every row that was tried. `removed` runs when that has been
  /// done, not when it failed.
  void deleteLog(const std::string& requestId, std::function<void()> removed = {}) const;

  /// One step of a pass: in one transaction, removes the row of `delivered` (with every row that
  /// was tried) and marks the first other waiting row as tried. Either both are done or neither is.
  ///
  /// `chooses` gets the waiting row, with 0 in its number fields, and decides whether it is marked;
  /// it runs before the transaction, on the main queue, once for the row and once more at the end
  /// with the same row; once, with none, when nothing waits. Without a row to mark `delivered` is
  /// removed alone. `delivered` may be empty: nothing is removed.
  /// `done` always runs once, after the commit.
  void takeNext(const std::string& delivered,
                std::function<bool(const std::optional<KifoLog>&)> chooses,
                std::function<void(const Taken&)> done) const;

  /// Marks a row after an answer: `success` is 1 after a 200, else 0. `marked` runs when that has
  /// been done, not when it failed.
  void updateSyncStatus(const std::string& requestId, int success,
                        std::function<void()> marked = {}) const;

  /// Marks a row as tried; `marked` learns whether the mark is in the file.
  void increaseTryCount(const std::string& requestId, std::function<void(bool)> marked = {}) const;

  void unsyncedLogCount(std::function<void(std::int64_t count)> completion) const;

  /// The first row that still waits. The completion runs once for the row and once more at the end
  /// with the same row; once, with none, when nothing waits. Number fields read back as 0.
  void firstUnsyncedLog(std::function<void(const std::optional<KifoLog>&)> completion) const;

 private:
  void write(std::string statement, std::function<void(const StoreConnection::Result&)> done) const;

  std::shared_ptr<KifoSqliteManager> manager_;
};

}  // namespace kifo
