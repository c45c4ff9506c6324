#pragma once

#include <sqlite3.h>

#include <string>

#include "tests/support/Common.h"

namespace kifo {

/// What another process holds on to in a database file, for as long as this lives.
class ForeignLock {
 public:
  static constexpr auto kReader = "BEGIN; select * from KifoLog";  ///< Lets nobody commit.
  static constexpr auto kWriter = "BEGIN IMMEDIATE";               ///< Lets nobody begin to write.

  ForeignLock(const std::string& path, const char* statements) {
    sqlite3_open(path.c_str(), &database_);
    sqlite3_exec(database_, statements, nullptr, nullptr, nullptr);
  }
  ~ForeignLock() { sqlite3_close(database_); }
  ForeignLock(const ForeignLock&) = delete;
  ForeignLock& operator=(const ForeignLock&) = delete;

 private:
  sqlite3* database_ = nullptr;
};

}  // namespace kifo
