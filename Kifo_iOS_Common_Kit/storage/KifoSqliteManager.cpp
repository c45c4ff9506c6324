#include "Kifo_iOS_Common_Kit/storage/KifoSqliteManager.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/storage/DiskStoreFiles.h"
#include "Kifo_iOS_Common_Kit/storage/LogTable.h"
#include "Kifo_iOS_Common_Kit/storage/StoreTransaction.h"

namespace kifo {
namespace {

namespace fs = std::filesystem;

constexpr auto kFileName = "KifoLog.db";

std::string withoutOuterNewlines(const std::string& text) {
  constexpr auto newlines = "\n\r\v\f";
  const auto first = text.find_first_not_of(newlines);
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(newlines) - first + 1);
}

/// Fills an empty file with the table in one transaction; whether the file holds it.
bool makeTable(const std::string& path, const std::atomic<bool>& waitsForLocks) {
  StoreConnection file(path, StoreConnection::Mode::existing, waitsForLocks);
  file.run("BEGIN");
  bool isMade = file.run(LogTable::kCreate).isDone;
  isMade = isMade && file.run(StoreTransaction::kCreateTable).isDone;
  for (const char* index : LogTable::kIndexes) isMade = isMade && file.run(index).isDone;
  return isMade && file.run("COMMIT").isDone;
}

}  // namespace

std::shared_ptr<KifoSqliteManager> KifoSqliteManager::sharedManager() {
  return Runtime::current()->store();
}

KifoSqliteManager::KifoSqliteManager(std::shared_ptr<SerialQueue> mainQueue, std::string directory,
                                     std::shared_ptr<StoreFiles> files,
                                     std::shared_ptr<Counters> counters)
    : mainQueue_(std::move(mainQueue)),
      files_(DiskStoreFiles::unlessGiven(std::move(files))),
      directory_(std::move(directory)),
      databasePath_((fs::path(directory_) / kFileName).string()),
      counters_(std::move(counters)),
      pendingWrites_(counters_) {}

void KifoSqliteManager::post(std::function<void()> work) {
  mainQueue_->post([self = shared_from_this(), work = std::move(work)] {
    if (!self->isAbandoned_) work();
  });
}

// The file ---------------------------------------------------------------------------------------

void KifoSqliteManager::prepareDb() {
  post([this] {
    isPrepared_ = true;
    if (files_->exists(databasePath_)) {
      files_->makePrivate(databasePath_);
    } else {
      makeFile();
    }
  });
}

void KifoSqliteManager::makeFile() {
  pendingWrites_.forgetCount();
  files_->makeDirectories(databasePath_);
  // Built under another name: the file is never there without its table, and one that another
  // process has just made is not replaced.
  const std::string draft = databasePath_ + ".new";
  files_->remove(draft);
  if (!files_->makePrivate(draft)) return;
  // A full disk may keep the table out: the file is made when it is next needed.
  if (makeTable(draft, waitsForLocks_) && removeLoneJournal()) {
    files_->move(draft, databasePath_, /*replaces=*/false);
  }
  files_->remove(draft);
}

bool KifoSqliteManager::removeLoneJournal() {
  const std::string journal = databasePath_ + "-journal";
  return files_->exists(databasePath_) || !files_->exists(journal) || !files_->remove(journal);
}

bool KifoSqliteManager::open() {
  if (!files_->exists(databasePath_)) files_->makePrivate(databasePath_);
  database_.emplace(databasePath_, StoreConnection::Mode::madeWhenMissing, waitsForLocks_);
  return database_->isOpen();
}

bool KifoSqliteManager::close() {
  if (database_ && !database_->close()) return false;
  database_.reset();
  return true;
}

void KifoSqliteManager::openLocalDatabaseWithName(const std::string&, StatusBlock statusBlock) {
  post([this, statusBlock = std::move(statusBlock)] {
    const bool success = open();
    if (statusBlock) statusBlock(success, std::nullopt);
  });
}

void KifoSqliteManager::closeLocalDatabaseWithName(const std::string&, StatusBlock statusBlock) {
  post([this, statusBlock = std::move(statusBlock)] {
    if (close() && statusBlock) statusBlock(true, std::nullopt);
  });
}

// Statements -------------------------------------------------------------------------------------

void KifoSqliteManager::enqueue(PendingWrites::Groups groups,
                                std::function<void(StoreConnection&)> work) {
  const auto task = [self = shared_from_this(), groups, work = std::move(work)] {
    if (self->isAbandoned_) return;
    // It was removed while the host ran, or a full disk prevented it: it is made again.
    if (self->isPrepared_ && !self->files_->exists(self->databasePath_)) self->makeFile();
    // Never makes the file: an empty one would never get its table.
    StoreConnection file(self->databasePath_, StoreConnection::Mode::existing,
                         self->waitsForLocks_);
    self->pendingWrites_.run(file, groups);
    if (work) work(file);
  };
  mainQueue_->post(task);
}

