#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Clock.h"
#include "testing/Scripted.h"

namespace kifo::tool {

/// The system's clock, in the zone that a script says.
class ScriptedClock final : public Clock {
 public:
  explicit ScriptedClock(std::shared_ptr<Clock> clock) : clock_(std::move(clock)) {}

  [[nodiscard]] std::int64_t millisecondsSince1970() const override {
    return clock_->millisecondsSince1970();
  }
  [[nodiscard]] std::string timeZone() const override {
    return zone.get().value_or(clock_->timeZone());
  }

  testing::Scripted<std::optional<std::string>> zone;

 private:
  const std::shared_ptr<Clock> clock_;
};

}  // namespace kifo::tool
