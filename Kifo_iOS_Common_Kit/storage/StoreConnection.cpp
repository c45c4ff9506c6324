#include "Kifo_iOS_Common_Kit/storage/StoreConnection.h"

#include <sqlite3.h>

#include <array>

namespace kifo {
namespace {

constexpr int kLongestLockWait = 5000;  // milliseconds
constexpr int kLockPoll = 5;

StoreConnection::Row rowOf(sqlite3_stmt* statement) {
  StoreConnection::Row row;
  const int columns = sqlite3_column_count(statement);
  for (int column = 0; column < columns; ++column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    row.push_back(text ? StoreConnection::Cell(text) : std::nullopt);
  }
  return row;
}

bool isLock(int result) {
  return result == SQLITE_BUSY || result == SQLITE_LOCKED;
}

}  // namespace

StoreConnection::StoreConnection(const std::string& path, Mode mode,
                                 const std::atomic<bool>& waitsForLocks)
    : waitsForLocks_(waitsForLocks) {
  const int flags = SQLITE_OPEN_READWRITE | (mode == Mode::existing ? 0 : SQLITE_OPEN_CREATE);
  if (sqlite3_open_v2(path.c_str(), &handle_, flags, nullptr) != SQLITE_OK) {
    close();
    return;
  }
  sqlite3_busy_handler(handle_, &StoreConnection::waitWhileLocked, this);
}

bool StoreConnection::close() {
  if (sqlite3_close(handle_) != SQLITE_OK) return false;
  handle_ = nullptr;
  return true;
}

bool StoreConnection::isInTransaction() const {
  return handle_ && sqlite3_get_autocommit(handle_) == 0;
}

std::optional<std::uint32_t> StoreConnection::changeCounter() const {
  constexpr std::size_t writeVersion = 18;
  constexpr std::uint8_t rollbackJournal = 1;
  constexpr std::size_t counter = 24;  // four bytes, the highest first
  std::array<std::uint8_t, counter + 4> header{};
  sqlite3_file* file = nullptr;
  if (sqlite3_file_control(handle_, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK ||
      !file || !file->pMethods ||
      file->pMethods->xRead(file, header.data(), header.size(), 0) != SQLITE_OK ||
      header[writeVersion] != rollbackJournal) {
    return std::nullopt;
  }
  std::uint32_t value = 0;
  for (std::size_t index = counter; index < header.size(); ++index) {
    value = value << 8 | header[index];
  }
  return value;
}

int StoreConnection::waitWhileLocked(void* connection, int attempt) {
  const auto& self = *static_cast<const StoreConnection*>(connection);
  if (!self.waitsForLocks_ || attempt >= kLongestLockWait / kLockPoll) return 0;
  sqlite3_sleep(kLockPoll);  // through the VFS: a simulated disk has a time of its own
  return 1;
}

StoreConnection::Result StoreConnection::stepThrough(
    const std::string& statement, const std::function<void(sqlite3_stmt*)>& onRow) {
  Result result;
  if (!handle_) return result;
  sqlite3_stmt* prepared = nullptr;
  int code = sqlite3_prepare_v2(handle_, statement.c_str(), -1, &prepared, nullptr);
  result.isPrepared = code == SQLITE_OK;
  if (result.isPrepared) {
    while ((code = sqlite3_step(prepared)) == SQLITE_ROW) onRow(prepared);
  }
  result.isDone = code == SQLITE_DONE;
  result.isLocked = isLock(code);
  if (result.isDone) result.rowsChanged = sqlite3_changes(handle_);
  sqlite3_finalize(prepared);
  return result;
}

StoreConnection::Result StoreConnection::run(const std::string& statement,
                                             const std::function<void(const Row&)>& onRow) {
  return stepThrough(statement, [&](sqlite3_stmt* prepared) {
    if (onRow) onRow(rowOf(prepared));
  });
}

std::optional<std::int32_t> StoreConnection::count(const std::string& statement, Result* result) {
  std::int32_t count = 0;
  const Result ended = stepThrough(
      statement, [&](sqlite3_stmt* prepared) { count = sqlite3_column_int(prepared, 0); });
  if (result) *result = ended;
  return ended.isDone ? std::optional(count) : std::nullopt;
}

}  // namespace kifo
