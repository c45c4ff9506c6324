#include "platform/qt/desktop/DesktopNotificationService.h"

#include <QFileInfo>
#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <string_view>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Inspect.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoders.h"
#include "platform/qt/DesktopNotificationCentre.h"

namespace kifo {
namespace {

constexpr int MOST_ATTEMPTS = 5;
constexpr std::size_t MOST_EARLY_SIGNALS = 32;
constexpr std::uint32_t UNDEFINED_REASON = 4;

bool isError(const QDBusMessage& reply) {
  return reply.type() == QDBusMessage::ErrorMessage;
}

/// In a sandbox the desktop does not see the program's files.
bool isSandboxed() {
  return QFileInfo::exists(QStringLiteral("/.flatpak-info")) || qEnvironmentVariableIsSet("SNAP");
}

QString imagePathOf(const DesktopNotification& notification) {
  const auto& attachments = notification.content->attachments;
  return attachments.empty() ? QString() : QString::fromStdString(attachments.front().path);
}

/// Says that a notification will never be shown, and why.
void notShown(const DesktopNotification& notification, std::string_view line, const char* reason) {
  Console::print(DesktopNotificationCentre::LOG_TAG, line);
  KIFO_INSPECT(
      "notification",
      {{"identifier", notification.identifier}, {"outcome", "not shown"}, {"reason", reason}});
}

}  // namespace

DesktopNotificationService::DesktopNotificationService(Settings settings, Listener listener)
    : settings_(std::move(settings)),
      listener_(std::move(listener)),
      link_(std::make_shared<Link>(this)),
      pictures_(settings_.pictureGrace),
      bus_(settings_.busAddress, settings_.retryInterval) {
  using Bus = DesktopNotificationBus;
  connect(&pictures_, &PushPictures::ready, this, &DesktopNotificationService::enqueue);
  connect(&pictures_, &PushPictures::pictureReady, this, &DesktopNotificationService::addPicture);
  connect(&bus_, &Bus::found, this, &DesktopNotificationService::serviceFound);
  connect(&bus_, &Bus::missed, this, &DesktopNotificationService::serviceMissed);
  connect(&bus_, &Bus::lost, this, &DesktopNotificationService::serviceLost);
  connect(&bus_, &Bus::signalled, this, &DesktopNotificationService::onSignal);
  connect(&bus_, &Bus::permissionRead, this,
          [this](int permission) { listener_.permissionRead(permission); });
}

DesktopNotificationService::~DesktopNotificationService() {
  link_->close();
}

void DesktopNotificationService::show(DesktopNotification notification,
                                      const std::string& imageUrl) {
  if (!imageUrl.empty()) return pictures_.add(std::move(notification), imageUrl);
  pictures_.cancel(notification.identifier);
  enqueue(std::move(notification));
}

void DesktopNotificationService::close(const std::string& identifier) {
  pictures_.cancel(identifier);
  if (const auto waits = queued(identifier); waits != queue_.end()) queue_.erase(waits);
  if (underWay_ && underWay_->notification.identifier == identifier) underWay_->close = true;
  if (const auto id = ledger_.idOf(identifier)) closeOnDesktop(*id);
}

// ---- The queue

std::deque<DesktopNotification>::iterator DesktopNotificationService::queued(
    const std::string& identifier) {
  return std::ranges::find(queue_, identifier, &DesktopNotification::identifier);
}

void DesktopNotificationService::enqueue(DesktopNotification notification) {
  if (const auto earlier = queued(notification.identifier); earlier != queue_.end()) {
    queue_.erase(earlier);
  }
  queue_.push_back(std::move(notification));
  dropOldest();
  bus_.look();
  sendNext();
}

void DesktopNotificationService::addPicture(DesktopNotification notification) {
  if (const auto text = queued(notification.identifier); text != queue_.end()) {
    text->content = std::move(notification.content);
    return;
  }
  notification.onlyReplaces = true;
  enqueue(std::move(notification));
}

/// Queues again what the ended service had not answered or still showed, before what came later.
void DesktopNotificationService::putBack() {
  early_.clear();
  auto again = ledger_.takeOpen();
  if (underWay_ && !underWay_->close) again.push_back(std::move(underWay_->notification));
  underWay_.reset();
  std::erase_if(again, [this](const DesktopNotification& notification) {
    if (const auto later = queued(notification.identifier); later != queue_.end()) {
      later->onlyReplaces = false;
      return true;
    }
    if (notification.attempts < MOST_ATTEMPTS) return false;
    notShown(notification, "a notification was given up: every service went away over it",
             "every service went away over it");
    return true;
  });
  queue_.insert(queue_.begin(), std::make_move_iterator(again.begin()),
                std::make_move_iterator(again.end()));
}

/// Drops nothing while the service is still being looked for.
void DesktopNotificationService::dropOldest() {
  const auto state = bus_.state();
  const bool isMissing = state == DesktopNotificationBus::State::disconnected ||
                         state == DesktopNotificationBus::State::absent;
  while (isMissing && queue_.size() > settings_.capacity) {
    notShown(queue_.front(), "too many notifications wait for the desktop: the oldest was dropped",
             "too many wait for a notification service");
    queue_.pop_front();
  }
}

// ---- One Notify

void DesktopNotificationService::sendNext() {
  if (bus_.state() != DesktopNotificationBus::State::ready || underWay_) return;
  std::erase_if(queue_, [this](const DesktopNotification& waits) {
    return waits.onlyReplaces && !ledger_.idOf(waits.identifier);
  });
  if (queue_.empty()) return;
  UnderWay next;
  next.notification = std::move(queue_.front());
  queue_.pop_front();
  underWay_ = std::move(next);
  ++underWay_->notification.attempts;
  underWay_->replaces = ledger_.idOf(underWay_->notification.identifier).value_or(0);
  underWay_->picture.path = imagePathOf(underWay_->notification);
  if (!underWay_->picture.path.isEmpty() && (settings_.imagesAsData || isSandboxed())) {
    sendWithPixels();
  } else {
    send();
  }
}

void DesktopNotificationService::send() {
  bus_.call(QStringLiteral("Notify"),
            notifyArguments(underWay_->notification, underWay_->replaces, bus_.capabilities(),
                            settings_.application, underWay_->picture),
            [this](const QDBusMessage& reply) { answered(reply); });
}

void DesktopNotificationService::sendWithPixels() {
  ImageDecoders::start([link = link_, path = underWay_->picture.path, service = services_] {
    link->post([service, pixels = NotificationImage::read(path)](auto& self) {
      if (service != self.services_) return;
      self.underWay_->picture = {{}, pixels};
      self.send();
    });
  });
}

void DesktopNotificationService::answered(const QDBusMessage& reply) {
  isError(reply) ? refused(reply) : sent(reply.arguments().value(0).toUInt());
}

void DesktopNotificationService::sent(Id id) {
  const UnderWay shown = *std::exchange(underWay_, std::nullopt);
  const bool wasDismissed = shown.notification.onlyReplaces &&
                            ledger_.idOf(shown.notification.identifier) != shown.replaces;
  if (!wasDismissed) ledger_.shown(id, shown.notification);
  if (shown.close || wasDismissed) closeOnDesktop(id);
  const QPointer<DesktopNotificationService> alive(this);
  for (const QDBusMessage& signal : std::exchange(early_, {})) {
    if (alive) onSignal(signal);
  }
  if (alive) sendNext();
}

/// A service that does not take the picture as a file gets its pixels, and then none.
void DesktopNotificationService::refused(const QDBusMessage& reply) {
  if (!underWay_->picture.path.isEmpty()) return sendWithPixels();
  if (underWay_->picture.data) {
    underWay_->picture = {};
    return send();
  }
  notShown(underWay_->notification,
           "the desktop refused a notification: " + reply.errorMessage().toStdString(),
           "the desktop refused it");
  underWay_.reset();
  early_.clear();
  sendNext();
}

void DesktopNotificationService::closeOnDesktop(Id id) {
  ledger_.closed(id, UNDEFINED_REASON);
  bus_.call(QStringLiteral("CloseNotification"), {id}, [](const QDBusMessage&) {});
}

// ---- What the service and the user do

void DesktopNotificationService::serviceFound() {
  sendNext();
}

void DesktopNotificationService::serviceMissed() {
  dropOldest();
  // The bus reports a service that starts; a bus that starts has to be looked for.
  if (!isIdle() && bus_.state() == DesktopNotificationBus::State::disconnected) bus_.look();
}

void DesktopNotificationService::serviceLost() {
  ++services_;
  putBack();
  if (!isIdle()) bus_.look();
}

/// A signal may come before the answer that carries its notification's number.
void DesktopNotificationService::onSignal(const QDBusMessage& signal) {
  bool isNumber = false;
  const Id id = signal.arguments().value(0).toUInt(&isNumber);
  if (!isNumber) return;
  if (ledger_.knows(id)) {
    actOn(id, signal);
  } else if (underWay_ && early_.size() < MOST_EARLY_SIGNALS) {
    early_.push_back(signal);
  }
}

void DesktopNotificationService::actOn(Id id, const QDBusMessage& signal) {
  const QVariant argument = signal.arguments().value(1);
  const QString name = signal.member();
  if (name == QLatin1String("ActivationToken")) {
    ledger_.activationToken(id, argument.toString().toStdString());
  } else if (name == QLatin1String("ActionInvoked")) {
    actionInvoked(id, argument.toString().toStdString());
  } else if (name == QLatin1String("NotificationClosed")) {
    bool isNumber = false;
    const std::uint32_t reason = argument.toUInt(&isNumber);
    notificationClosed(id, isNumber ? reason : UNDEFINED_REASON);
  }
}

/// Not every service removes a notification when an action is chosen, so it is closed here.
void DesktopNotificationService::actionInvoked(Id id, const std::string& key) {
  const auto click = ledger_.actionInvoked(id, key);
  if (!click) return;
  closeOnDesktop(id);
  const auto clicked = listener_.clicked;  // which may end this object
  clicked(*click);
}

void DesktopNotificationService::notificationClosed(Id id, std::uint32_t reason) {
  const auto entry = ledger_.closed(id, reason);
  if (!entry) return;
  QTimer::singleShot(settings_.dismissalGrace, this, [this, entry] {
    if (const auto content = DesktopNotificationLedger::settle(*entry)) {
      listener_.dismissed(*content);
    }
  });
}

}  // namespace kifo
