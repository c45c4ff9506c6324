#include "Kifo_iOS_Common_Kit/storage/KifoSqliteManager.h"

#include <sqlite3.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "Kifo_iOS_Common_Kit/storage/LogTable.h"

namespace kifo {
namespace {

namespace fs = std::filesystem;

constexpr auto kFileName = "KifoLog.db";
constexpr std::int64_t kLongestLockWait = 5000;  // milliseconds
constexpr auto kLockPoll = std::chrono::milliseconds(5);

/// Whether this thread is inside a turn, so that a statement joins it instead of being queued.
thread_local bool insideTurn = false;

std::int64_t steadyMilliseconds() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<std::chrono::milliseconds>(now).count();
}

std::string withoutOuterNewlines(const std::string& text) {
  constexpr auto newlines = "\n\r\v\f";
  const auto first = text.find_first_not_of(newlines);
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(newlines) - first + 1);
}

Error fileError(const std::error_code& code) {
  return {"file", code.value(), code.message()};
}

/// The file that a maintenance operation's name stands for: its last component, in the documents
/// directory, so that no name reaches beyond it.
fs::path resource(const std::string& name) {
  return fs::path(Platform::current()->documentsDirectory) / fs::path(name).filename();
}

/// Fills `path` with the table in one transaction. Errors are left unsaid, as everywhere here.
void makeTable(const fs::path& path) {
  sqlite3* database = nullptr;
  if (sqlite3_open(path.c_str(), &database) == SQLITE_OK) {
    sqlite3_exec(database, "BEGIN", nullptr, nullptr, nullptr);
    sqlite3_exec(database, LogTable::kCreate, nullptr, nullptr, nullptr);
    for (const char* index : LogTable::kIndexes) {
      sqlite3_exec(database, index, nullptr, nullptr, nullptr);
    }
    sqlite3_exec(database, "COMMIT", nullptr, nullptr, nullptr);
  }
  sqlite3_close(database);
}

KifoSqliteManager::Row rowOf(sqlite3_stmt* statement) {
  KifoSqliteManager::Row row;
  const int columns = sqlite3_column_count(statement);
  for (int column = 0; column < columns; ++column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    row.push_back(text ? KifoSqliteManager::Cell(text) : std::nullopt);
  }
  return row;
}

std::uint32_t changeCounter(const std::array<std::uint8_t, 100>& header) {
  return (std::uint32_t{header[24]} << 24) | (std::uint32_t{header[25]} << 16) |
         (std::uint32_t{header[26]} << 8) | std::uint32_t{header[27]};
}

}  // namespace

KifoSqliteManager& KifoSqliteManager::sharedManager() {
  static KifoSqliteManager& only = *new KifoSqliteManager;
  return only;
}

// Turns ------------------------------------------------------------------------------------------

void KifoSqliteManager::inOneTurn(std::function<void()> work, Wake wake) {
  if (insideTurn) return pending_.push_back(std::move(work));
  auto task = [this, work = std::move(work)] { turn(work); };
  Platform::current()->mainQueue->enqueue(std::move(task), wake);
}

void KifoSqliteManager::turn(const std::function<void()>& work) {
  const std::lock_guard lock(turnMutex_);
  struct Inside {
    explicit Inside(std::deque<std::function<void()>>& rest) : rest_(rest) { insideTurn = true; }
    ~Inside() {
      insideTurn = false;
      rest_.clear();
    }
    std::deque<std::function<void()>>& rest_;
  } inside(pending_);
  held_.clear();
  work();
  runPending();
  for (Held& held : std::exchange(held_, {})) execute(held.statement, std::move(held.block));
  runPending();
}

void KifoSqliteManager::runPending() {
  while (!pending_.empty()) {
    const auto next = std::move(pending_.front());
    pending_.pop_front();
    next();
  }
}

// The file ---------------------------------------------------------------------------------------

void KifoSqliteManager::computePath() {
  databasePath_ = (fs::path(Platform::current()->documentsDirectory) / kFileName).string();
}

void KifoSqliteManager::prepareDb() {
  inOneTurn([this] {
    computePath();
    std::error_code error;
    if (fs::exists(databasePath_, error)) return;
    fs::create_directories(fs::path(databasePath_).parent_path(), error);
    // Built beside its place and then linked into it: the file is never there without its table,
    // and one that another process has just made is not replaced.
    const fs::path draft = databasePath_ + ".new";
    fs::remove(draft, error);
    makeTable(draft);
    fs::create_hard_link(draft, databasePath_, error);
    const bool linksUnknown = error && !fs::exists(databasePath_);
    if (linksUnknown) fs::rename(draft, databasePath_, error);
    fs::remove(draft, error);
  });
}

int KifoSqliteManager::waitWhileLocked(void* manager, int attempt) {
  auto& self = *static_cast<KifoSqliteManager*>(manager);
  const auto now = steadyMilliseconds();
  if (attempt == 0) self.lockedSince_ = now;
  if (self.hurried_ || now - self.lockedSince_ >= kLongestLockWait) return 0;
  std::this_thread::sleep_for(kLockPoll);
  return 1;
}

