#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>
#include <QVariantMap>
#include <vector>

#include "testing/PrivateBus.h"

namespace kifo::shop {

/// A desktop for the tour alone: a message bus of its own with a notification service on it, which
/// keeps what it is asked to show and clicks when the tour says so. The user's own desktop is not
/// used. Both end with this object.
///
/// **Threading:** UI thread only. **Errors:** without a bus to be had `address` is empty.
class PushTourDesktop : public QDBusVirtualObject {
 public:
  struct Shown {
    QString title;
    QStringList actions;  ///< A key and its text, one pair after the other.
    QVariantMap hints;
  };

  PushTourDesktop();
  ~PushTourDesktop() override;

  [[nodiscard]] const QString& address() const { return address_; }
  [[nodiscard]] const std::vector<Shown>& shown() const { return shown_; }

  /// Clicks the action `key` of the notification that was shown last.
  void invoke(const QString& key);

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  QDBusMessage answerTo(const QDBusMessage& message);
  QDBusMessage notify(const QDBusMessage& message);

  testing::PrivateBus bus_;
  QString address_;
  QDBusConnection connection_;
  std::vector<Shown> shown_;
};

}  // namespace kifo::shop
