#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Error.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "Kifo_iOS_Common_Kit/ports/StoreFiles.h"
#include "Kifo_iOS_Common_Kit/storage/PendingWrites.h"
#include "Kifo_iOS_Common_Kit/storage/StoreConnection.h"

namespace kifo {

/// The SDK's only way to SQLite: one file, "KifoLog.db" in the documents directory, opened for each
/// operation and closed after it.
///
/// **Threading:** operations may be called from any thread and return at once. Each runs as one
/// task of the main queue, in the order of the calls, and so do its callbacks. The property
/// accessors are for the main queue alone.
/// **Ownership:** made shared: a queued task holds its manager. Tasks that a stopped queue drops do
/// nothing.
/// **Errors:** nothing is printed or thrown. A statement whose open or prepare fails makes no
/// callback at all; one that fails at its step still reports that it has finished. A file locked by
/// another process is waited for, 5 s at most.
class KifoSqliteManager : public std::enable_shared_from_this<KifoSqliteManager> {
 public:
  using Row = StoreConnection::Row;
  using StatusBlock = std::function<void(bool success, std::optional<Error> error)>;
  /// `row` is null at the end, when `finished` is true; `error` is always none.
  using QueryBlock =
      std::function<void(const Row* row, const std::optional<Error>& error, bool finished)>;
  using CountBlock =
      std::function<void(std::int32_t count, const std::optional<Error>& error, bool finished)>;

  /// The manager of the platform in force.
  static std::shared_ptr<KifoSqliteManager> sharedManager();

  /// `directory` is where the file lies; it is made with the file.
  /// `files` may be null: the disk's. `counters`, unless null, are kept in the file.
  KifoSqliteManager(std::shared_ptr<SerialQueue> mainQueue, std::string directory,
                    std::shared_ptr<StoreFiles> files = nullptr,
                    std::shared_ptr<Counters> counters = nullptr);

  /// Makes the file with its table when there is no file yet, both readable by this user alone; a
  /// file that goes missing afterwards is made again by the next operation. The file appears whole:
  /// a process that dies here leaves either none or a complete one.
  void prepareDb();

  /// Opens the file, made empty when there is none. The block may be empty.
  /// `name` is not used, here and below. Kept for compatibility.
  void openLocalDatabaseWithName(const std::string& name, StatusBlock statusBlock);
  /// Closes it; the block is called only when that succeeds.
  void closeLocalDatabaseWithName(const std::string& name, StatusBlock statusBlock);

  /// Runs a statement that returns no rows.
  void execute(const std::string& statement, QueryBlock block);
  /// Runs a statement that returns rows; they are delivered one at a time.
  void performQuery(const std::string& statement, QueryBlock block);
  /// Runs a statement whose result is a number: column 0 of the last row, 0 without rows.
  void rowCount(const std::string& statement, CountBlock block);

  /// Maintenance of a file in the documents directory, of which only the last component of its name
  /// counts. `createDatabaseWithName` empties one that exists. Not used by the SDK itself.
  void createDatabaseWithName(const std::string& name, bool openImmediately,
                              StatusBlock statusBlock);
  /// The block is called only when `oldName` is the current database, and then always with success
  /// true: the error tells whether it was moved. Kept for compatibility. A file that exists is
  /// never replaced.
  void renameDatabaseWithName(const std::string& oldName, const std::string& newName,
                              StatusBlock statusBlock);
  void deleteDatabaseWithName(const std::string& name, StatusBlock statusBlock);

  /// Runs `work` as one task on an open connection, behind the writes that wait.
  void perform(std::function<void(StoreConnection&)> work);
  /// Queues a change of the table, which shares a transaction with others that wait. False, and
  /// nothing is kept or called, for a copy when as many copies as its limit wait already.
  bool write(PendingWrite write);

  /// Reads what the file held before this session, if it is there.
  void findCounters();
  /// Writes what has been counted since the last change of the file. For shutdown.
  void writeCounters();
  [[nodiscard]] const std::shared_ptr<Counters>& counters() const { return counters_; }

  /// From now on a locked file is not waited for. For shutdown.
  void stopWaitingForLocks() { waitsForLocks_ = false; }

  /// Drops the writes that wait, and those that come later. For after the main queue's end.
  void dropWrites() { pendingWrites_.close(); }

  /// From now on nothing is read or written: what is queued is dropped, its completions never run.
  void abandon();
  /// Removes the file and then what SQLite keeps beside it. Stops at the first that cannot be
  /// removed, and is false then. Main queue only.
  bool eraseFiles();

  /// The handle that `openLocalDatabaseWithName` left open; null when none is.
  [[nodiscard]] sqlite3* database() const { return database_ ? database_->handle() : nullptr; }
  [[nodiscard]] const std::string& databasePath() const { return databasePath_; }
  /// The name last created or renamed to; an inner none after a delete; none before any of it.
  [[nodiscard]] const std::optional<std::optional<std::string>>& currentDbInfo() const {
    return currentDbInfo_;
  }

 private:
  void post(std::function<void()> work);
  /// Queues a task that runs the first `groups` groups of writes and then `work`, if any.
  void enqueue(PendingWrites::Groups groups, std::function<void(StoreConnection&)> work);
  /// Makes the file with its table, unless another process makes it first.
  void makeFile();
  /// Removes a journal whose file is gone: SQLite would write its pages into the next file. False
  /// when it stays.
  bool removeLoneJournal();
  bool open();
  bool close();
  [[nodiscard]] std::string resource(const std::string& name) const;

  // Constant after construction.
  const std::shared_ptr<SerialQueue> mainQueue_;
  const std::shared_ptr<StoreFiles> files_;
  const std::string directory_;
  const std::string databasePath_;
  const std::shared_ptr<Counters> counters_;  ///< May be null.

  // Thread-safe.
  std::atomic<bool> waitsForLocks_ = true;
  std::atomic<bool> isAbandoned_ = false;
  PendingWrites pendingWrites_;

  // Main queue only.
  bool isPrepared_ = false;  ///< `prepareDb` has run.
  std::optional<StoreConnection> database_;
  std::optional<std::optional<std::string>> currentDbInfo_;
};

}  // namespace kifo