bool KifoSqliteManager::open(int flags) {
  computePath();
  // A handle that a failed prepare left behind is given back before it is overwritten.
  if (database_) sqlite3_close_v2(database_);
  database_ = nullptr;
  if (sqlite3_open_v2(databasePath_.c_str(), &database_, flags, nullptr) != SQLITE_OK) return false;
  sqlite3_busy_handler(database_, &KifoSqliteManager::waitWhileLocked, this);
  return true;
}

bool KifoSqliteManager::openExisting() {
  return open(SQLITE_OPEN_READWRITE);
}

bool KifoSqliteManager::openOrMake() {
  return open(SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
}

bool KifoSqliteManager::close() {
  const bool success = sqlite3_close(database_) == SQLITE_OK;
  if (success) database_ = nullptr;
  return success;
}

void KifoSqliteManager::openLocalDatabaseWithName(const std::string&, StatusBlock statusBlock) {
  inOneTurn([this, statusBlock = std::move(statusBlock)] {
    const bool success = openOrMake();
    if (statusBlock) statusBlock(success, std::nullopt);
  });
}

void KifoSqliteManager::closeLocalDatabaseWithName(const std::string&, StatusBlock statusBlock) {
  inOneTurn([this, statusBlock = std::move(statusBlock)] {
    if (close() && statusBlock) statusBlock(true, std::nullopt);
  });
}

// Statements -------------------------------------------------------------------------------------

void KifoSqliteManager::run(const std::string& statement, std::function<void(sqlite3_stmt*)> work) {
  inOneTurn([this, text = withoutOuterNewlines(statement), work = std::move(work)] {
    rowsChanged_.reset();
    if (!openExisting()) return;
    sqlite3_stmt* prepared = nullptr;
    if (sqlite3_prepare_v2(database_, text.c_str(), -1, &prepared, nullptr) != SQLITE_OK) return;
    work(prepared);
  });
}

void KifoSqliteManager::finish(sqlite3_stmt* statement) {
  sqlite3_finalize(statement);
  close();
}

void KifoSqliteManager::execute(const std::string& statement, QueryBlock block,
                                const std::optional<std::string>& countedBy) {
  run(statement, [this, block = std::move(block), countedBy](sqlite3_stmt* prepared) {
    auto done = beginWithHeld();
    const auto before = countedBy && done.empty() ? header() : std::nullopt;
    // Without the transaction that the two were to share, a row could be marked and nobody know it.
    const bool isSound = done.empty() || sqlite3_get_autocommit(database_) == 0;
    rowsChanged_ = isSound ? step(prepared) : std::nullopt;
    if (countedBy) noteAddedRows(*countedBy, before);
    sqlite3_finalize(prepared);
    done.push_back({block, rowsChanged_});
    commit(done);
    close();
    for (const Done& each : done) {
      rowsChanged_ = each.rowsChanged;
      if (each.block) each.block(nullptr, std::nullopt, true);
    }
  });
}

std::optional<int> KifoSqliteManager::step(sqlite3_stmt* statement) {
  if (!statement || sqlite3_step(statement) != SQLITE_DONE) return std::nullopt;
  return sqlite3_changes(database_);
}

void KifoSqliteManager::executeWithNext(const std::string& statement, QueryBlock block) {
  inOneTurn([this, statement, block = std::move(block)] { held_.push_back({statement, block}); });
}

std::vector<KifoSqliteManager::Done> KifoSqliteManager::beginWithHeld() {
  std::vector<Done> done;
  const auto held = std::exchange(held_, {});
  if (held.empty()) return done;
  sqlite3_exec(database_, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
  for (const Held& each : held) {
    sqlite3_stmt* prepared = nullptr;
    const bool isOpen = sqlite3_get_autocommit(database_) == 0;
    if (isOpen) sqlite3_prepare_v2(database_, each.statement.c_str(), -1, &prepared, nullptr);
    done.push_back({each.block, step(prepared)});
    sqlite3_finalize(prepared);
  }
  return done;
}

void KifoSqliteManager::commit(std::vector<Done>& done) {
  const auto run = [this](const char* statement) {
    return sqlite3_exec(database_, statement, nullptr, nullptr, nullptr) == SQLITE_OK;
  };
  const bool isAlone = done.size() == 1;
  if (isAlone || run("COMMIT")) return;
  run("ROLLBACK");
  for (Done& each : done) each.rowsChanged.reset();
}

void KifoSqliteManager::performQuery(const std::string& statement, QueryBlock block) {
  run(statement, [this, block = std::move(block)](sqlite3_stmt* prepared) {
    int result = SQLITE_OK;
    while ((result = sqlite3_step(prepared)) == SQLITE_ROW) {
      const Row row = rowOf(prepared);
      if (block) block(&row, std::nullopt, false);
    }
    if (result == SQLITE_DONE) rowsChanged_ = sqlite3_changes(database_);
    finish(prepared);
    if (block) block(nullptr, std::nullopt, true);
  });
}

void KifoSqliteManager::rowCount(const std::string& statement, CountBlock block) {
  inOneTurn([this, text = withoutOuterNewlines(statement), block = std::move(block)] {
    if (!openExisting()) return;
    std::optional<std::int32_t> count = knownCount(text);
    if (count) {
      close();
    } else {
      count = countAnew(text);
    }
    if (count && block) block(*count, std::nullopt, true);
  });
}

std::optional<std::int32_t> KifoSqliteManager::knownCount(const std::string& statement) const {
  if (!knownCount_ || knownCount_->statement != statement) return std::nullopt;
  return header() == knownCount_->header ? std::optional(knownCount_->count) : std::nullopt;
}

std::optional<std::int32_t> KifoSqliteManager::countAnew(const std::string& statement) {
  knownCount_.reset();
  const auto before = header();
  sqlite3_stmt* prepared = nullptr;
  if (sqlite3_prepare_v2(database_, statement.c_str(), -1, &prepared, nullptr) != SQLITE_OK) {
    return std::nullopt;
  }
  std::int32_t count = 0;
  int result = SQLITE_OK;
  while ((result = sqlite3_step(prepared)) == SQLITE_ROW) count = sqlite3_column_int(prepared, 0);
  // The headers of before and after agree only if nobody wrote in between.
  if (result == SQLITE_DONE && before && header() == before) {
    knownCount_ = KnownCount{statement, *before, count};
  }
  finish(prepared);
  return count;
}

std::optional<KifoSqliteManager::Header> KifoSqliteManager::header() const {
  constexpr std::size_t writeVersion = 18;
  constexpr std::uint8_t rollbackJournal = 1;
  sqlite3_file* file = nullptr;
  if (sqlite3_file_control(database_, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK ||
      !file || !file->pMethods) {
    return std::nullopt;
  }
  Header bytes{};
  if (file->pMethods->xRead(file, bytes.data(), bytes.size(), 0) != SQLITE_OK) return std::nullopt;
  // With any other journal the header does not tell of every change.
  if (bytes[writeVersion] != rollbackJournal) return std::nullopt;
  return bytes;
}

void KifoSqliteManager::noteAddedRows(const std::string& countStatement,
                                      const std::optional<Header>& before) {
  if (!knownCount_ || !before || knownCount_->statement != countStatement ||
      knownCount_->header != *before) {
    return;
  }
  const auto after = header();
  const bool onlyOurs = after && changeCounter(*after) == changeCounter(*before) + 1;
  if (rowsChanged_.value_or(0) > 0 && onlyOurs) {
    knownCount_->header = *after;
    knownCount_->count += *rowsChanged_;
  }
}

// Maintenance ------------------------------------------------------------------------------------

void KifoSqliteManager::createDatabaseWithName(const std::string& name, bool openImmediately,
                                               StatusBlock statusBlock) {
  inOneTurn([this, name, openImmediately, statusBlock = std::move(statusBlock)] {
    const fs::path path = resource(name);
    const fs::path draft = path.string() + ".new";
    std::error_code error;
    if (!std::ofstream(draft)) error = std::make_error_code(std::errc::io_error);
    if (!error) fs::rename(draft, path, error);
    const auto report = [&](bool success, std::optional<Error> failure) {
      if (statusBlock) statusBlock(success, std::move(failure));
    };
    if (error) return report(false, fileError(error));
    if (!openImmediately) return report(true, std::nullopt);
    const bool success = openOrMake();
    if (success) currentDbInfo_ = name;
    report(success, std::nullopt);
  });
}

void KifoSqliteManager::renameDatabaseWithName(const std::string& oldName,
                                               const std::string& newName,
                                               StatusBlock statusBlock) {
  inOneTurn([this, oldName, newName, statusBlock = std::move(statusBlock)] {
    const bool isCurrent = currentDbInfo_ && *currentDbInfo_ == oldName;
    if (isCurrent) close();
    std::error_code error;
    fs::rename(resource(oldName), resource(newName), error);
    if (!isCurrent) return;
    openOrMake();
    if (!error) currentDbInfo_ = newName;
    // Success is said in both cases; the error alone tells them apart.
    if (statusBlock) statusBlock(true, error ? std::optional(fileError(error)) : std::nullopt);
  });
}

void KifoSqliteManager::deleteDatabaseWithName(const std::string& name, StatusBlock statusBlock) {
  inOneTurn([this, name, statusBlock = std::move(statusBlock)] {
    if (currentDbInfo_ && *currentDbInfo_ == name) close();
    std::error_code error;
    if (!fs::remove(resource(name), error) && !error) {
      error = std::make_error_code(std::errc::no_such_file_or_directory);
    }
    if (error) {
      if (statusBlock) statusBlock(false, fileError(error));
      openOrMake();
      return;
    }
    if (statusBlock) statusBlock(true, std::nullopt);
    currentDbInfo_ = std::optional<std::string>();
  });
}

}  // namespace kifo
