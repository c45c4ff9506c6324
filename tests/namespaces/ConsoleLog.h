#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/ConsoleSink.h"
#include "tests/namespaces/Patience.h"

namespace kifo::testing {

/// A console whose lines can be waited for.
class ConsoleLog final : public ConsoleSink {
 public:
  void write(std::string line) override {
    const std::lock_guard lock(mutex_);
    lines_.push_back(std::move(line));
    written_.notify_all();
  }

  /// Lines so far; what is waited for is counted from there.
  [[nodiscard]] std::size_t mark() const {
    const std::lock_guard lock(mutex_);
    return lines_.size();
  }

  /// Waits for a line behind `mark` that is exactly `line`; the mark behind it. None when
  /// it does not come.
  [[nodiscard]] std::optional<std::size_t> await(std::string_view line, std::size_t mark) const {
    std::unique_lock lock(mutex_);
    auto found = lines_.end();
    const bool came = written_.wait_for(lock, patience(), [&] {
      found = std::find(lines_.begin() + static_cast<std::ptrdiff_t>(mark), lines_.end(), line);
      return found != lines_.end();
    });
    if (!came) return std::nullopt;
    return static_cast<std::size_t>(found - lines_.begin()) + 1;
  }

  /// Waits for any line behind `mark`. False when none comes.
  bool awaitMore(std::size_t mark) const {
    std::unique_lock lock(mutex_);
    return written_.wait_for(lock, patience(), [&] { return lines_.size() > mark; });
  }

 private:
  mutable std::mutex mutex_;
  mutable std::condition_variable written_;
  std::vector<std::string> lines_;  // Guarded by mutex_.
};

}  // namespace kifo::testing
