#include "Kifo_iOS_Common_Kit/network/InAppFetch.h"

#include <map>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Session.h"
#include "Kifo_iOS_Common_Kit/network/ServiceClient.h"

namespace kifo {

void fetchInAppCommunication(std::function<void(bool success)> completion) {
  const auto identity = Session::shared().identity();
  const std::map<std::string, std::string> parameters{
      {"actor-id", Session::withoutCommas(identity->actorId)},
      {"application-name", identity->applicationName}};
  ServiceClient::make()->getInAppCommunication(
      std::nullopt, parameters,
      [completion = std::move(completion)](std::shared_ptr<AppCommunication> answer,
                                           std::optional<bool> flag) {
        const bool success = answer != nullptr;
        Session& session = Session::shared();
        if (success) session.setAppCommunication(std::move(answer));
        if (success || flag) {
          session.initializeStatus =
              success ? InitializeStatusType::INITIALIZED : InitializeStatusType::INITIALIZE_FAILED;
        }
        if (completion) completion(success);
        if (success) ServiceClient::resumeSync();
      });
}

}  // namespace kifo
