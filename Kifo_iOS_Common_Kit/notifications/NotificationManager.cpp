#include "Kifo_iOS_Common_Kit/notifications/NotificationManager.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/PermissionStatus.h"
#include "Kifo_iOS_Common_Kit/core/Runtime.h"
#include "Kifo_iOS_Common_Kit/core/Url.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/notifications/AttachmentFile.h"
#include "Kifo_iOS_Common_Kit/notifications/PushImage.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

constexpr unsigned FOREGROUND = 4;

std::atomic<CollectionView*> shownCollectionView = nullptr;

std::string tag() {
  return logTag("NotificationManager");
}

void print(std::string_view message) {
  Console::print(tag(), message);
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

/// A push without buttons registers the category too, so that it does not get those of the last
/// one.
void takeCampaign(const NotificationAppCommunicationItem& item, NotificationContent& content) {
  reportReceived(item);
  if (item.buttons && !item.buttons->empty()) {
    NotificationManager::registerCategory(&content, item.buttons);
  } else {
    NotificationManager::registerCategory(nullptr, std::nullopt);
  }
}

std::optional<NotificationAttachment> attachmentOf(std::string_view bytes) {
  try {
    auto file = AttachmentFile::write(bytes);
    return NotificationAttachment{AttachmentFile::NAME, file->path(), file};
  } catch (const std::exception& error) {
    print(std::string("error ") + error.what());
    return std::nullopt;
  }
}

}  // namespace

void NotificationManager::refreshNotificationPermissionStatusType() {
  kifo::refreshNotificationPermissionStatus(Runtime::current());
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
  callHost(tag(), actionCallback, button ? button->action : item->action);
}

void NotificationManager::didReceive(const NotificationRequest& request,
                                     const ContentHandler& contentHandler) {
  print("notification received");
  if (!request.content) {
    print("bestAttemptContent couldn't be assigned");
    return;
  }
  const auto content = std::make_shared<NotificationContent>(*request.content);
  print("bestAttemptContent: " + description(*content));
  if (const auto item = campaignOf(content->userInfo)) takeCampaign(*item, *content);

  const auto url = textIn(content->userInfo, "image");
  if (!url || !isUrl(*url)) {
    callHost(tag(), contentHandler, content);
    return;
  }
  const PushImage image = loadPushImage(*url);
  if (!image.bytes) {
    callHost(tag(), contentHandler, content);
    Console::printBare("Unable to load data: " + image.error);
    return;
  }
  if (auto attachment = attachmentOf(*image.bytes)) content->attachments = {std::move(*attachment)};
  callHost(tag(), contentHandler, content);
}

void NotificationManager::registerCategory(NotificationContent* content,
                                           const std::optional<Buttons>& buttons) {
  if (content) content->categoryIdentifier = CATEGORY;
  NotificationCategory category{CATEGORY, {}};
  for (const auto& button : buttons.value_or(Buttons())) {
    if (!button->id || !button->text) continue;
    category.actions.push_back({*button->id, *button->text, FOREGROUND});
  }
  Platform::current()->notifications->setNotificationCategories({std::move(category)});
}

CollectionView* NotificationManager::collectionView() {
  return shownCollectionView;
}

void NotificationManager::setCollectionView(CollectionView* view) {
  shownCollectionView = view;
}

}  // namespace kifo
