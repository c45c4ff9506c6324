#include "platform/qt/desktop/PushPictures.h"

#include <QTimer>
#include <algorithm>
#include <utility>

#include "Kifo_iOS_Common_Kit/notifications/PushImage.h"

namespace kifo {
namespace {

constexpr std::size_t MOST_AT_A_TIME = 4;

}  // namespace

PushPictures::PushPictures(int grace)
    : grace_(grace),
      link_(std::make_shared<UiLink<PushPictures>>(this)),
      loaders_(MOST_AT_A_TIME) {}

PushPictures::~PushPictures() {
  link_->close();
  for (const Push& push : pushes_) *push.cancelled = true;
}

void PushPictures::add(DesktopNotification notification, const std::string& imageUrl) {
  cancel(notification.identifier);
  const std::uint64_t number = ++lastNumber_;
  const auto cancelled = std::make_shared<std::atomic<bool>>(false);
  loaders_.post([link = link_, number, cancelled, imageUrl, content = notification.content] {
    if (*cancelled) return;
    attachPushImage(content, imageUrl, [&](std::shared_ptr<const NotificationContent> ready) {
      link->post([number, ready](PushPictures& pictures) { pictures.loaded(number, ready); });
    });
  });
  pushes_.push_back({number, std::move(notification), cancelled});
  QTimer::singleShot(grace_, this, [this, number] { late(number); });
}

void PushPictures::cancel(const std::string& identifier) {
  std::erase_if(pushes_, [&](const Push& push) {
    const bool meant = push.notification.identifier == identifier;
    if (meant) *push.cancelled = true;
    return meant;
  });
}

PushPictures::Pushes::iterator PushPictures::find(std::uint64_t number) {
  return std::ranges::find(pushes_, number, &Push::number);
}

void PushPictures::late(std::uint64_t number) {
  const auto push = find(number);
  if (push == pushes_.end()) return;
  push->shown = true;
  Q_EMIT ready(DesktopNotification(push->notification));
}

void PushPictures::loaded(std::uint64_t number,
                          std::shared_ptr<const NotificationContent> content) {
  const auto found = find(number);
  if (found == pushes_.end()) return;
  Push push = std::move(*found);
  pushes_.erase(found);
  push.notification.content = std::move(content);
  if (!push.shown) {
    Q_EMIT ready(push.notification);
  } else if (!push.notification.content->attachments.empty()) {
    Q_EMIT pictureReady(push.notification);
  }
}

}  // namespace kifo
