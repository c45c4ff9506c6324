
#include <QAccessible>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPictures.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPiece.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPopup.h"
#include "tests/views/Hosts.h"
#include "tests/views/PopupToolkit.h"

namespace kifo::testing {
namespace {

class Quick : public PopupToolkitOn<QuickHost> {
 public:
  void present(std::shared_ptr<const PopupRequest> request, const PopUpOptions& options) override {
    popup_ = new QuickPopup(std::move(request), options);
    QObject::connect(popup_, &QuickPopup::closed, host_.view(), [this] { ++closings; });
    popup_->present(*host_.view());
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

  QPointer<QuickPopup> popup_;
};

}  // namespace

std::unique_ptr<PopupToolkit> quickPopupToolkit() {
  return std::make_unique<Quick>();
}

}  // namespace kifo::testing
