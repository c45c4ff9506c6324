#include "Kifo_iOS_Common_Kit/inapp/views/shared/OpacityEffect.h"

#include <QPainter>
#include <QScopedValueRollback>
#include <QWidget>

namespace kifo {
namespace {

constexpr qint64 kOldestPicture = 330;  // milliseconds

}  // namespace

OpacityEffect::OpacityEffect(QWidget& widget) : widget_(widget) {}

void OpacityEffect::setOpacity(double opacity) {
  if (opacity == opacity_) return;
  opacity_ = opacity;
  update();
}

void OpacityEffect::takePicture() {
  const QScopedValueRollback rollback(posing_, true);
  const double scale = widget_.devicePixelRatioF();
  picture_ = QPixmap((QSizeF(widget_.size()) * scale).toSize());
  picture_.setDevicePixelRatio(scale);
  picture_.fill(Qt::transparent);
  if (!picture_.isNull()) widget_.render(&picture_, {}, {}, QWidget::DrawChildren);
  age_.start();
}

bool OpacityEffect::isFresh() const {
  const double scale = widget_.devicePixelRatioF();
  return picture_.size() == (QSizeF(widget_.size()) * scale).toSize() &&
         picture_.devicePixelRatioF() == scale && !age_.hasExpired(kOldestPicture);
}

void OpacityEffect::draw(QPainter* painter) {
  if (posing_) return drawSource(painter);
  if (opacity_ <= 0) return;
  if (!isFresh()) takePicture();
  painter->save();
  painter->setOpacity(painter->opacity() * opacity_);
  painter->drawPixmap(0, 0, picture_);
  painter->restore();
}

}  // namespace kifo
