#pragma once

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QPointer>
#include <QShortcut>
#include <QTest>
#include <QWidget>
#include <memory>

#ifdef KIFO_WITH_QUICK
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>

#include "tests/support/Common.h"
#endif

namespace kifo::testing {

/// A host's white window with one text field, called "hostField", which has the focus, and a
/// shortcut.
class WidgetsHost {
 public:
  WidgetsHost(QSize size, const QString& shortcut) {
    field_->setObjectName("hostField");
    field_->resize(200, 40);
    new QShortcut(QKeySequence(shortcut), window_.get(), [this] { ++shortcuts_; });
    window_->setPalette(Qt::white);
    window_->resize(size);
    window_->show();
    window_->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    field_->setFocus();
  }

  /// Null once it is destroyed.
  [[nodiscard]] QWidget* widget() const { return window_.get(); }
  [[nodiscard]] QWindow& window() const { return *window_->windowHandle(); }
  [[nodiscard]] QImage picture() const { return window_->grab().toImage(); }
  void resize(QSize size) { window_->resize(size); }
  void destroy() { window_.reset(); }
  void hide() { window_->hide(); }
  void focusField() { field_->setFocus(); }
  void removeField() { delete field_; }
  [[nodiscard]] QString text() const { return field_->text(); }
  /// How often the shortcut was used.
  [[nodiscard]] int shortcuts() const { return shortcuts_; }

 private:
  std::unique_ptr<QWidget> window_ = std::make_unique<QWidget>();
  QLineEdit* field_ = new QLineEdit(window_.get());
  int shortcuts_ = 0;
};

#ifdef KIFO_WITH_QUICK
/// The same as a scene.
class QuickHost {
 public:
  QuickHost(QSize size, const QString& shortcut) {
    constexpr auto kScene = R"(
      import QtQuick
      Item {
        property int shortcuts: 0
        Shortcut { sequence: "%1"; onActivated: shortcuts++ }
        TextInput { objectName: "hostField"; focus: true; width: 200; height: 40 }
      })";
    QQuickItem* root = make(QString(kScene).arg(shortcut));
    view_->setContent({}, nullptr, root);
    view_->setResizeMode(QQuickView::SizeRootObjectToView);
    view_->resize(size);
    view_->show();
    view_->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(view_.get()));
    field_ = root->findChild<QQuickItem*>("hostField");
    field_->forceActiveFocus();
  }

  /// An item from its text in QML.
  QQuickItem* make(const QString& text) {
    QQmlComponent component(view_->engine());
    component.setData(text.toUtf8(), {});
    return qobject_cast<QQuickItem*>(component.create());
  }
  /// Null once it is destroyed.
  [[nodiscard]] QQuickView* view() const { return view_.get(); }
  [[nodiscard]] QWindow& window() const { return *view_; }
  [[nodiscard]] QImage picture() const {
    QImage picture = view_->grabWindow();
    picture.setDevicePixelRatio(view_->devicePixelRatio());
    return picture;
  }
  void resize(QSize size) {
    view_->resize(size);
    EXPECT_TRUE(QTest::qWaitFor([&] { return view_->contentItem()->size() == size; }));
  }
  void destroy() { view_.reset(); }
  void hide() { view_->hide(); }
  void focusField() { field_->forceActiveFocus(); }
  void removeField() { delete field_; }
  [[nodiscard]] QString text() const { return field_->property("text").toString(); }
  [[nodiscard]] int shortcuts() const { return view_->rootObject()->property("shortcuts").toInt(); }

 private:
  std::unique_ptr<QQuickView> view_ = std::make_unique<QQuickView>();
  QPointer<QQuickItem> field_;
};
#endif

}  // namespace kifo::testing
