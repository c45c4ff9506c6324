#pragma once

#include <atomic>
#include <optional>

#include "Kifo_iOS_Common_Kit/ports/PositionSource.h"
#include "testing/Scripted.h"

namespace kifo::testing {

/// A position that the test sets; at first the permission is not determined, the application is in
/// the foreground and the position is unknown.
class FakePositionSource final : public PositionSource {
 public:
  [[nodiscard]] int authorizationStatus() const override { return authorization; }
  [[nodiscard]] int applicationState() const override { return state; }
  [[nodiscard]] std::optional<Coordinate> location() const override { return coordinate.get(); }

  std::atomic<int> authorization = 0;
  std::atomic<int> state = 0;
  Scripted<std::optional<Coordinate>> coordinate;
};

}  // namespace kifo::testing
