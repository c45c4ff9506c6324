// A stored row on its way back to a request. The input is the row's cells, with zero bytes between
// them: the body, the address, the method and the identifier. Whatever they hold, the row goes out
// once at most, and what goes out can be read.
#include <sqlite3.h>

#include <array>
#include <cstdint>

#include "fuzz/FuzzedSdk.h"

namespace {

using namespace kifo;

using Cells = std::array<std::string_view, 4>;

Cells cellsOf(std::string_view input) {
  Cells cells;
  for (std::string_view& cell : cells) {
    cell = input.substr(0, input.find('\0'));
    input.remove_prefix(std::min(cell.size() + 1, input.size()));
  }
  return cells;
}

/// As another program may have left it in the file.
void store(const std::string& path, const Cells& cells) {
  sqlite3* file = nullptr;
  sqlite3_stmt* insert = nullptr;
  fuzz::require(sqlite3_open(path.c_str(), &file) == SQLITE_OK);
  sqlite3_prepare_v2(file,
                     "INSERT INTO KifoLog (PARAMETERS, URL, HTTPMETHOD, REQUEST_ID, DATE, ISSYNC, "
                     "TRYCOUNT, ISSYNC_SUCCESS) VALUES (?, ?, ?, ?, 1, 1, 0, 0)",
                     -1, &insert, nullptr);
  for (int cell = 0; cell < 4; ++cell) {
    const std::string_view text = cells[static_cast<std::size_t>(cell)];
    sqlite3_bind_text(insert, cell + 1, text.data(), static_cast<int>(text.size()),
                      SQLITE_TRANSIENT);
  }
  fuzz::require(sqlite3_step(insert) == SQLITE_DONE);
  sqlite3_finalize(insert);
  sqlite3_close(file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fuzz::FuzzedSdk host;
  store(host.sdk.directory.file("KifoLog.db"),
        cellsOf({reinterpret_cast<const char*>(data), size}));
  const std::size_t known = host.sdk.http->count();
  for (int pass = 0; pass < 3; ++pass) host.loseTheNetworkForAMoment();
  fuzz::require(host.sdk.http->count() <= known + 1);
  host.requireReadableRequests(known);
  return 0;
}
