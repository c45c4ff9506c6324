#pragma once

#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "testing/FakePlatform.h"
#include "tests/support/Common.h"

namespace kifo::testing {

/// The server's answers in samples/campaigns that hold a campaign, by the names of their files.
std::vector<std::pair<std::string, nlohmann::json>> sampleAnswers();

struct Campaign {
  std::string name;
  std::shared_ptr<const PopupRequest> request;
};

/// The campaigns of the samples, every kind and every awkward content, as the popup manager hands
/// them to a presenter.
std::vector<Campaign> campaigns(const FakePlatform& fake);

}  // namespace kifo::testing
