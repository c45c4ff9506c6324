#include "testing/simulation/TableReader.h"

#include <deque>
#include <string>

namespace kifo::testing::simulation {
namespace {

constexpr auto kSelect =
    "select ID, ISSYNC_SUCCESS = 0 and TRYCOUNT = 0, PARAMETERS from KifoLog order by ID";

}  // namespace

bool TableReader::open(Ledger& ledger) {
  const auto now = disk_.file(kDatabase);
  if (now == file_ && select_) return true;
  if (file_ && now != file_) ledger.forgetTable();
  close();
  file_ = now;
  return now && sqlite3_open(kDatabase, &connection_) == SQLITE_OK &&
         sqlite3_prepare_v2(connection_, kSelect, -1, &select_, nullptr) == SQLITE_OK;
}

void TableReader::close() {
  sqlite3_finalize(select_);
  sqlite3_close(connection_);
  select_ = nullptr;
  connection_ = nullptr;
}

void TableReader::read(Ledger& ledger, std::size_t sending) {
  // A transaction that failed halfway is undone by the next one of the SDK, and not by a reader.
  const bool isUnfinished = disk_.exists(std::string(kDatabase) + "-journal");
  if (version_ == disk_.version() || isUnfinished) return;
  disk_.setLockSeen(false);
  if (open(ledger)) readRows(ledger, sending);
  disk_.setLockSeen(true);
}

void TableReader::readRows(Ledger& ledger, std::size_t sending) {
  version_ = disk_.version();
  rows_.clear();
  std::deque<std::string> bodies;
  int code = 0;
  while ((code = sqlite3_step(select_)) == SQLITE_ROW) {
    StoredRow row{.id = sqlite3_column_int64(select_, 0),
                  .isWaiting = sqlite3_column_int(select_, 1) != 0};
    if (ledger.wantsBody(row.id)) {
      const auto* body = reinterpret_cast<const char*>(sqlite3_column_text(select_, 2));
      row.body = bodies.emplace_back(body ? body : "");
    }
    rows_.push_back(row);
  }
  sqlite3_reset(select_);
  if (code == SQLITE_DONE) {
    ledger.sawTable(rows_, sending);
  } else if (code == SQLITE_CORRUPT || code == SQLITE_NOTADB) {
    ledger.faults.push_back("the table cannot be read any more");
  }
}

}  // namespace kifo::testing::simulation
