#include <gtest/gtest.h>

#include <QAccessible>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QTest>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPictures.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPiece.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPopup.h"
#include "tests/views/PopupToolkit.h"

namespace kifo::testing {
namespace {

constexpr auto kHost = R"(
import QtQuick
Rectangle {
  color: "#efefef"
  property int shortcuts: 0
  Shortcut { sequence: "Escape"; onActivated: shortcuts++ }
  TextInput { objectName: "hostField"; focus: true; width: 200; height: 40 }
}
)";

class Quick : public PopupToolkit {
 public:
  Quick() {
    QQmlComponent component(view_->engine());
    component.setData(kHost, {});
    auto* root = qobject_cast<QQuickItem*>(component.create());
    view_->setContent({}, nullptr, root);
    view_->setResizeMode(QQuickView::SizeRootObjectToView);
    view_->setColor(QGuiApplication::palette().color(QPalette::Window));
    field_ = root->findChild<QQuickItem*>("hostField");
    view_->resize(414, 800);
    view_->show();
    view_->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(view_.get()));
    field_->forceActiveFocus();
  }

  void resize(QSize size) override {
    view_->resize(size);
    EXPECT_TRUE(QTest::qWaitFor([this, size] { return view_->contentItem()->size() == size; }));
  }
  QWindow& window() override { return *view_; }
  QImage picture() override {
    QImage picture = view_->grabWindow();
    picture.setDevicePixelRatio(view_->devicePixelRatio());
    return picture;
  }
  void destroyHost() override { view_.reset(); }
  void focusHost() override { field_->forceActiveFocus(); }
  void removeHostField() override { delete field_; }
  QString hostText() const override { return field_->property("text").toString(); }
  int shortcuts() const override { return view_->rootObject()->property("shortcuts").toInt(); }

  void present(std::shared_ptr<const PopupRequest> request, const PopUpOptions& options) override {
    popup_ = new QuickPopup(std::move(request), options);
    QObject::connect(popup_, &QuickPopup::closed, view_.get(), [this] { ++closings; });
    popup_->present(*view_);
  }
  void dismiss() override { popup_->dismissView(); }
  void submit() override { popup_->submitButtonPressed(); }
  void keyboard(const QRectF& rectangle) override {
    rectangle.isNull() ? popup_->keyboardWillHide() : popup_->keyboardWillShow(rectangle);
  }
  void turnPage() override { popup_->pictures().turnByItself(); }
  bool turnsPages() const override { return popup_->pictures().turnsByItself(); }
  bool isSliding() const override { return popup_->pictures().isSliding(); }
  bool isLoading(int page) const override { return popup_->pictures().isLoading(page); }
  bool isFading() const override { return popup_->fade() < 1; }
  QObject* popup() const override { return popup_; }
  const PopupState* state() const override { return popup_ ? &popup_->state() : nullptr; }
  std::vector<Part> parts() const override {
    std::vector<Part> parts;
    collect(*popup_, QRectF({}, popup_->size()), parts);
    return parts;
  }

 private:
  static void collect(const QQuickItem& parent, const QRectF& clip, std::vector<Part>& parts) {
    for (QQuickItem* item : parent.childItems()) {
      if (!item->isVisible()) continue;
      const QRectF box = item->mapRectToScene(item->boundingRect());
      auto* piece = qobject_cast<QuickPiece*>(item);
      if (!item->objectName().isEmpty()) {
        parts.push_back({item->objectName().toStdString(), box.toRect(),
                         box.intersected(clip).toRect(), piece && isText(piece),
                         [piece](QPainter& painter) { piece->paint(&painter); }});
      }
      collect(*item, item->clip() ? box.intersected(clip) : clip, parts);
    }
  }
  static bool isText(QQuickItem* item) {
    const QAccessibleInterface* known = QAccessible::queryAccessibleInterface(item);
    return known && known->role() == QAccessible::StaticText;
  }

  std::unique_ptr<QQuickView> view_ = std::make_unique<QQuickView>();
  QPointer<QQuickItem> field_;
  QPointer<QuickPopup> popup_;
};

}  // namespace

std::unique_ptr<PopupToolkit> quickPopupToolkit() {
  return std::make_unique<Quick>();
}

}  // namespace kifo::testing
