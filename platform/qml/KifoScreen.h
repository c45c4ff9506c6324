#pragma once

#include <QJSValue>
#include <QPointer>
#include <QQmlEngine>
#include <QQmlParserStatus>
#include <QQuickItem>
#include <QQuickWindow>
#include <QString>
#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/events/KifoViewController.h"
#include "platform/qt/QuickScreenProvider.h"

namespace kifo {

/// The SDK's view of a `KifoScreen`. It may outlive the item while an event about it is under way.
///
/// **Threading:** UI thread only, but for `className`.
class QmlScreenController final : public KifoViewController, public QuickScreenProvider {
 public:
  QmlScreenController(QQuickItem* item, std::string name);

  [[nodiscard]] std::string className() const override { return className_; }
  [[nodiscard]] QQuickItem* item() const override { return item_; }

  /// Sends "page_in" or "page_out", unless nothing changes.
  void setShown(bool isShown);
  /// Sends "page_in" once more if the screen was shown before the SDK could send.
  void reportEarly();

 private:
  const std::string className_;
  const QPointer<QQuickItem> item_;
  bool isLoaded_ = false;
  bool isShown_ = false;
  bool isEarly_ = false;  ///< It was shown before the server's first answer, which drops events.
};

/// Makes the item that contains it a screen of the SDK: showing the item sends "page_in", hiding
/// or destroying it "page_out", each with the screen's name, and the campaigns of its events are
/// shown over its window.
///
///     Page {
///         KifoScreen { id: screen; name: "MenuScreen" }
///         Button { text: "Pay"; onClicked: screen.sendEvent("pay", { items: 3 }) }
///     }
///
/// An item counts as shown while it is visible in a visible window. Minimising the window sends
/// nothing. What is shown before `Kifo.initialize` has got the server's first answer is reported
/// then.
///
/// **Threading:** UI thread only.
class KifoScreen : public QObject, public QQmlParserStatus {
  Q_OBJECT
  Q_INTERFACES(QQmlParserStatus)
  QML_ELEMENT
  /// The name under which the screen is reported. Without one it is that of the item's type, such
  /// as "MenuScreen" for MenuScreen.qml. It is read when the screen is first shown.
  Q_PROPERTY(QString name MEMBER name_ NOTIFY nameChanged)
  /// The item; by default the one that contains this.
  Q_PROPERTY(QQuickItem* item READ item WRITE setItem NOTIFY itemChanged)
  /// False while the item counts as hidden although it is visible, as a page of a SwipeView that
  /// is not the current one.
  Q_PROPERTY(bool active READ isActive WRITE setActive NOTIFY activeChanged)

 public:
  explicit KifoScreen(QObject* parent = nullptr);
  ~KifoScreen() override;

  [[nodiscard]] QQuickItem* item() const { return item_; }
  void setItem(QQuickItem* item);
  [[nodiscard]] bool isActive() const { return isActive_; }
  void setActive(bool isActive);

  /// Sends an event of this screen. Its campaigns come back in `Kifo.buttonChosen`.
  Q_INVOKABLE void sendEvent(const QString& name, const QJSValue& parameters = {});
  Q_INVOKABLE void login(const QJSValue& parameters = {});

  /// The screen that was shown last and is still there; null without one.
  [[nodiscard]] static std::shared_ptr<QmlScreenController> current();
  /// The server's first answer is there: screens that were shown before report themselves.
  static void reportEarly();

  void classBegin() override {}
  void componentComplete() override;

 Q_SIGNALS:
  void nameChanged();
  void itemChanged();
  void activeChanged();

 private:
  void followItem();
  void followWindow(QQuickWindow* window);
  void update();
  [[nodiscard]] bool isShown() const;
  [[nodiscard]] std::string reportedName() const;
  [[nodiscard]] std::shared_ptr<QmlScreenController> controller();

  QString name_;
  QPointer<QQuickItem> item_;
  QPointer<QQuickWindow> window_;
  std::shared_ptr<QmlScreenController> controller_;
  bool isActive_ = true;
  bool isComplete_ = false;
};

}  // namespace kifo
