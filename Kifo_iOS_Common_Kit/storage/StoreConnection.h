#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace kifo {

/// One connection to the file of stored requests. It is open from its construction until `close`.
///
/// **Threading:** main queue only. Statements run at once, on the calling thread.
/// **Errors:** nothing is printed or thrown: each statement's `Result` tells how it ended. On a
/// file that could not be opened every statement fails. A statement that finds the file locked by
/// another process waits for it, 5 s at most.
class StoreConnection {
 public:
  enum class Mode { existing, madeWhenMissing };

  using Cell = std::optional<std::string>;  ///< A column as text; none for NULL.
  using Row = std::vector<Cell>;

  /// How a statement ended.
  struct Result {
    bool isPrepared = false;  ///< False: the file could not be opened, or the text is no statement.
    bool isDone = false;
    bool isLocked = false;  ///< It failed because another process kept the lock.
    int rowsChanged = 0;    ///< 0 unless it is done.
  };

  /// `waitsForLocks` is read during each wait and must outlive this.
  StoreConnection(const std::string& path, Mode mode, const std::atomic<bool>& waitsForLocks);
  ~StoreConnection() { close(); }
  StoreConnection(const StoreConnection&) = delete;
  StoreConnection& operator=(const StoreConnection&) = delete;

  [[nodiscard]] bool isOpen() const { return handle_ != nullptr; }
  [[nodiscard]] sqlite3* handle() const { return handle_; }
  /// Undoes a transaction that was not committed. False, and still open, when SQLite refuses.
  bool close();
  [[nodiscard]] bool isInTransaction() const;
  /// A number in the file that grows by one with each commit that changes it, of any process. None
  /// when the file has a journal that keeps no such number.
  [[nodiscard]] std::optional<std::uint32_t> changeCounter() const;

  /// Runs one statement to its end. `onRow` gets each row that it yields.
  Result run(const std::string& statement, const std::function<void(const Row&)>& onRow = {});
  /// Column 0 of the last row, 0 without rows. None when the statement does not end well, which
  /// `result` tells about.
  std::optional<std::int32_t> count(const std::string& statement, Result* result = nullptr);

 private:
  Result stepThrough(const std::string& statement, const std::function<void(sqlite3_stmt*)>& onRow);
  static int waitWhileLocked(void* connection, int attempt);

  const std::atomic<bool>& waitsForLocks_;
  sqlite3* handle_ = nullptr;
};

}  // namespace kifo
