#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/ConsoleSink.h"
#include "testing/Scripted.h"

namespace kifo::testing {

/// A console that keeps its lines.
class RecordingConsole final : public ConsoleSink {
 public:
  using Lines = std::vector<std::string>;

  void write(std::string line) override {
    lines_.update([&](Lines& all) { all.push_back(std::move(line)); });
  }

  [[nodiscard]] Lines lines() const { return lines_.get(); }
  /// The lines since the last call.
  Lines take() {
    return lines_.update([](Lines& all) { return std::exchange(all, {}); });
  }
  void clear() { take(); }
  /// How many lines are exactly `line`.
  [[nodiscard]] std::size_t count(std::string_view line) const {
    const Lines all = lines();
    return static_cast<std::size_t>(std::ranges::count(all, line));
  }

 private:
  Scripted<Lines> lines_;
};

}  // namespace kifo::testing
