#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Clock.h"
#include "testing/Scripted.h"

namespace kifo::testing {

/// A clock that stands still until the test sets it. It starts at 2023-11-14 22:13:20 UTC, in
/// Istanbul.
class FakeClock final : public Clock {
 public:
  [[nodiscard]] std::int64_t millisecondsSince1970() const override { return milliseconds_; }
  [[nodiscard]] std::string timeZone() const override { return zone_.get(); }

  void setMillisecondsSince1970(std::int64_t milliseconds) { milliseconds_ = milliseconds; }
  void advance(double seconds) { milliseconds_ += static_cast<std::int64_t>(seconds * 1000.0); }
  void setTimeZone(std::string zone) { zone_.set(std::move(zone)); }

 private:
  std::atomic<std::int64_t> milliseconds_ = 1'700'000'000'000;
  Scripted<std::string> zone_{"Europe/Istanbul"};
};

}  // namespace kifo::testing
