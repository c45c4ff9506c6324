#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Error.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"

struct sqlite3;
struct sqlite3_stmt;

namespace kifo {

/// The SDK's only way to SQLite: one file, "KifoLog.db" in the documents directory, opened before
/// each statement and closed after it.
///
/// Every operation returns at once; its work is one turn of the main queue, and the statements that
/// a callback of that turn issues belong to the same turn: they run, in the order of their issue,
/// before anything that was queued meanwhile. That is what makes a count and the insert that
/// depends on it one step, however many threads send.
///
/// **Threading:** operations may be called from any thread; callbacks run on the main queue. The
/// property accessors are for the main queue alone.
/// **Errors:** nothing is printed or thrown. A statement whose open or prepare fails makes no
/// callback at all; one that fails at its step still reports that it has finished. A file locked by
/// another process is waited for, 5 s at most.
class KIFO_EXPORT KifoSqliteManager {
 public:
  using Cell = std::optional<std::string>;  ///< A column as text; none for NULL.
  using Row = std::vector<Cell>;
  using StatusBlock = std::function<void(bool success, std::optional<Error> error)>;
  /// `row` is null at the end, when `finished` is true; `error` is always none.
  using QueryBlock =
      std::function<void(const Row* row, const std::optional<Error>& error, bool finished)>;
  using CountBlock =
      std::function<void(std::int32_t count, const std::optional<Error>& error, bool finished)>;

  /// The one instance. Never destroyed.
  static KifoSqliteManager& sharedManager();

  /// Makes the file with its table when there is no file yet. The file appears whole: a process
  /// that dies here leaves either none or a sound one.
  void prepareDb();

  /// Opens the file, made empty when there is none; `name` is not used. The block may be empty.
  void openLocalDatabaseWithName(const std::string& name, StatusBlock statusBlock);
  /// Closes it; the block is called only when that succeeds. `name` is not used.
  void closeLocalDatabaseWithName(const std::string& name, StatusBlock statusBlock);

  /// Runs a statement that returns no rows. `countedBy`, when given, is the text of a count
  /// statement whose result grows by one for each row that this statement adds; it lets a count
  /// that is known stay known instead of being taken anew from a deep table.
  void execute(const std::string& statement, QueryBlock block,
               const std::optional<std::string>& countedBy = std::nullopt);
  /// Runs a statement that returns no rows right before the turn's next `execute` and in one
  /// transaction with it: two statements for the price of one commit, and where that fails neither
  /// is done. Without a next one it runs by itself when the turn ends.
  void executeWithNext(const std::string& statement, QueryBlock block);
  /// Runs a SELECT; the block gets one row at a time and then the end.
  void performQuery(const std::string& statement, QueryBlock block);
  /// Runs a "select count(*) …"; the block gets column 0 of the last row, 0 without rows.
  void rowCount(const std::string& statement, CountBlock block);

  /// Empties, moves or removes a named database in the documents directory. Not used by the SDK.
  void createDatabaseWithName(const std::string& name, bool openImmediately,
                              StatusBlock statusBlock);
  /// Reports only when `oldName` is the current database, and then success also with an error.
  void renameDatabaseWithName(const std::string& oldName, const std::string& newName,
                              StatusBlock statusBlock);
  void deleteDatabaseWithName(const std::string& name, StatusBlock statusBlock);

  /// Runs `work` as one turn, for several statements that belong together.
  void inOneTurn(std::function<void()> work, Wake wake = Wake::now);

  /// How many rows the last statement changed; 0 when it failed. Main queue only.
  [[nodiscard]] int rowsChanged() const { return rowsChanged_.value_or(0); }
  /// Whether the last statement ended well, also when it changed nothing. Main queue only.
  [[nodiscard]] bool lastSucceeded() const { return rowsChanged_.has_value(); }

  /// While true, a locked file is not waited for; for the end of the SDK's time.
  void setHurried(bool hurried) { hurried_ = hurried; }

  [[nodiscard]] sqlite3* database() const { return database_; }
  [[nodiscard]] const std::string& databasePath() const { return databasePath_; }
  /// The name last created or renamed to; an inner none after a delete; none before any of it.
  [[nodiscard]] const std::optional<std::optional<std::string>>& currentDbInfo() const {
    return currentDbInfo_;
  }

 private:
  using Header = std::array<std::uint8_t, 100>;  ///< The file's first bytes: they change with it.

  /// A count that holds for as long as the file's header stays the same.
  struct KnownCount {
    std::string statement;
    Header header{};
    std::int32_t count = 0;
  };

  /// A statement that waits for the next one of its turn.
  struct Held {
    std::string statement;
    QueryBlock block;
  };
  /// A statement that was run, and what its block is to be told.
  struct Done {
    QueryBlock block;
    std::optional<int> rowsChanged;
  };

  KifoSqliteManager() = default;

  void turn(const std::function<void()>& work);
  /// Opens without making a file that is not there: an empty one would never get its table.
  bool openExisting();
  bool openOrMake();
  bool open(int flags);
  bool close();
  void computePath();
  /// Opens the file and prepares the statement; `run` gets it, finalizes and closes.
  void run(const std::string& statement, std::function<void(sqlite3_stmt*)> work);
  void finish(sqlite3_stmt* statement);
  void runPending();
  /// Begins a transaction and runs in it what was held; does nothing when nothing was.
  std::vector<Done> beginWithHeld();
  /// Ends the transaction, if there is one. What was undone has changed no rows.
  void commit(std::vector<Done>& done);
  std::optional<int> step(sqlite3_stmt* statement);
  std::optional<Header> header() const;
  std::optional<std::int32_t> knownCount(const std::string& statement) const;
  std::optional<std::int32_t> countAnew(const std::string& statement);
  void noteAddedRows(const std::string& countStatement, const std::optional<Header>& before);
  static int waitWhileLocked(void* manager, int attempt);

  std::atomic<bool> hurried_ = false;

  std::mutex turnMutex_;  ///< Held for the whole of a turn.
  // Guarded by turnMutex_.
  std::deque<std::function<void()>> pending_;  ///< What is left of the running turn.
  std::vector<Held> held_;
  sqlite3* database_ = nullptr;
  std::string databasePath_;
  std::optional<std::optional<std::string>> currentDbInfo_;
  std::optional<int> rowsChanged_;  ///< By the last statement; none when it failed.
  std::optional<KnownCount> knownCount_;
  std::int64_t lockedSince_ = 0;  ///< Steady milliseconds.
};

}  // namespace kifo
