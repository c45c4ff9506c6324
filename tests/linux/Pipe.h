#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <string>

#include "tests/support/Common.h"

namespace kifo::testing {

/// A pipe that is closed at the end. Reading never waits; writing does not either.
class Pipe {
 public:
  Pipe() {
    if (pipe2(ends_.data(), O_CLOEXEC | O_NONBLOCK) != 0) ends_ = {-1, -1};
  }
  ~Pipe() {
    closeReading();
    closeWriting();
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  [[nodiscard]] int reading() const { return ends_[0]; }
  [[nodiscard]] int writing() const { return ends_[1]; }
  void closeReading() { closeEnd(ends_[0]); }
  void closeWriting() { closeEnd(ends_[1]); }

  void write(char byte) const { [[maybe_unused]] const auto count = ::write(ends_[1], &byte, 1); }
  /// What is there now, of at most `limit` bytes.
  [[nodiscard]] std::string read(std::size_t limit = 1u << 20) const {
    std::string text(limit, '\0');
    std::size_t size = 0;
    while (size < limit) {
      const auto count = ::read(ends_[0], text.data() + size, limit - size);
      if (count <= 0) break;
      size += static_cast<std::size_t>(count);
    }
    text.resize(size);
    return text;
  }

 private:
  static void closeEnd(int& end) {
    if (end >= 0) close(end);
    end = -1;
  }
  std::array<int, 2> ends_{-1, -1};
};

}  // namespace kifo::testing
