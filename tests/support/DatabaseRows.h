#pragma once

#include <sqlite3.h>

#include <string>
#include <vector>

#include "tests/support/Common.h"

namespace kifo::testing {

/// Rows of a query on the database file at `path`, as another process would see it; cells joined by
/// "|".
inline std::vector<std::string> databaseRows(const std::string& path, const std::string& query) {
  std::vector<std::string> lines;
  sqlite3* database = nullptr;
  sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr);
  sqlite3_busy_timeout(database, 5000);
  const auto collect = [](void* target, int columns, char** cells, char**) {
    std::string line;
    for (int i = 0; i < columns; ++i) {
      line += (i > 0 ? "|" : "") + std::string(cells[i] ? cells[i] : "NULL");
    }
    static_cast<std::vector<std::string>*>(target)->push_back(line);
    return 0;
  };
  sqlite3_exec(database, query.c_str(), collect, &lines, nullptr);
  sqlite3_close(database);
  return lines;
}

}  // namespace kifo::testing
