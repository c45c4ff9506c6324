#include "Kifo_iOS_Common_Kit/storage/StoreTransaction.h"

#include <charconv>
#include <string>
#include <utility>

#include "Kifo_iOS_Common_Kit/storage/LogTable.h"

namespace kifo {
namespace {

std::optional<Counter> counterNamed(std::string_view text) {
  for (std::size_t index = 0; index < kCounters; ++index) {
    const auto counter = static_cast<Counter>(index);
    if (name(counter) == text) return counter;
  }
  return std::nullopt;
}

/// The counters in the file; none when it has no table for them. One that this version does not
/// know stays as it is.
std::optional<Counts> countersIn(StoreConnection& file) {
  Counts counts;
  const auto result = file.run("select NAME, VALUE from KifoStatistics", [&](const auto& row) {
    const auto counter = counterNamed(row[0].value_or(""));
    const std::string value = row[1].value_or("");
    if (counter) std::from_chars(value.data(), value.data() + value.size(), counts[*counter]);
  });
  return result.isDone ? std::optional(counts) : std::nullopt;
}

/// Empty when nothing has grown.
std::string statementAdding(const Counts& growth) {
  std::string values;
  for (std::size_t index = 0; index < kCounters; ++index) {
    const auto counter = static_cast<Counter>(index);
    if (growth[counter] == 0) continue;
    values += values.empty() ? "" : ", ";
    values.append("('").append(name(counter)).append("', ");
    values += std::to_string(growth[counter]) + ")";
  }
  if (values.empty()) return {};
  return "INSERT INTO KifoStatistics (NAME, VALUE) VALUES " + values +
         " ON CONFLICT (NAME) DO UPDATE SET VALUE = VALUE + excluded.VALUE";
}

}  // namespace

void findCounters(StoreConnection& file, Counters& counters) {
  if (counters.isFound()) return;
  const auto waiting = file.count(LogTable::kCountWaiting);
  if (waiting) counters.setFound(*waiting, countersIn(file));
}

StoreTransaction::StoreTransaction(StoreConnection& file, std::shared_ptr<Counters> counters)
    : file_(file), counters_(std::move(counters)), begun_(file.run("BEGIN IMMEDIATE")) {
  if (begun_.isDone && counters_) findCounters(file_, *counters_);
}

StoreConnection::Result StoreTransaction::commit(bool changes) {
  const auto growth = changes && counters_ ? counters_->unwritten() : std::nullopt;
  const std::string statement = growth ? statementAdding(*growth) : "";
  // A counter that cannot be written is no reason to lose what it counts.
  const bool isWritten = !statement.empty() && file_.run(statement).isDone;
  auto committed = file_.run("COMMIT");
  if (!committed.isDone) {
    rollback();
  } else if (isWritten) {
    counters_->wrote(*growth);
  }
  return committed;
}

}  // namespace kifo
