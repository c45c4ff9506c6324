// A push as it arrives, on its way to the desktop and to the events: whatever its dictionary holds,
// it is shown and reported, or dropped, and what is sent can be read.
#include <cstdint>

#include "Kifo_iOS_Common_Kit/notifications/NotificationManager.h"
#include "fuzz/FuzzedSdk.h"

namespace {

using namespace kifo;

void handle(const NotificationRequest& push, const NotificationManager::ReceivedPush& received) {
  const UserInfo& userInfo = push.content->userInfo;
  NotificationManager::handleNotification(userInfo, {NotificationResponse::defaultActionIdentifier},
                                          [](const auto&) {});
  for (const auto& button : received.actions) {
    NotificationManager::handleNotification(userInfo, {button.identifier}, [](const auto&) {});
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  auto userInfo = valueFromJson({reinterpret_cast<const char*>(data), size});
  if (!userInfo) return 0;
  const fuzz::FuzzedSdk host;
  const std::size_t known = host.sdk.http->count();
  const NotificationRequest push{
      "push", std::make_shared<const NotificationContent>(contentOfPush(std::move(*userInfo)))};
  const auto received = NotificationManager::receive(push);
  fuzz::require(received.content != nullptr);
  fuzz::require(received.imageUrl.empty() || isUrl(received.imageUrl));
  handle(push, received);
  host.sdk.runUntilIdle();
  host.requireReadableRequests(known);
  return 0;
}
