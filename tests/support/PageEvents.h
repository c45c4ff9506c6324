#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "testing/RecordingInspector.h"
#include "tests/support/Common.h"

namespace kifo::testing {

/// The events that were composed since the last call, with their pages: "page_in HomeScreen".
inline std::vector<std::string> takeEvents(RecordingInspector& inspector) {
  std::vector<std::string> events;
  for (const auto& decision : inspector.ofKind("composed")) {
    const auto parameters = nlohmann::json::parse(decision.particulars[2].second);
    events.push_back(decision.particulars[0].second + " " + parameters.value("page_name", "none"));
  }
  inspector.clear();
  return events;
}

}  // namespace kifo::testing
