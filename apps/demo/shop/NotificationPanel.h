#pragma once

#include "Kifo_iOS_Common_Kit/notifications/NotificationContent.h"
#include "apps/demo/shop/screens/ShopScreen.h"

namespace kifo {
class PushCarousel;
}

namespace kifo::shop {

class ShopPushes;
class PillButton;

/// The shop's own view of its pushes: whether the desktop shows them, the last that arrived with
/// its pictures, and where a click on it leads. Its button asks the shop's server for one.
class NotificationPanel : public ShopScreen {
  Q_OBJECT

 public:
  /// `server`: its address, without a slash at the end.
  NotificationPanel(ShopPushes& pushes, const QString& server, QWidget* parent = nullptr);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  QWidget* askingCard();
  QWidget* pushCard();

  void ask();
  void showPermission();
  void showPush(const Notification& push);
  void showClick(const QString& link);

  ShopPushes& pushes_;
  const std::string server_;
  QLabel* permission_;
  QLabel* answer_;
  PillButton* follow_;
  QLabel* title_;
  QLabel* text_;
  QLabel* buttons_;
  PushCarousel* carousel_;
  QString link_;  ///< Where the last click leads.
};

}  // namespace kifo::shop
