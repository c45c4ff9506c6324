#include "platform/qt/QuickPopupPresenter.h"

#include <QGuiApplication>
#include <QThread>
#include <utility>

#include "platform/qt/QtPasteboard.h"
#include "platform/qt/QuickPopupRouter.h"
#ifdef KIFO_HAS_QT_POSITIONING
#include "platform/qt/QtPositionSource.h"
#endif

namespace kifo {

QuickPopupPresenter::QuickPopupPresenter(PopUpOptions options) {
  auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
  if (application == nullptr || application->thread() != QThread::currentThread()) return;
  link_ = (new QuickPopupRouter(std::move(options), application))->link();
}

QuickPopupPresenter::~QuickPopupPresenter() {
  if (link_) link_->post([](QuickPopupRouter& router) { router.deleteLater(); });
}

void QuickPopupPresenter::present(std::shared_ptr<const PopupRequest> request) {
  const auto accept = [request](QuickPopupRouter& router) { router.accept(request); };
  if (!link_ || !link_->post(accept)) {
    QuickPopupRouter::notShown(*request, "there is no QGuiApplication");
  }
}

Platform withQuick(Platform platform, PopUpOptions options) {
  platform.popups = std::make_shared<QuickPopupPresenter>(std::move(options));
  platform.pasteboard = std::make_shared<QtPasteboard>();
#ifdef KIFO_HAS_QT_POSITIONING
  platform.position = std::make_shared<QtPositionSource>();
#endif
  return platform;
}

}  // namespace kifo
