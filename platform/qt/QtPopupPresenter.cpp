#include "platform/qt/QtPopupPresenter.h"

#include <QApplication>
#include <QMetaObject>
#include <QThread>
#include <mutex>
#include <utility>

#include "platform/qt/QtPopupDesk.h"

namespace kifo {

/// The way to the desk. Whoever posts to the desk holds the mutex, and so does the desk when it
/// goes: a post finds it whole or not at all.
struct QtPopupPresenter::Door {
  std::mutex mutex;
  QtPopupDesk* desk = nullptr;  // guarded by mutex; lives on the UI thread
};

QtPopupPresenter::QtPopupPresenter(PopUpOptions options) : door_(std::make_shared<Door>()) {
  auto* application = qobject_cast<QApplication*>(QCoreApplication::instance());
  if (application == nullptr || application->thread() != QThread::currentThread()) return;
  const auto forget = [door = door_] {
    const std::lock_guard lock(door->mutex);
    door->desk = nullptr;
  };
  door_->desk = new QtPopupDesk(std::move(options), forget, application);
}

QtPopupPresenter::~QtPopupPresenter() {
  const std::lock_guard lock(door_->mutex);
  if (door_->desk != nullptr) door_->desk->deleteLater();
}

void QtPopupPresenter::present(std::shared_ptr<const PopupRequest> request) {
  {
    const std::lock_guard lock(door_->mutex);
    if (QtPopupDesk* desk = door_->desk) {
      const auto accept = [desk, request = std::move(request)] { desk->accept(request); };
      QMetaObject::invokeMethod(desk, accept, Qt::QueuedConnection);
      return;
    }
  }
  QtPopupDesk::notShown(*request, "there is no QApplication");
}

}  // namespace kifo
