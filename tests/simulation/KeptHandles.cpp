#include "tests/simulation/KeptHandles.h"

#include <sqlite3.h>

#include <map>
#include <string>
#include <utility>

namespace {

bool keepsHandles = false;
std::map<std::string, sqlite3*> keptHandles;  ///< By the path of their file.

/// Whether the file is still the one that was opened; a simulated disk knows.
bool isCurrent(sqlite3* handle) {
  int hasMoved = 1;
  const int code = sqlite3_file_control(handle, "main", SQLITE_FCNTL_HAS_MOVED, &hasMoved);
  return code == SQLITE_OK && hasMoved == 0;
}

}  // namespace

// The linker calls each `__wrap_` in place of SQLite's function, which it names `__real_`.
extern "C" {

int __real_sqlite3_open_v2(const char* path, sqlite3** handle, int flags, const char* vfs);
int __real_sqlite3_close(sqlite3* handle);
int __real_sqlite3_vfs_unregister(sqlite3_vfs* vfs);

int __wrap_sqlite3_open_v2(const char* path, sqlite3** handle, int flags, const char* vfs) {
  if (auto kept = keptHandles.extract(path)) {
    if (isCurrent(kept.mapped())) {
      *handle = kept.mapped();
      return SQLITE_OK;
    }
    __real_sqlite3_close(kept.mapped());
  }
  return __real_sqlite3_open_v2(path, handle, flags, vfs);
}

int __wrap_sqlite3_close(sqlite3* handle) {
  if (!keepsHandles || !handle || sqlite3_next_stmt(handle, nullptr) || !isCurrent(handle) ||
      !keptHandles.emplace(sqlite3_db_filename(handle, "main"), handle).second) {
    return __real_sqlite3_close(handle);
  }
  if (!sqlite3_get_autocommit(handle)) sqlite3_exec(handle, "ROLLBACK", nullptr, nullptr, nullptr);
  sqlite3_busy_handler(handle, nullptr, nullptr);
  return SQLITE_OK;
}

/// The end of a simulated disk.
int __wrap_sqlite3_vfs_unregister(sqlite3_vfs* vfs) {
  for (const auto& [path, handle] : std::exchange(keptHandles, {})) __real_sqlite3_close(handle);
  return __real_sqlite3_vfs_unregister(vfs);
}

}  // extern "C"

void kifo::testing::simulation::keepHandles(bool isOn) {
  keepsHandles = isOn;
}
