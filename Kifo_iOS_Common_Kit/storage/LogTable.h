#pragma once

#include <array>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/storage/KifoLog.h"

namespace kifo {

/// The table of stored requests and the statements on it. Values are pasted between single quotes
/// as they are, and a request with a value that is not quotable is not stored. Kept for
/// compatibility.
///
/// A row waits while it was neither sent from the store nor answered 200.
struct LogTable {
  static constexpr auto kCreate =
      "CREATE TABLE IF NOT EXISTS KifoLog (ID INTEGER PRIMARY KEY AUTOINCREMENT, PARAMETERS TEXT, "
      "REQUEST_ID TEXT, URL TEXT, DATE INTEGER, ISSYNC INTEGER, ISSYNC_SUCCESS INTEGER, TRYCOUNT "
      "INTEGER, HTTPMETHOD TEXT)";

  /// Keep every statement's cost the same however deep the table is. Equal entries of an index lie
  /// in the order of their row numbers, so the first row taken is still the lowest.
  static constexpr std::array kIndexes{
      "CREATE INDEX IF NOT EXISTS KifoLogWaiting ON KifoLog (ISSYNC_SUCCESS, TRYCOUNT)",
      "CREATE INDEX IF NOT EXISTS KifoLogRequest ON KifoLog (REQUEST_ID)",
      "CREATE INDEX IF NOT EXISTS KifoLogTried ON KifoLog (TRYCOUNT) WHERE TRYCOUNT > 0"};

  static constexpr auto kCountWaiting =
      "select count(*) from KifoLog where ISSYNC_SUCCESS = 0 and TRYCOUNT = 0";

  /// Whether `text` stays inside single quotes: an apostrophe would end them, a zero byte the
  /// statement.
  static bool isQuotable(std::string_view text);
  static bool isQuotable(const KifoLog& log);

  static std::string insert(const KifoLog& log);
  /// Removes the request's row and every row that was sent from the store, whether it was answered
  /// or not. Kept for compatibility: a row is sent again once at most.
  static std::string remove(const std::string& requestId);
  static std::string markAnswered(const std::string& requestId, int success);
  static std::string markTried(const std::string& requestId);
  /// The first row that waits, unless it is that of `excluded`, which may be empty.
  static std::string selectFirstWaiting(const std::string& excluded = {});
};

}  // namespace kifo
