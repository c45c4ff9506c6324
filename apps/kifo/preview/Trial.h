#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"

namespace kifo::tool {

/// What the SDK does with a campaign that is due.
struct Verdict {
  std::shared_ptr<const PopupRequest> request;  ///< What is shown; null when it is refused.
  std::string reason;                           ///< Why it is refused, in plain words.
  std::vector<std::string> notes;               ///< What is cut short, or keeps it from being due.
};

/// Puts `campaign` through the SDK's own checks on a device that has never shown it.
///
/// **Threading:** waits for the main queue of the platform in force, whose presenter and inspector
/// are replaced meanwhile. To be called before anything else uses the SDK.
Verdict tryCampaign(const std::shared_ptr<AppCommunicationItem>& campaign);

}  // namespace kifo::tool
