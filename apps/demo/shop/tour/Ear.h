#pragma once

#include <nlohmann/json.hpp>

#include "testing/server/LocalServer.h"

namespace kifo::shop {

/// Checks what the server heard against what was done in the shop.
///
/// **Threading:** UI thread only; waiting runs the event loop.
class Ear {
 public:
  explicit Ear(testing::LocalServer& server) : server_(server) {}

  /// Waits for the one event that has all these values; a null says that the key must be absent.
  /// False, with the reason printed, when none comes or more than one came.
  bool hears(const nlohmann::json& event);

  /// How many events there were.
  [[nodiscard]] std::size_t count() const;

 private:
  [[nodiscard]] std::size_t matches(const nlohmann::json& event) const;

  testing::LocalServer& server_;
};

}  // namespace kifo::shop
