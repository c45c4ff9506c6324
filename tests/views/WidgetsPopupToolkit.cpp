

#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoImageCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindowView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupCarousel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupPanel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/ActivityIndicator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"
#include "tests/views/Hosts.h"
#include "tests/views/PopupToolkit.h"

namespace kifo::testing {
namespace {

class Widgets : public PopupToolkitOn<WidgetsHost> {
 public:
  void present(std::shared_ptr<const PopupRequest> request, const PopUpOptions& options) override {
    popup_ = new PopUpWindow(std::move(request), options, host_.widget());
    QObject::connect(popup_, &PopUpWindow::closed, host_.widget(), [this] { ++closings; });
    popup_->present();
  }
  void dismiss() override { popup_->dismissView(); }
  void submit() override { popup_->submitButtonPressed(); }
  void keyboard(const QRectF& rectangle) override {
    rectangle.isNull() ? popup_->keyboardWillHide() : popup_->keyboardWillShow(rectangle);
  }
  void turnPage() override { popup_->scrollImageListTimer(); }
  bool turnsPages() const override { return popup_->timer() != nullptr; }
  bool isSliding() const override { return elements().popupImageViewList->isScrolling(); }
  bool isLoading(int page) const override {
    const auto* cell = elements().popupImageViewList->cellForItem(page);
    return cell->activityIndicatorView()->isAnimating();
  }
  bool isFading() const override { return elements().popupView->graphicsEffect() != nullptr; }
  QObject* popup() const override { return popup_; }
  const PopupState* state() const override { return popup_ ? &popup_->state() : nullptr; }
  void expectNothingCut() const override {
    for (const auto* label : popup_->findChildren<TextLabel*>()) {
      if (!label->isVisible()) continue;
      EXPECT_GE(label->height(), label->heightForWidth(label->width()))
          << label->text().toStdString();
    }
    for (const auto* button : popup_->findChildren<PopupButton*>()) {
      if (!button->isVisible()) continue;
      EXPECT_GE(button->height(), button->heightFor(button->width()))
          << button->text().toStdString();
    }
  }
  std::vector<Part> parts() const override {
    std::vector<Part> parts;
    for (auto* widget : popup_->findChildren<QWidget*>()) {
      if (widget->objectName().isEmpty() || !widget->isVisible()) continue;
      const QPoint place = widget->mapTo(host_.widget(), QPoint());
      auto* label = qobject_cast<TextLabel*>(widget);
      parts.push_back({widget->objectName().toStdString(),
                       {place, widget->size()},
                       widget->visibleRegion().boundingRect().translated(place),
                       label != nullptr,
                       [widget](QPainter& painter) { widget->render(&painter, {}, {}, {}); }});
    }
    return parts;
  }

 private:
  const PopupElements& elements() const { return popup_->popUpWindowView()->elements(); }

  QPointer<PopUpWindow> popup_;
};

}  // namespace

std::unique_ptr<PopupToolkit> PopupToolkit::widgets() {
  return std::make_unique<Widgets>();
}

#ifdef KIFO_WITH_QUICK
std::unique_ptr<PopupToolkit> quickPopupToolkit();
#endif

std::vector<PopupToolkit::Kind> PopupToolkit::all() {
  return {{"widgets", &PopupToolkit::widgets},
#ifdef KIFO_WITH_QUICK
          {"quick", &quickPopupToolkit}
#endif
  };
}

}  // namespace kifo::testing
