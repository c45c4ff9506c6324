#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupImageView.h"

#include <QPainter>
#include <QPainterPath>

#include "Kifo_iOS_Common_Kit/inapp/views/shared/ActivityIndicator.h"

namespace kifo {
namespace {

constexpr double kCorner = 8;
constexpr double kGlyph = 40;  ///< Width of the picture sign on the placeholder.

}  // namespace

PopupImageView::PopupImageView(const PopupTheme& theme, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      activityIndicatorView_(new ActivityIndicator(theme.ink, theme.options.reducedMotion, this)) {}

void PopupImageView::setLoading() {
  asked_ = true;
  image_ = {};
  activityIndicatorView_->startAnimating();
  update();
}

void PopupImageView::setImage(const QImage& image) {
  image_ = image;
  activityIndicatorView_->stopAnimating();
  update();
}

QRectF PopupImageView::pictureRect() const {
  const QSizeF fitted = QSizeF(image_.size()).scaled(size(), Qt::KeepAspectRatio);
  return {(width() - fitted.width()) / 2, (height() - fitted.height()) / 2, fitted.width(),
          fitted.height()};
}

/// A frame with hills and a sun: a picture belongs here.
void PopupImageView::paintPlaceholder(QPainter& painter) const {
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme_.shade(0.06));
  painter.drawRoundedRect(QRectF(rect()).adjusted(8, 0, -8, 0), kCorner, kCorner);
  if (activityIndicatorView_->isAnimating() || height() < 2 * kGlyph) return;
  painter.setPen(QPen(theme_.shade(0.28), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.translate(QRectF(rect()).center());
  painter.drawRoundedRect(QRectF(-20, -15, kGlyph, 30), 4, 4);
  painter.drawEllipse(QPointF(-9, -5), 3.5, 3.5);
  painter.drawPolyline(QPolygonF({{-16, 11}, {-6, 2}, {0, 7}, {8, -3}, {16, 6}}));
}

void PopupImageView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (image_.isNull()) {
    if (asked_) paintPlaceholder(painter);
    return;
  }
  const QRectF target = pictureRect();
  QPainterPath corners;
  if (target.width() < width()) corners.addRoundedRect(target, kCorner, kCorner);
  if (!corners.isEmpty()) painter.setClipPath(corners);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(target, image_);
}

void PopupImageView::resizeEvent(QResizeEvent*) {
  activityIndicatorView_->move((width() - ActivityIndicator::size) / 2,
                               (height() - ActivityIndicator::size) / 2);
}

}  // namespace kifo