void KifoSqliteManager::perform(std::function<void(StoreConnection&)> work) {
  enqueue(pendingWrites_.endGroup(), std::move(work));
}

bool KifoSqliteManager::write(PendingWrite write) {
  const auto added = pendingWrites_.add(std::move(write));
  if (added.isFirst) enqueue(added.groups, {});
  return !added.isRefused;
}

void KifoSqliteManager::execute(const std::string& statement, QueryBlock block) {
  perform([text = withoutOuterNewlines(statement), block = std::move(block)](auto& file) {
    const auto result = file.run(text);
    file.close();
    if (result.isPrepared && block) block(nullptr, std::nullopt, true);
  });
}

void KifoSqliteManager::performQuery(const std::string& statement, QueryBlock block) {
  perform([text = withoutOuterNewlines(statement), block = std::move(block)](auto& file) {
    const auto result = file.run(text, [&](const Row& row) {
      if (block) block(&row, std::nullopt, false);
    });
    file.close();
    if (result.isPrepared && block) block(nullptr, std::nullopt, true);
  });
}

void KifoSqliteManager::rowCount(const std::string& statement, CountBlock block) {
  perform([text = withoutOuterNewlines(statement), block = std::move(block)](auto& file) {
    StoreConnection::Result result;
    const auto count = file.count(text, &result);
    file.close();
    if (result.isPrepared && block) block(count.value_or(0), std::nullopt, true);
  });
}

void KifoSqliteManager::findCounters() {
  if (!counters_) return;
  perform([this](auto& file) { kifo::findCounters(file, *counters_); });
}

void KifoSqliteManager::writeCounters() {
  if (!counters_) return;
  perform([this](auto& file) {
    StoreTransaction transaction(file, counters_);
    if (transaction.begun().isDone) transaction.commit(/*changes=*/true);
  });
}

// The end of it ---------------------------------------------------------------------------------

void KifoSqliteManager::abandon() {
  isAbandoned_ = true;
  waitsForLocks_ = false;
  pendingWrites_.close();
}

bool KifoSqliteManager::eraseFiles() {
  close();
  const auto isErased = [this](const char* suffix) {
    const std::string path = databasePath_ + suffix;
    return !files_->exists(path) || !files_->remove(path);
  };
  // The database first: without its journal it may hold half a transaction.
  constexpr std::array suffixes{"", "-journal", "-wal", "-shm", ".new", ".new-journal"};
  return std::ranges::all_of(suffixes, isErased);
}

// Maintenance ------------------------------------------------------------------------------------

/// The file that a maintenance operation's name stands for: its last component, in the documents
/// directory, so that no name reaches beyond it.
std::string KifoSqliteManager::resource(const std::string& name) const {
  return (fs::path(directory_) / fs::path(name).filename()).string();
}

void KifoSqliteManager::createDatabaseWithName(const std::string& name, bool openImmediately,
                                               StatusBlock statusBlock) {
  post([this, name, openImmediately, statusBlock = std::move(statusBlock)] {
    const std::string path = resource(name);
    const std::string draft = path + ".new";
    files_->remove(draft);
    std::optional<Error> error;
    if (files_->makePrivate(draft)) {
      error = files_->move(draft, path, /*replaces=*/true);
    } else {
      const auto code = std::make_error_code(std::errc::io_error);
      error = Error{"file", code.value(), code.message()};
    }
    const auto report = [&](bool success, std::optional<Error> failure) {
      if (statusBlock) statusBlock(success, std::move(failure));
    };
    if (error) return report(false, error);
    if (!openImmediately) return report(true, std::nullopt);
    const bool success = open();
    if (success) currentDbInfo_ = name;
    report(success, std::nullopt);
  });
}

void KifoSqliteManager::renameDatabaseWithName(const std::string& oldName,
                                               const std::string& newName,
                                               StatusBlock statusBlock) {
  post([this, oldName, newName, statusBlock = std::move(statusBlock)] {
    const bool isCurrent = currentDbInfo_ && *currentDbInfo_ == oldName;
    if (isCurrent) close();
    const auto error = files_->move(resource(oldName), resource(newName), /*replaces=*/false);
    if (!isCurrent) return;
    open();
    if (!error) currentDbInfo_ = newName;
    // Success is true in both cases; only the error differs.
    if (statusBlock) statusBlock(true, error);
  });
}

void KifoSqliteManager::deleteDatabaseWithName(const std::string& name, StatusBlock statusBlock) {
  post([this, name, statusBlock = std::move(statusBlock)] {
    if (currentDbInfo_ && *currentDbInfo_ == name) close();
    if (const auto error = files_->remove(resource(name))) {
      if (statusBlock) statusBlock(false, error);
      open();
      return;
    }
    if (statusBlock) statusBlock(true, std::nullopt);
    currentDbInfo_ = std::optional<std::string>();
  });
}

}  // namespace kifo
