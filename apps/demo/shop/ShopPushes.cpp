#include "apps/demo/shop/ShopPushes.h"

#include <QPointer>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

namespace kifo::shop {

ShopPushes::ShopPushes(const QString& busAddress) {
  DesktopNotificationCentre::Options options;
  options.applicationName = "Nook";
  options.busAddress = busAddress.toStdString();
  centre_ = std::make_shared<DesktopNotificationCentre>(
      std::move(options), [pushes = QPointer(this)](const auto& action, const std::string&) {
        if (!pushes) return;
        const bool leads = action && action->link;
        Q_EMIT pushes->clicked(leads ? QString::fromStdString(*action->link) : QString());
      });
}

void ShopPushes::deliver(const QByteArray& push) {
  UserInfo userInfo = valueFromJson(push.toStdString()).value_or(UserInfo());
  if (!userInfo.asMap()) return;
  Q_EMIT arrived({{"", std::make_shared<NotificationContent>(contentOfPush(userInfo))}});
  centre_->deliver(std::move(userInfo));
}

}  // namespace kifo::shop
