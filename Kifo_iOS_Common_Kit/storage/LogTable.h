#pragma once

#include <array>

namespace kifo {

/// The table of stored requests as it is made.
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
};

}  // namespace kifo
