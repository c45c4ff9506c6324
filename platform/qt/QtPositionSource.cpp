#include "platform/qt/QtPositionSource.h"

#include <QGeoPositionInfoSource>
#include <QGuiApplication>
#include <QThread>
#include <atomic>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {
namespace {

enum Permission { notDetermined = 0, denied = 2, authorizedWhenInUse = 4 };
enum State { active = 0, inactive = 1, background = 2 };

State stateOf(Qt::ApplicationState state) {
  switch (state) {
    case Qt::ApplicationActive:
      return active;
    case Qt::ApplicationInactive:
      return inactive;
    default:
      return background;
  }
}

}  // namespace

/// What the UI thread has read, for the other threads.
struct QtPositionSource::Reading {
  std::atomic<int> permission = notDetermined;
  std::atomic<int> state = background;
  std::atomic<bool> wantsDefault = false;  ///< The default source is to be made when asked.

  Mutex mutex;
  std::optional<Coordinate> location KIFO_GUARDED_BY(mutex);

  void take(const QGeoPositionInfo& position) {
    if (!position.isValid()) return;
    const QGeoCoordinate at = position.coordinate();
    const MutexLock lock(mutex);
    location = Coordinate{at.latitude(), at.longitude()};
    permission = authorizedWhenInUse;
  }

  void take(QGeoPositionInfoSource::Error error) {
    if (error == QGeoPositionInfoSource::AccessError) permission = denied;
  }

  /// Reads `source` now and whenever it has something new, for as long as `connections` lives.
  static void watch(const std::shared_ptr<Reading>& reading, QGeoPositionInfoSource* source,
                    QObject* connections) {
    if (source == nullptr) return;
    reading->take(source->lastKnownPosition());
    reading->take(source->error());
    QObject::connect(source, &QGeoPositionInfoSource::positionUpdated, connections,
                     [reading](const QGeoPositionInfo& position) { reading->take(position); });
    QObject::connect(source, &QGeoPositionInfoSource::errorOccurred, connections,
                     [reading](QGeoPositionInfoSource::Error error) { reading->take(error); });
  }
};

QtPositionSource::QtPositionSource() : QtPositionSource(nullptr) {
  reading_->wantsDefault = connections_ != nullptr;
}

QtPositionSource::QtPositionSource(QGeoPositionInfoSource* source)
    : reading_(std::make_shared<Reading>()) {
  auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
  if (application == nullptr || application->thread() != QThread::currentThread()) return;
  connections_ = new QObject;
  reading_->state = stateOf(QGuiApplication::applicationState());
  QObject::connect(
      application, &QGuiApplication::applicationStateChanged, connections_,
      [reading = reading_](Qt::ApplicationState state) { reading->state = stateOf(state); });
  Reading::watch(reading_, source, connections_);
}

QtPositionSource::~QtPositionSource() {
  if (connections_ != nullptr) connections_->deleteLater();
}

int QtPositionSource::authorizationStatus() const {
  if (reading_->wantsDefault.exchange(false)) {
    const auto makeDefault = [reading = reading_, connections = connections_] {
      Reading::watch(reading, QGeoPositionInfoSource::createDefaultSource(connections),
                     connections);
    };
    QMetaObject::invokeMethod(connections_, makeDefault, Qt::QueuedConnection);
  }
  return reading_->permission;
}

int QtPositionSource::applicationState() const {
  return reading_->state;
}

std::optional<Coordinate> QtPositionSource::location() const {
  const MutexLock lock(reading_->mutex);
  return reading_->location;
}

}  // namespace kifo
