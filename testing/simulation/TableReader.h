#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "testing/simulation/Disk.h"
#include "testing/simulation/Ledger.h"

namespace kifo::testing::simulation {

inline constexpr auto kDocuments = "/home";
inline constexpr auto kDatabase = "/home/KifoLog.db";

/// Reads the table of stored requests as another program would, whenever the disk has changed.
class TableReader {
 public:
  explicit TableReader(Disk& disk) : disk_(disk) {}
  ~TableReader() { close(); }
  TableReader(const TableReader&) = delete;
  TableReader& operator=(const TableReader&) = delete;

  /// Tells `ledger` what is there. `sending` is how many requests are on their way to the network.
  void read(Ledger& ledger, std::size_t sending);

 private:
  bool open(Ledger& ledger);
  void close();
  void readRows(Ledger& ledger, std::size_t sending);

  Disk& disk_;
  std::shared_ptr<const Disk::File> file_;  ///< That of the connection.
  sqlite3* connection_ = nullptr;
  sqlite3_stmt* select_ = nullptr;
  std::uint64_t version_ = 0;
  std::vector<StoredRow> rows_;
};

}  // namespace kifo::testing::simulation
