#pragma once

#include <memory>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"
#include "apps/kifo/host/Output.h"

namespace kifo::tool {

/// What is reported of a popup: its campaign, and the options that it offers.
struct PopupLine {
  using Options = std::vector<std::shared_ptr<AppCommunicationItemButton>>;

  std::shared_ptr<AppCommunicationItem> item;
  Options buttons;
  Options choices;

  /// `what` is "shown" or "closed".
  [[nodiscard]] Output::Line line(const char* what) const;
};

}  // namespace kifo::tool
