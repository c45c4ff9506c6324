#include "apps/kifo/log/StoredRequests.h"

#include <sqlite3.h>

#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "testing/TemporaryDirectory.h"

namespace kifo::tool {
namespace {

constexpr int kPatience = 5000;  // milliseconds that a writer may hold the file

std::string text(sqlite3_stmt* statement, int column) {
  const auto* bytes = sqlite3_column_text(statement, column);
  const int size = sqlite3_column_bytes(statement, column);
  return bytes != nullptr ? std::string(reinterpret_cast<const char*>(bytes), size) : "";
}

/// Runs a query, a row at a time; the code of the last step.
int query(sqlite3* database, const std::string& sql,
          const std::function<void(sqlite3_stmt*)>& row) {
  sqlite3_stmt* statement = nullptr;
  int code = sqlite3_prepare_v2(database, sql.c_str(), -1, &statement, nullptr);
  while (code == SQLITE_OK || code == SQLITE_ROW) {
    code = sqlite3_step(statement);
    if (code == SQLITE_ROW) row(statement);
  }
  sqlite3_finalize(statement);
  return code;
}

StoredRequest requestIn(sqlite3_stmt* row) {
  StoredRequest request;
  request.id = sqlite3_column_int64(row, 0);
  request.parameters = text(row, 1);
  request.requestId = text(row, 2);
  request.url = text(row, 3);
  request.date = sqlite3_column_int64(row, 4);
  request.wasOffline = sqlite3_column_int(row, 5) != 0;
  request.isSynchronised = sqlite3_column_int(row, 6) != 0;
  request.tryCount = sqlite3_column_int64(row, 7);
  request.httpMethod = text(row, 8);
  return request;
}

}  // namespace

/// The database and its journal, where they may be written to.
class StoredRequests::Copy {
 public:
  explicit Copy(const std::string& path) {
    namespace fs = std::filesystem;
    for (const char* suffix : {"", "-journal", "-wal"}) {
      if (fs::exists(path + suffix)) fs::copy_file(path + suffix, file() + suffix);
    }
  }

  [[nodiscard]] std::string file() const { return home_.path() + "/" + FILE; }

 private:
  const testing::TemporaryDirectory home_;
};

std::optional<std::string> StoredRequest::event() const {
  const auto json = nlohmann::json::parse(parameters, nullptr, /*allow_exceptions=*/false);
  if (!json.is_object() || !json.contains("name") || !json["name"].is_string()) return std::nullopt;
  return json["name"].get<std::string>();
}

bool StoredRequests::exist(const std::string& home) {
  return std::filesystem::exists(home + "/" + FILE);
}

StoredRequests::StoredRequests(const std::string& home) : path_(home + "/" + FILE) {
  if (!exist(home)) {
    throw std::runtime_error("there is no " + std::string(FILE) + " in " + home +
                             ": no host was started there yet");
  }
  open(path_);
  const int code = query(database_, "select count(*) from sqlite_master", [](sqlite3_stmt*) {});
  if (code == SQLITE_DONE || (code & 0xFF) != SQLITE_READONLY) return;
  close();
  copy_ = std::make_unique<Copy>(path_);
  open(copy_->file());
}

StoredRequests::~StoredRequests() {
  close();
}

void StoredRequests::open(const std::string& path) {
  const int flags = copy_ ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
  if (sqlite3_open_v2(path.c_str(), &database_, flags, nullptr) != SQLITE_OK) {
    const std::string problem = sqlite3_errmsg(database_);
    close();
    throw std::runtime_error(path_ + " cannot be read: " + problem);
  }
  sqlite3_busy_timeout(database_, kPatience);
}

void StoredRequests::close() {
  sqlite3_close(database_);
  database_ = nullptr;
}

std::vector<StoredRequest> StoredRequests::select(const std::string& condition) const {
  std::vector<StoredRequest> found;
  const int code = query(database_,
                         "select ID, PARAMETERS, REQUEST_ID, URL, DATE, ISSYNC, ISSYNC_SUCCESS, "
                         "TRYCOUNT, HTTPMETHOD from KifoLog " +
                             condition + " order by ID",
                         [&](sqlite3_stmt* row) { found.push_back(requestIn(row)); });
  if (code != SQLITE_DONE) {
    throw std::runtime_error(path_ + " cannot be read: " + sqlite3_errmsg(database_));
  }
  return found;
}

std::vector<StoredRequest> StoredRequests::all() const {
  return select("");
}

std::optional<StoredRequest> StoredRequests::row(std::int64_t id) const {
  const auto found = select("where ID = " + std::to_string(id));
  return found.empty() ? std::nullopt : std::optional(found.front());
}

std::map<std::string, std::int64_t> StoredRequests::counters() const {
  std::map<std::string, std::int64_t> counters;
  query(database_, "select NAME, VALUE from KifoStatistics",
        [&](sqlite3_stmt* row) { counters.emplace(text(row, 0), sqlite3_column_int64(row, 1)); });
  return counters;
}

std::string StoredRequests::integrity() const {
  std::string words;
  const int code = query(database_, "pragma integrity_check", [&](sqlite3_stmt* row) {
    words += (words.empty() ? "" : "; ") + text(row, 0);
  });
  return code == SQLITE_DONE ? words : sqlite3_errmsg(database_);
}

}  // namespace kifo::tool
