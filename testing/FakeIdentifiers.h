#pragma once

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Clock.h"

namespace kifo::testing {

/// Well-formed UUIDs that count up: …0001, …0002, and so on.
class FakeIdentifiers final : public RandomIdentifiers {
 public:
  std::string uuid() override { return at(++issued_); }

  /// The `index`th identifier that is given out, from 1.
  static std::string at(std::uint64_t index) {
    char text[37];
    std::snprintf(text, sizeof text, "00000000-0000-4000-8000-%012llX",
                  static_cast<unsigned long long>(index & 0xFFFFFFFFFFFFULL));
    return text;
  }
  /// How many were given out.
  [[nodiscard]] std::uint64_t issued() const { return issued_; }

 private:
  std::atomic<std::uint64_t> issued_ = 0;
};

}  // namespace kifo::testing
