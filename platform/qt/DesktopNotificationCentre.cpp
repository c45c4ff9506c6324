#include "platform/qt/DesktopNotificationCentre.h"

#include <QThread>
#include <algorithm>
#include <atomic>
#include <mutex>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/notifications/AttachmentFile.h"
#include "Kifo_iOS_Common_Kit/notifications/NotificationManager.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "platform/qt/BackgroundWorker.h"
#include "platform/qt/DesktopNotificationService.h"

namespace kifo {
namespace {

constexpr std::size_t MOST_WAITING_PUSHES = 64;

std::string tag() {
  return logTag("DesktopNotificationCentre");
}

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
  settings.dismissalGrace = milliseconds(options.dismissalGrace);
  settings.retryInterval = milliseconds(options.retryInterval);
  return settings;
}

void clicked(const DesktopNotificationLedger::Click& click,
             const DesktopNotificationCentre::ClickHandler& onClick) {
  NotificationManager::handleNotification(click.content->userInfo, {click.actionIdentifier},
                                          [&](std::shared_ptr<AppCommunicationItemAction> action) {
                                            callHost(tag(), onClick, std::move(action),
                                                     click.activationToken);
                                          });
}

}  // namespace

/// What the worker's tasks need too, which may outlive the centre.
struct DesktopNotificationCentre::Shared {
  std::atomic<int> status = DesktopNotificationService::notDetermined;
  std::shared_ptr<DesktopNotificationService::Link> link;

  std::mutex mutex;
  std::vector<NotificationCategory> categories;  // guarded by mutex

  std::vector<NotificationAction> actionsOf(const std::string& categoryIdentifier) {
    const std::lock_guard lock(mutex);
    const auto found =
        std::ranges::find(categories, categoryIdentifier, &NotificationCategory::identifier);
    return found == categories.end() ? std::vector<NotificationAction>() : found->actions;
  }

  void show(const NotificationRequest& request) {
    if (!request.content) return;
    DesktopNotification notification{request.identifier, request.content,
                                     actionsOf(request.content->categoryIdentifier)};
    link->post([notification = std::move(notification)](DesktopNotificationService& service) {
      service.show(notification);
    });
  }
};

DesktopNotificationCentre::DesktopNotificationCentre(Options options, ClickHandler onClick)
    : options_(std::move(options)),
      shared_(std::make_shared<Shared>()),
      worker_(std::make_unique<BackgroundWorker>(MOST_WAITING_PUSHES)) {
  service_ = new DesktopNotificationService(
      settingsOf(options_),
      {.clicked = [onClick = std::move(onClick)](const auto& click) { clicked(click, onClick); },
       .dismissed =
           [](const NotificationContent& content) {
             KifoEventManager::sendPushNotificationDismissedEvent(content.userInfo);
           },
       .statusChanged = [shared = shared_](int status) { shared->status = status; }});
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
  const bool kept = worker_->post([request = std::move(request), shared = shared_] {
    NotificationManager::didReceive(request, [&](auto ready) {
      shared->show({request.identifier, std::move(ready)});
    });
  });
  if (!kept) Console::print(tag(), "too many pushes wait for their images: the oldest was dropped");
}

void DesktopNotificationCentre::show(const NotificationRequest& request) {
  shared_->show(request);
}

void DesktopNotificationCentre::close(const std::string& identifier) {
  shared_->link->post(
      [identifier](DesktopNotificationService& service) { service.close(identifier); });
}

void DesktopNotificationCentre::getNotificationSettings(
    std::function<void(int authorizationStatus)> completion) {
  callHost(tag(), completion, shared_->status.load());
  sweepOnce();
  shared_->link->post([](DesktopNotificationService& service) { service.refresh(); });
}

/// The SDK's first question is its start: by then it is settled where files go.
void DesktopNotificationCentre::sweepOnce() {
  if (swept_.exchange(true)) return;
  worker_->post([directory = Platform::current()->temporaryDirectory] {
    AttachmentFile::removeLeftovers(directory);
  });
}

void DesktopNotificationCentre::setNotificationCategories(
    std::vector<NotificationCategory> categories) {
  const std::lock_guard lock(shared_->mutex);
  shared_->categories.swap(categories);
}

}  // namespace kifo
