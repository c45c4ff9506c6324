#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QShortcut>
#include <QTest>
#include <QWidget>
#include <memory>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertOverlay.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopup.h"
#ifdef KIFO_WITH_QUICK
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickAlert.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickAlertOverlay.h"
#endif

namespace kifo::testing {

/// One toolkit's host, for suites about alerts that run on each: a white window
/// of 500 x 600 with a text field, called "hostField", which has the focus, and
/// a shortcut on Ctrl+D.
class WidgetsAlerts {
 public:
  using Alert = KifoPopup;

  WidgetsAlerts() {
    field_->setObjectName("hostField");
    new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_D), window_.get(), [this] { ++shortcuts_; });
    window_->setStyleSheet("#host { background: white }");
    window_->setObjectName("host");
    window_->setAttribute(Qt::WA_StyledBackground);
    window_->resize(500, 600);
    window_->show();
    window_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    field_->setFocus();
  }

  QWindow& window() { return *window_->windowHandle(); }
  QImage picture() { return window_->grab().toImage(); }
  void resize(QSize size) { window_->resize(size); }
  void setDirection(Qt::LayoutDirection direction) { window_->setLayoutDirection(direction); }
  void destroyHost() { window_.reset(); }
  void hideHost() { window_->hide(); }
  void focusHost() { field_->setFocus(); }
  QString hostText() const { return field_->text(); }
  int shortcuts() const { return shortcuts_; }
  void setUp(Alert& alert) { alert.hostWindow = window_.get(); }
  /// The covers that are seen, the uppermost last.
  std::vector<QObject*> overlays() const {
    std::vector<QObject*> seen;
    if (!window_) return seen;
    for (auto* each : window_->findChildren<AlertOverlay*>(Qt::FindDirectChildrenOnly)) {
      if (each->isVisible()) seen.push_back(each);
    }
    return seen;
  }
  QRect card(const Alert& alert) const {
    return {alert.baseView()->mapTo(window_.get(), QPoint()), alert.baseView()->size()};
  }
  static QString titleOf(const KifoButton& button) { return button.text(); }
  static QString textOf(const QPlainTextEdit& view) { return view.toPlainText(); }
  static void keyboard(Alert& alert, const QRect& keyboard) {
    keyboard.isNull() ? alert.keyboardWillHide() : alert.keyboardWillShow(keyboard);
  }
  /// A host's control of 300 x 40, called "Custom".
  void addCustomView(Alert& alert) {
    auto* custom = new QPushButton("Custom");
    custom->setMinimumSize(300, 40);
    alert.customSubview = custom;
  }
  static void growCustomView(Alert& alert) { alert.customSubview->setMinimumHeight(140); }

 private:
  std::unique_ptr<QWidget> window_ = std::make_unique<QWidget>();
  QLineEdit* field_ = new QLineEdit(window_.get());
  int shortcuts_ = 0;
};

#ifdef KIFO_WITH_QUICK
class QuickAlerts {
 public:
  using Alert = QuickAlert;

  QuickAlerts() {
    QQmlComponent component(view_->engine());
    component.setData(R"(
      import QtQuick
      Item {
        property int shortcuts: 0
        Shortcut { sequence: "Ctrl+D"; onActivated: shortcuts++ }
        TextInput { objectName: "hostField"; width: 100; height: 30; focus: true }
      })",
                      {});
    auto* root = qobject_cast<QQuickItem*>(component.create());
    view_->setContent({}, nullptr, root);
    view_->setResizeMode(QQuickView::SizeRootObjectToView);
    view_->resize(500, 600);
    view_->show();
    view_->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(view_.get()));
    field()->forceActiveFocus();
  }
  ~QuickAlerts() { setDirection(Qt::LeftToRight); }

  QWindow& window() { return *view_; }
  QImage picture() { return view_->grabWindow(); }
  void resize(QSize size) {
    view_->resize(size);
    EXPECT_TRUE(QTest::qWaitFor([&] { return view_->contentItem()->size() == size; }));
  }
  static void setDirection(Qt::LayoutDirection direction) {
    QGuiApplication::setLayoutDirection(direction);
  }
  void destroyHost() { view_.reset(); }
  void hideHost() { view_->hide(); }
  void focusHost() { field()->forceActiveFocus(); }
  QString hostText() const { return field()->property("text").toString(); }
  int shortcuts() const { return view_->rootObject()->property("shortcuts").toInt(); }
  void setUp(Alert& alert) { alert.hostWindow = view_.get(); }
  std::vector<QObject*> overlays() const {
    std::vector<QObject*> seen;
    if (!view_) return seen;
    for (auto* each : view_->contentItem()->findChildren<QuickAlertOverlay*>()) {
      if (each->isVisible()) seen.push_back(each);
    }
    return seen;
  }
  QRect card(const Alert& alert) const {
    return alert.baseView()->mapRectToScene(alert.baseView()->boundingRect()).toRect();
  }
  static QString titleOf(const QuickAlertButton& button) { return button.title(); }
  static QString textOf(const QuickAlertField& field) { return field.text(); }
  static void keyboard(Alert& alert, const QRect& keyboard) {
    keyboard.isNull() ? alert.keyboardWillHide() : alert.keyboardWillShow(keyboard);
  }
  void addCustomView(Alert& alert) {
    QQmlComponent component(view_->engine());
    component.setData(R"(
      import QtQuick
      Item {
        implicitWidth: 300; implicitHeight: 40; activeFocusOnTab: true
        Accessible.role: Accessible.Button; Accessible.name: "Custom"
      })",
                      {});
    auto* custom = qobject_cast<QQuickItem*>(component.create());
    custom->setParent(view_->rootObject());
    alert.customSubview = custom;
  }
  static void growCustomView(Alert& alert) { alert.customSubview->setImplicitHeight(140); }

 private:
  QQuickItem* field() const { return view_->rootObject()->findChild<QQuickItem*>("hostField"); }

  std::unique_ptr<QQuickView> view_ = std::make_unique<QQuickView>();
};
using AlertToolkits = ::testing::Types<WidgetsAlerts, QuickAlerts>;
#else
using AlertToolkits = ::testing::Types<WidgetsAlerts>;
#endif

}  // namespace kifo::testing
