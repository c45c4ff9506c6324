#include "platform/qt/DesktopNotificationCentre.h"

#include <QThread>
#include <algorithm>
#include <atomic>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/notifications/AttachmentFile.h"
#include "Kifo_iOS_Common_Kit/notifications/NotificationManager.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "platform/qt/desktop/BackgroundWorker.h"
#include "platform/qt/desktop/DesktopNotificationService.h"

namespace kifo {
namespace {

int milliseconds(double seconds) {
  return static_cast<int>(seconds * 1000.0);
}

DesktopNotificationService::Settings settingsOf(const DesktopNotificationCentre::Options& options) {
  DesktopNotificationService::Settings settings;
  settings.application = {QString::fromStdString(options.applicationName),
                          QString::fromStdString(options.applicationIcon),
                          QString::fromStdString(options.desktopEntry),
                          QString::fromStdString(options.openLabel)};
  settings.busAddress = QString::fromStdString(options.busAddress);
  settings.imagesAsData = options.imagesAsData;
  settings.pictureGrace = milliseconds(options.pictureGrace);
  settings.dismissalGrace = milliseconds(options.dismissalGrace);
  settings.retryInterval = milliseconds(options.retryInterval);
  return settings;
}

void clicked(const DesktopNotificationLedger::Click& click,
             const DesktopNotificationCentre::ClickHandler& onClick) {
  NotificationManager::handleNotification(click.content->userInfo, {click.actionIdentifier},
                                          [&](std::shared_ptr<AppCommunicationItemAction> action) {
                                            callHost(DesktopNotificationCentre::LOG_TAG, onClick,
                                                     std::move(action), click.activationToken);
                                          });
}

}  // namespace

/// What the worker's tasks use; they may outlive the centre.
struct DesktopNotificationCentre::Shared {
  std::atomic<int> permission = DesktopNotificationBus::notDetermined;
  std::shared_ptr<DesktopNotificationService::Link> link;

  Mutex mutex;
  std::vector<NotificationCategory> categories KIFO_GUARDED_BY(mutex);

  std::vector<NotificationAction> actionsOf(const std::string& categoryIdentifier) {
    const MutexLock lock(mutex);
    const auto found =
        std::ranges::find(categories, categoryIdentifier, &NotificationCategory::identifier);
    return found == categories.end() ? std::vector<NotificationAction>() : found->actions;
  }

  void show(DesktopNotification notification, std::string imageUrl = {}) const {
    link->post([notification = std::move(notification), imageUrl = std::move(imageUrl)](
                   DesktopNotificationService& service) { service.show(notification, imageUrl); });
  }
};

DesktopNotificationCentre::DesktopNotificationCentre(Options options, ClickHandler onClick)
    : shared_(std::make_shared<Shared>()), worker_(std::make_unique<BackgroundWorker>(1)) {
  service_ = new DesktopNotificationService(
      settingsOf(options),
      {.clicked = [onClick = std::move(onClick)](const auto& click) { clicked(click, onClick); },
       .dismissed =
           [](const NotificationContent& content) {
             KifoEventManager::sendPushNotificationDismissedEvent(content.userInfo);
           },
       .permissionRead = [shared = shared_](int permission) { shared->permission = permission; }});
  shared_->link = service_->link();
}

DesktopNotificationCentre::~DesktopNotificationCentre() {
  if (service_->thread() == QThread::currentThread()) {
    delete service_;
  } else {
    service_->deleteLater();
  }
}

void DesktopNotificationCentre::deliver(UserInfo userInfo, std::string identifier) {
  auto content = std::make_shared<NotificationContent>(contentOfPush(std::move(userInfo)));
  if (identifier.empty()) identifier = Platform::current()->identifiers->uuid();
  NotificationRequest request{std::move(identifier), std::move(content)};
  worker_->post([request = std::move(request), shared = shared_] {
    const auto push = NotificationManager::receive(request);
    shared->show({request.identifier, push.content, push.actions}, push.imageUrl);
  });
}

void DesktopNotificationCentre::show(const NotificationRequest& request) {
  if (!request.content) return;
  DesktopNotification notification{request.identifier, request.content,
                                   shared_->actionsOf(request.content->categoryIdentifier)};
  worker_->post(
      [notification = std::move(notification), shared = shared_] { shared->show(notification); });
}

void DesktopNotificationCentre::close(const std::string& identifier) {
  worker_->post([identifier, shared = shared_] {
    shared->link->post(
        [identifier](DesktopNotificationService& service) { service.close(identifier); });
  });
}

void DesktopNotificationCentre::getNotificationSettings(
    std::function<void(int authorizationStatus)> completion) {
  callHost(LOG_TAG, completion, shared_->permission.load());
  removeLeftoversOnce();
  shared_->link->post([](DesktopNotificationService& service) { service.refresh(); });
}

/// The SDK asks first when it starts; the temporary directory is known by then.
void DesktopNotificationCentre::removeLeftoversOnce() {
  if (removedLeftovers_.exchange(true)) return;
  worker_->post([directory = Platform::current()->temporaryDirectory] {
    AttachmentFile::removeLeftovers(directory);
  });
}

void DesktopNotificationCentre::setNotificationCategories(
    std::vector<NotificationCategory> categories) {
  const MutexLock lock(shared_->mutex);
  shared_->categories.swap(categories);
}

}  // namespace kifo
