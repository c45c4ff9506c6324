#pragma once

#include <mutex>
#include <string>

#include <nlohmann/json.hpp>

#include "Kifo_iOS_Common_Kit/ports/ConsoleSink.h"
#include "Kifo_iOS_Common_Kit/ports/Inspector.h"

namespace kifo::tool {

/// What a scripted host has to say: one JSON object a line, written at once, in the order in which
/// things happen.
///
/// **Threading:** thread-safe. **Errors:** the process ends when its output is closed.
class Output final : public ConsoleSink, public Inspector {
 public:
  using Line = nlohmann::ordered_json;

  explicit Output(int descriptor) : descriptor_(descriptor) {}

  void line(const Line& line);

  /// A line that was not understood: `{"error": text}`. It decides the exit status.
  void error(const std::string& text);
  [[nodiscard]] bool hadErrors() const;

  void write(std::string line) override { this->line({{"console", std::move(line)}}); }
  void decided(const Decision& decision) override;

 private:
  const int descriptor_;
  mutable std::mutex mutex_;
  // Guarded by mutex_.
  bool hadErrors_ = false;
};

}  // namespace kifo::tool
