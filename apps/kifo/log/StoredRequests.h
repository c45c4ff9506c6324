#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

struct sqlite3;

namespace kifo::tool {

/// One row of the table of stored requests, as it is in the file.
struct StoredRequest {
  std::int64_t id = 0;
  std::string parameters;  ///< The body as JSON text.
  std::string requestId;
  std::string url;
  std::int64_t date = 0;  ///< Whole seconds since 1970.
  bool wasOffline = false;
  bool isSynchronised = false;
  std::int64_t tryCount = 0;
  std::string httpMethod;

  /// The "name" in the parameters; none when they hold none.
  [[nodiscard]] std::optional<std::string> event() const;
};

/// The database of a home, opened to be read only, also while a host runs.
///
/// A process that died in the middle of a write leaves a journal, which only a writer may roll
/// back. The file is then read from a copy, so that its own is left alone.
///
/// **Threading:** one thread.
/// **Errors:** throws `std::runtime_error` with one line in plain words.
class StoredRequests {
 public:
  static constexpr auto FILE = "KifoLog.db";

  /// Whether there is a database in that home.
  static bool exist(const std::string& home);

  explicit StoredRequests(const std::string& home);
  ~StoredRequests();
  StoredRequests(const StoredRequests&) = delete;
  StoredRequests& operator=(const StoredRequests&) = delete;

  [[nodiscard]] std::vector<StoredRequest> all() const;
  [[nodiscard]] std::optional<StoredRequest> row(std::int64_t id) const;

  /// The host's counters by their names; none in a file that keeps none.
  [[nodiscard]] std::map<std::string, std::int64_t> counters() const;

  /// What SQLite says of the file: "ok", or what is wrong with it.
  [[nodiscard]] std::string integrity() const;
  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] bool wasInterrupted() const { return copy_ != nullptr; }

 private:
  class Copy;

  void open(const std::string& path);
  void close();
  [[nodiscard]] std::vector<StoredRequest> select(const std::string& condition) const;

  const std::string path_;
  std::unique_ptr<Copy> copy_;
  sqlite3* database_ = nullptr;
};

}  // namespace kifo::tool
