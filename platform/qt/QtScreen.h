#pragma once

#include <QHideEvent>
#include <QShowEvent>
#include <memory>
#include <utility>

#include "platform/qt/QtScreenController.h"

namespace kifo {

/// Makes a widget a screen of the SDK: showing it sends "page_in", hiding or destroying it
/// sends "page_out", each with the class's name. Minimising the window and the like sends nothing.
///
///     class BasketScreen : public kifo::QtScreen<QWidget> {
///       Q_OBJECT
///       void pay() {
///         kifo::KifoEventManager::sendEvent(viewController(), "pay", std::nullopt);
///       }
///     };
///
/// Works with QWidget and every class that derives from it.
///
/// **Threading:** UI thread only.
/// **Ownership:** the widget belongs to the host. The SDK refers to it through `viewController`,
/// which may outlive it.
template <class Widget>
class QtScreen : public Widget {
 public:
  using Widget::Widget;

  ~QtScreen() override {
    if (controller_) controller_->detach();
  }

  /// What the operations of `KifoEventManager` take as the controller. The class's name is read at
  /// the first call or showing; a constructor of a base class would read the base's name.
  [[nodiscard]] std::shared_ptr<QtScreenController> viewController() {
    if (!controller_) {
      controller_ = std::make_shared<QtScreenController>(
          this, QtScreenController::nameOf(*this, Widget::staticMetaObject.className()));
    }
    return controller_;
  }

 protected:
  // A spontaneous event comes from the window system: the window was minimised, or brought back.
  void showEvent(QShowEvent* event) override {
    const auto controller = viewController();
    if (!event->spontaneous()) controller->willShow();
    Widget::showEvent(event);
    if (!event->spontaneous()) controller->didShow();
  }

  void hideEvent(QHideEvent* event) override {
    if (!event->spontaneous()) viewController()->didHide();
    Widget::hideEvent(event);
  }

 private:
  std::shared_ptr<QtScreenController> controller_;
};

}  // namespace kifo
