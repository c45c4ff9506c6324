#include "platform/qt/QtPopupPresenter.h"

#include <QApplication>
#include <QMetaObject>
#include <QThread>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "platform/qt/QtPopupRouter.h"

namespace kifo {

/// The router, as long as it lives. Whoever posts to it holds the mutex, and so does the router
/// when it is destroyed.
struct QtPopupPresenter::Shared {
  Mutex mutex;
  QtPopupRouter* router KIFO_GUARDED_BY(mutex) = nullptr;  ///< Lives on the UI thread.
};

QtPopupPresenter::QtPopupPresenter(PopUpOptions options) : shared_(std::make_shared<Shared>()) {
  auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
  if (application == nullptr || application->thread() != QThread::currentThread()) return;
  const auto forget = [shared = shared_] {
    const MutexLock lock(shared->mutex);
    shared->router = nullptr;
  };
  const MutexLock lock(shared_->mutex);
  shared_->router = new QtPopupRouter(std::move(options), forget, application);
}

QtPopupPresenter::~QtPopupPresenter() {
  const MutexLock lock(shared_->mutex);
  if (shared_->router != nullptr) shared_->router->deleteLater();
}

void QtPopupPresenter::present(std::shared_ptr<const PopupRequest> request) {
  {
    const MutexLock lock(shared_->mutex);
    if (QtPopupRouter* router = shared_->router) {
      const auto accept = [router, request = std::move(request)] { router->accept(request); };
      QMetaObject::invokeMethod(router, accept, Qt::QueuedConnection);
      return;
    }
  }
  QtPopupRouter::notShown(*request, "there is no QApplication");
}

}  // namespace kifo
