#include "Kifo_iOS_Common_Kit/network/InAppFetch.h"

#include <map>
#include <string>

#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/network/ServiceClient.h"

namespace kifo {
namespace {

void take(Session& session, std::shared_ptr<AppCommunication> answer, bool hasAnswered) {
  const bool success = answer != nullptr;
  if (success) session.setAppCommunication(std::move(answer));
  if (!success && !hasAnswered) return;
  session.initializeStatus =
      success ? InitializeStatusType::INITIALIZED : InitializeStatusType::INITIALIZE_FAILED;
}

}  // namespace

void fetchInAppCommunication(const std::shared_ptr<Runtime>& runtime,
                             std::function<void(bool success)> completion) {
  const auto identity = runtime->session.identity();
  const std::map<std::string, std::string> parameters{
      {"actor-id", Session::withoutCommas(identity->actorId)},
      {"application-name", identity->applicationName}};
  ServiceClient::make(runtime)->getInAppCommunication(
      std::nullopt, parameters,
      [runtime, completion = std::move(completion)](std::shared_ptr<AppCommunication> answer,
                                                    std::optional<bool> flag) {
        const bool success = answer != nullptr;
        take(runtime->session, std::move(answer), flag.has_value());
        if (completion) completion(success);
        if (success) ServiceClient::make(runtime)->resumeSync();
      });
}

}  // namespace kifo
