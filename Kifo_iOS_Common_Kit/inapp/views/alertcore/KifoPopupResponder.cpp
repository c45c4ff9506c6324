#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoPopupResponder.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoAlert.h"

namespace kifo {

KifoPopupResponder::KifoPopupResponder(KifoAlert* alertview) : alertview_(alertview) {}

KifoAlert* KifoPopupResponder::alertview() const {
  return alertview_;
}

void KifoPopupResponder::setTitle(const QString& title) const {
  if (alertview_ != nullptr) alertview_->setTitle(title);
}

void KifoPopupResponder::setSubTitle(const QString& subTitle) const {
  if (alertview_ != nullptr) alertview_->setSubTitle(subTitle);
}

void KifoPopupResponder::close() const {
  if (alertview_ != nullptr) alertview_->hideView();
}

void KifoPopupResponder::setDismissBlock(std::function<void()> dismissBlock) const {
  if (alertview_ != nullptr) alertview_->dismissBlock = std::move(dismissBlock);
}

bool KifoPopupResponder::isShowing() const {
  return alertview_ != nullptr && alertview_->isShowing();
}

}  // namespace kifo
