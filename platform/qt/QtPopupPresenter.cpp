#include "platform/qt/QtPopupPresenter.h"

#include <QApplication>
#include <QThread>
#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/PopupRules.h"
#include "platform/qt/popups/QtPopupQueue.h"
#include "platform/qt/popups/QtPopupRouter.h"

namespace kifo {

QtPopupPresenter::QtPopupPresenter(PopUpOptions options) {
  auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
  if (application == nullptr || application->thread() != QThread::currentThread()) return;
  link_ = (new QtPopupRouter(std::move(options), application))->link();
}

QtPopupPresenter::~QtPopupPresenter() {
  if (link_) link_->post([](PopupRouter& router) { router.deleteLater(); });
}

void QtPopupPresenter::present(std::shared_ptr<const PopupRequest> request) {
  const auto accept = [request](PopupRouter& router) { router.accept(request); };
  if (link_ && link_->post(accept)) return;
  rules::sayNotShown(QtPopupQueue::LOG_TAG, *request, "there is no QApplication");
}

}  // namespace kifo
