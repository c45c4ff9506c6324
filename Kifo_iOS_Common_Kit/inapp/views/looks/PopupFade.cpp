#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupFade.h"

#include <utility>

#include <QTimer>

namespace kifo {

PopupFade::PopupFade(std::chrono::milliseconds duration, std::function<bool()> isSeen,
                     QObject* window)
    : QObject(window), isSeen_(std::move(isSeen)), duration_(duration) {
  animation_.setEasingCurve(QEasingCurve::OutQuad);
  connect(&animation_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { set(value.toDouble()); });
  connect(&animation_, &QVariantAnimation::finished, this, &PopupFade::ended);
}

void PopupFade::fadeTo(double opacity) {
  animation_.stop();
  if (duration_.count() <= 0 || !isSeen_()) {
    set(opacity);
    QTimer::singleShot(0, this, &PopupFade::ended);
    return;
  }
  animation_.setStartValue(opacity_);
  animation_.setEndValue(opacity);
  animation_.setDuration(static_cast<int>(duration_.count()));
  animation_.start();
  QTimer::singleShot(0, this, [this] {
    if (animation_.state() == QAbstractAnimation::Running) Q_EMIT began();
  });
}

void PopupFade::set(double opacity) {
  opacity_ = opacity;
  Q_EMIT changed(opacity);
}

}  // namespace kifo
