#include "Kifo_iOS_Common_Kit/storage/KifoSqliteManager.h"

#include <filesystem>
#include <fstream>
#include <mutex>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Runtime.h"
#include "Kifo_iOS_Common_Kit/storage/LogTable.h"

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

Error fileError(const std::error_code& code) {
  return {"file", code.value(), code.message()};
}

/// Makes `directory` and whatever is missing above it, for this user alone.
void makeDirectories(const fs::path& directory) {
  std::error_code error;
  if (directory.empty() || fs::exists(directory, error)) return;
  makeDirectories(directory.parent_path());
  if (fs::create_directory(directory, error)) {
    fs::permissions(directory, fs::perms::owner_all, error);
  }
}

/// Makes a file that is missing, for this user alone. SQLite gives a journal the permissions of its
/// file.
bool makeFile(const fs::path& path) {
  std::error_code error;
  if (!std::ofstream(path, std::ios::app)) return false;
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write, error);
  return !error;
}

/// Moves a file, but never onto one that exists.
std::error_code move(const fs::path& from, const fs::path& to) {
  std::error_code error;
  fs::create_hard_link(from, to, error);
  if (!error) {
    fs::remove(from, error);
    return error;
  }
  std::error_code unknown;
  const bool isMissing = !fs::exists(from, unknown);
  const bool isTaken = fs::exists(fs::symlink_status(to, unknown));
  // A file system without links.
  if (!isMissing && !isTaken) fs::rename(from, to, error);
  return error;
}

/// Fills an empty file with the table in one transaction.
void makeTable(const fs::path& path, const std::atomic<bool>& waitsForLocks) {
  StoreConnection file(path.string(), StoreConnection::Mode::existing, waitsForLocks);
  file.run("BEGIN");
  file.run(LogTable::kCreate);
  for (const char* index : LogTable::kIndexes) file.run(index);
  file.run("COMMIT");
}

}  // namespace

std::shared_ptr<KifoSqliteManager> KifoSqliteManager::sharedManager() {
  return Runtime::current()->store();
}

KifoSqliteManager::KifoSqliteManager(std::shared_ptr<SerialQueue> mainQueue, std::string directory)
    : mainQueue_(std::move(mainQueue)),
      directory_(std::move(directory)),
      databasePath_((fs::path(directory_) / kFileName).string()) {}

void KifoSqliteManager::post(std::function<void()> work) {
  mainQueue_->post([self = shared_from_this(), work = std::move(work)] { work(); });
}

// The file ---------------------------------------------------------------------------------------

void KifoSqliteManager::prepareDb() {
  post([this] {
    std::error_code error;
    if (fs::exists(databasePath_, error)) {
      fs::permissions(databasePath_, fs::perms::owner_read | fs::perms::owner_write, error);
      return;
    }
    makeDirectories(directory_);
    // Built under another name: the file is never there without its table, and one that another
    // process has just made is not replaced.
    const fs::path draft = databasePath_ + ".new";
    fs::remove(draft, error);
    if (!makeFile(draft)) return;
    makeTable(draft, waitsForLocks_);
    move(draft, databasePath_);
    fs::remove(draft, error);
  });
}

bool KifoSqliteManager::open() {
  std::error_code error;
  if (!fs::exists(databasePath_, error)) makeFile(databasePath_);
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

// Maintenance ------------------------------------------------------------------------------------

/// The file that a maintenance operation's name stands for: its last component, in the documents
/// directory, so that no name reaches beyond it.
std::string KifoSqliteManager::resource(const std::string& name) const {
  return (fs::path(directory_) / fs::path(name).filename()).string();
}

void KifoSqliteManager::createDatabaseWithName(const std::string& name, bool openImmediately,
                                               StatusBlock statusBlock) {
  post([this, name, openImmediately, statusBlock = std::move(statusBlock)] {
    const fs::path path = resource(name);
    const fs::path draft = path.string() + ".new";
    std::error_code error;
    fs::remove(draft, error);
    if (!makeFile(draft)) error = std::make_error_code(std::errc::io_error);
    if (!error) fs::rename(draft, path, error);
    const auto report = [&](bool success, std::optional<Error> failure) {
      if (statusBlock) statusBlock(success, std::move(failure));
    };
    if (error) return report(false, fileError(error));
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
    const auto error = move(resource(oldName), resource(newName));
    if (!isCurrent) return;
    open();
    if (!error) currentDbInfo_ = newName;
    // Success is said in both cases; the error alone tells them apart.
    if (statusBlock) statusBlock(true, error ? std::optional(fileError(error)) : std::nullopt);
  });
}

void KifoSqliteManager::deleteDatabaseWithName(const std::string& name, StatusBlock statusBlock) {
  post([this, name, statusBlock = std::move(statusBlock)] {
    if (currentDbInfo_ && *currentDbInfo_ == name) close();
    std::error_code error;
    if (!fs::remove(resource(name), error) && !error) {
      error = std::make_error_code(std::errc::no_such_file_or_directory);
    }
    if (error) {
      if (statusBlock) statusBlock(false, fileError(error));
      open();
      return;
    }
    if (statusBlock) statusBlock(true, std::nullopt);
    currentDbInfo_ = std::optional<std::string>();
  });
}

}  // namespace kifo
