#include "tests/quick/PopupToolkit.h"

#include <gtest/gtest.h>
#include <QLineEdit>
#include <QMainWindow>
#include <QPointer>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPopup.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"

namespace kifo::testing {
namespace {

class Widgets : public PopupToolkit {
 public:
  Widgets() {
    field_ = new QLineEdit(&host_);
    field_->setObjectName("hostField");
    host_.setCentralWidget(field_);
    host_.resize(414, 800);
    host_.show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&host_));
    field_->setFocus();
  }

  void resize(QSize size) override { host_.resize(size); }
  void present(std::shared_ptr<const PopupRequest> request, const PopUpOptions& options) override {
    popup_ = new PopUpWindow(std::move(request), options, &host_);
    QObject::connect(popup_, &PopUpWindow::closed, &host_, [this] { ++closings; });
    popup_->present();
  }
  void dismiss() override { popup_->dismissView(); }
  void keyboard(const QRectF& rectangle) override {
    rectangle.isEmpty() ? popup_->keyboardWillHide() : popup_->keyboardWillShow(rectangle);
  }
  const PopupState* state() const override { return popup_ ? &popup_->state() : nullptr; }
  QWindow& window() override { return *host_.windowHandle(); }
  QImage picture() override { return host_.grab().toImage(); }
  QString hostText() const override { return field_->text(); }

 private:
  QMainWindow host_;
  QLineEdit* field_;
  QPointer<PopUpWindow> popup_;
};

class Quick : public PopupToolkit {
 public:
  Quick() {
    QQmlComponent component(view_.engine());
    component.setData(
        "import QtQuick\n"
        "Rectangle { color: '#efefef'\n"
        "  TextInput { objectName: 'hostField'; focus: true; width: 200; height: 40 } }",
        {});
    auto* root = qobject_cast<QQuickItem*>(component.create());
    view_.setContent({}, nullptr, root);
    view_.setResizeMode(QQuickView::SizeRootObjectToView);
    view_.setColor(QGuiApplication::palette().color(QPalette::Window));
    field_ = root->findChild<QQuickItem*>("hostField");
    view_.resize(414, 800);
    view_.show();
    view_.requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&view_));
    field_->forceActiveFocus();
  }

  void resize(QSize size) override {
    view_.resize(size);
    EXPECT_TRUE(QTest::qWaitFor([this, size] { return view_.contentItem()->size() == size; }));
  }
  void present(std::shared_ptr<const PopupRequest> request, const PopUpOptions& options) override {
    popup_ = new QuickPopup(std::move(request), options);
    QObject::connect(popup_, &QuickPopup::closed, &view_, [this] { ++closings; });
    popup_->present(view_);
  }
  void dismiss() override { popup_->dismissView(); }
  void keyboard(const QRectF& rectangle) override {
    rectangle.isEmpty() ? popup_->keyboardWillHide() : popup_->keyboardWillShow(rectangle);
  }
  const PopupState* state() const override { return popup_ ? &popup_->state() : nullptr; }
  QWindow& window() override { return view_; }
  QImage picture() override { return view_.grabWindow(); }
  QString hostText() const override { return field_->property("text").toString(); }

 private:
  QQuickView view_;
  QPointer<QQuickItem> field_;
  QPointer<QuickPopup> popup_;
};

}  // namespace

std::unique_ptr<PopupToolkit> PopupToolkit::widgets() {
  return std::make_unique<Widgets>();
}

std::unique_ptr<PopupToolkit> PopupToolkit::quick() {
  return std::make_unique<Quick>();
}

}  // namespace kifo::testing
