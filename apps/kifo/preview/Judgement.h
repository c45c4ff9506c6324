#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"

namespace kifo::tool {

/// What the SDK does with a campaign when its event is sent.
struct Judgement {
  std::shared_ptr<const PopupRequest> request;  ///< What is shown; null when it is refused.
  std::string reason;                           ///< Why it is refused.
  std::vector<std::string> notes;               ///< What is cut short, or keeps it from being due.
};

/// Sends a campaign's event in the SDK itself, on a device that has never shown the campaign, so
/// that every rule of the SDK counts and none is repeated here. The date is today's.
///
/// **Threading:** one thread. To be called while the SDK is not initialised; the platform in force
/// is replaced meanwhile.
Judgement judge(const AppCommunicationItem& campaign);

}  // namespace kifo::tool
