#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"

namespace kifo::testing {

/// A campaign of every kind and of every awkward content, as the popup manager would hand it over.
struct Campaign {
  std::string name;
  std::function<void(PopupRequest&)> describe;
};

std::vector<Campaign> campaigns();

}  // namespace kifo::testing
