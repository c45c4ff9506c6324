#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Export.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "Kifo_iOS_Common_Kit/storage/KifoLog.h"

namespace kifo {

/// The statements on the table of stored requests, "KifoLog". Values are pasted between single
/// quotes as they are; one that holds an apostrophe would break out of them, so its statement is
/// not run at all: such a request is never stored, and no value can become a statement of its own.
///
/// **Threading:** operations may be called from any thread; completions run on the main queue.
/// **Errors:** a statement that fails makes no completion and says nothing.
class KIFO_EXPORT DataManager {
 public:
  static constexpr auto TABLE_NAME = "KifoLog";
  static constexpr auto COL_ID = "_id";
  static constexpr auto COL_PARAMS = "_paramaters";
  static constexpr auto COL_REQUEST_ID = "_requestId";
  static constexpr auto COL_URL = "_url";
  static constexpr auto COL_DATE = "_date";
  static constexpr auto COL_SYNC = "_isSync";
  static constexpr auto COL_TRY_COUNT = "_tryCount";
  static constexpr auto COL_HTTP_METHOD = "_httpMethod";
  static constexpr int MAXTRYCOUNT = 1;

  /// Runs `work` as one turn of the main queue, for operations that belong together.
  void inOneTurn(std::function<void()> work) const;

  /// Prints that the database is being made, and prepares it.
  void createTable() const;

  /// Inserts `log` when `count` is below `limit`. `stored` learns whether a row was made.
  void insertLog(std::int64_t count, std::int64_t limit, const KifoLog& log,
                 std::function<void(bool)> stored = {}) const;

  /// Counts and inserts as one step, so that never more than `limit` never-tried rows wait. `log`
  /// is made on the main queue, where writing its texts costs no caller anything. With
  /// `Wake::later` the caller sees to it that the main queue's `wake` follows.
  void cacheLog(std::int64_t limit, std::function<KifoLog()> log,
                std::function<void(bool)> stored = {}, Wake wake = Wake::now) const;

  /// Removes the request's row and every row that was tried. `removed` runs when that has been
  /// done, not when it failed.
  void deleteLog(const std::string& requestId, std::function<void()> removed = {}) const;

  /// The same, but in one transaction with the next row that the same turn marks as tried, and
  /// before it; at the end of the turn when it marks none.
  void deleteLogWithNext(const std::string& requestId, std::function<void()> removed) const;

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
};

}  // namespace kifo
