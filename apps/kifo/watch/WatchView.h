#pragma once

#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <unordered_map>
#include <vector>

#include "apps/kifo/Terminal.h"

namespace kifo::tool {

/// The lines of a host as a person reads them: one row in columns for each decision, and the state
/// as a few tables.
///
/// **Threading:** one thread.
class WatchView {
 public:
  /// Which rows are shown; an empty text lets all pass.
  struct Filter {
    std::string event;     ///< The event's name.
    std::string campaign;  ///< The campaign's uuid or name.
  };

  WatchView(const Terminal& terminal, Filter filter)
      : terminal_(terminal), filter_(std::move(filter)) {}

  /// Rows for decisions that came together, one for each that the filter lets pass. Of more than
  /// can be read those that tell of something wrong or of a campaign are shown, and the others
  /// counted.
  std::vector<std::string> rows(const std::vector<nlohmann::json>& decisions);

  /// The state in whole: status, counters, campaigns, stored rows.
  std::string state(const nlohmann::json& state);
  /// The counters that matter most, on one line.
  static std::string summary(const nlohmann::json& state);

 private:
  using Names = std::unordered_map<std::string, std::string>;

  void learn(const nlohmann::json& decision);
  /// The decision's row; "" when the filter hides it.
  [[nodiscard]] std::string row(const nlohmann::json& decision) const;
  [[nodiscard]] std::string subject(const nlohmann::json& decision) const;
  [[nodiscard]] bool passes(const nlohmann::json& decision) const;

  const Terminal& terminal_;
  const Filter filter_;
  Names events_;     ///< The event's name by the request's id.
  Names campaigns_;  ///< The campaign's name by its uuid.
};

}  // namespace kifo::tool
