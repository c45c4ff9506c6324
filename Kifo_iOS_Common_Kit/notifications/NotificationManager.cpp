#include "Kifo_iOS_Common_Kit/notifications/NotificationManager.h"

#include <algorithm>
#include <atomic>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/PermissionStatus.h"
#include "Kifo_iOS_Common_Kit/core/Url.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/notifications/PushImage.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

constexpr unsigned FOREGROUND = 4;

std::atomic<CollectionView*> shownCollectionView = nullptr;

void print(std::string_view message) {
  Console::print(NotificationManager::LOG_TAG, message);
}

std::string orEmpty(const std::optional<std::string>& text) {
  return text.value_or("");
}

std::shared_ptr<AppCommunicationItemButton> buttonOf(const NotificationAppCommunicationItem& item,
                                                     const std::string& id) {
  if (!item.buttons) return nullptr;
  const auto found =
      std::ranges::find_if(*item.buttons, [&](const auto& button) { return button->id == id; });
  return found == item.buttons->end() ? nullptr : *found;
}

void reportReceived(const NotificationAppCommunicationItem& item) {
  KifoEventManager::sendPushNotificationReceivedEvent(orEmpty(item.pushToken),
                                                      orEmpty(item.actorId), orEmpty(item.uuid),
                                                      orEmpty(item.code), orEmpty(item.scenario));
}

}  // namespace

void NotificationManager::refreshNotificationPermissionStatusType() {
  const auto runtime = Runtime::current();
  if (runtime->consent.drops("refreshNotificationPermissionStatusType")) return;
  kifo::refreshNotificationPermissionStatus(runtime);
}

void NotificationManager::handleNotification(const UserInfo& userInfo,
                                             const NotificationResponse& response,
                                             const ActionCallback& actionCallback) {
  const auto item = campaignOf(userInfo);
  if (!item) return;
  const auto button = buttonOf(*item, response.actionIdentifier);
  KifoEventManager::sendPushNotificationClickedEvent(
      orEmpty(item->pushToken), orEmpty(item->actorId), orEmpty(item->uuid), orEmpty(item->code),
      orEmpty(item->scenario), button ? button->id : std::nullopt,
      button ? button->text : std::nullopt);
  callHost(NotificationManager::LOG_TAG, actionCallback, button ? button->action : item->action);
}

NotificationManager::ReceivedPush NotificationManager::receive(const NotificationRequest& request) {
  print("notification received");
  if (!request.content) {
    print("bestAttemptContent couldn't be assigned");
    return {};
  }
  const auto content = std::make_shared<NotificationContent>(*request.content);
  ReceivedPush push{content, {}, {}};
  print("bestAttemptContent: " + description(*content));
  if (const auto item = campaignOf(content->userInfo)) {
    reportReceived(*item);
    // A push without buttons registers the category too: otherwise it got those of the last one.
    const bool hasButtons = item->buttons && !item->buttons->empty();
    push.actions = registerCategory(hasButtons ? content.get() : nullptr, item->buttons).actions;
  }
  const auto url = textIn(content->userInfo, "image");
  if (url && isUrl(*url)) push.imageUrl = *url;
  return push;
}

void NotificationManager::didReceive(const NotificationRequest& request,
                                     const ContentHandler& contentHandler) {
  const ReceivedPush push = receive(request);
  if (!push.content) return;
  if (push.imageUrl.empty()) {
    callHost(NotificationManager::LOG_TAG, contentHandler, push.content);
  } else {
    attachPushImage(push.content, push.imageUrl, contentHandler);
  }
}

NotificationCategory NotificationManager::registerCategory(NotificationContent* content,
                                                           const std::optional<Buttons>& buttons) {
  if (content) content->categoryIdentifier = CATEGORY;
  NotificationCategory category{CATEGORY, {}};
  for (const auto& button : buttons.value_or(Buttons())) {
    if (!button->id || !button->text) continue;
    category.actions.push_back({*button->id, *button->text, FOREGROUND});
  }
  Platform::current()->notifications->setNotificationCategories({category});
  return category;
}

CollectionView* NotificationManager::collectionView() {
  return shownCollectionView;
}

void NotificationManager::setCollectionView(CollectionView* view) {
  shownCollectionView = view;
}

}  // namespace kifo
