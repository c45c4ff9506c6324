#include "platform/qt/QuickPopupPresenter.h"

#include <QGuiApplication>
#include <QThread>
#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/PopupRules.h"
#include "platform/qt/QtServices.h"
#include "platform/qt/popups/QuickPopupRouter.h"

namespace kifo {

QuickPopupPresenter::QuickPopupPresenter(PopUpOptions options,
                                         std::shared_ptr<PopupPresenter> widgets) {
  auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
  if (application == nullptr || application->thread() != QThread::currentThread()) return;
  link_ = (new QuickPopupRouter(std::move(options), std::move(widgets), application))->link();
}

QuickPopupPresenter::~QuickPopupPresenter() {
  if (link_) link_->post([](PopupRouter& router) { router.deleteLater(); });
}

void QuickPopupPresenter::present(std::shared_ptr<const PopupRequest> request) {
  const auto accept = [request](PopupRouter& router) { router.accept(request); };
  if (link_ && link_->post(accept)) return;
  rules::sayNotShown(QuickPopupQueue::LOG_TAG, *request, "there is no QGuiApplication");
}

Platform withQuick(Platform platform, PopUpOptions options) {
  platform.popups =
      std::make_shared<QuickPopupPresenter>(std::move(options), std::move(platform.popups));
  return withQtServices(std::move(platform));
}

}  // namespace kifo
