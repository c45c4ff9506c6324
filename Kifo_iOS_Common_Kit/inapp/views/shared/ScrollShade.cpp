#include "Kifo_iOS_Common_Kit/inapp/views/shared/ScrollShade.h"

#include <algorithm>

#include <QLinearGradient>
#include <QPainter>
#include <QScrollBar>

namespace kifo {
namespace {

constexpr int kDepth = 32;       ///< Logical pixels at most; less where little is left to scroll.
constexpr double kChevron = 12;  ///< Its width.
constexpr double kFoot = 5;      ///< From the chevron's tip to the edge.

}  // namespace

ScrollShade::ScrollShade(QScrollBar* bar, QWidget* parent) : QWidget(parent), bar_(bar) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  connect(bar_, &QScrollBar::valueChanged, this, &ScrollShade::moved);
  connect(bar_, &QScrollBar::rangeChanged, this, qOverload<>(&QWidget::update));
}

void ScrollShade::setColors(const QColor& background, const QColor& ink) {
  background_ = background;
  ink_ = ink;
  update();
}

void ScrollShade::moved() {
  scrolled_ = true;
  update();
}

void ScrollShade::paintChevron(QPainter& painter) const {
  const QPointF tip(width() / 2.0, height() - kFoot);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(ink_, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(QPolygonF({tip + QPointF(-kChevron / 2, -kChevron / 2), tip,
                                  tip + QPointF(kChevron / 2, -kChevron / 2)}));
}

void ScrollShade::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setClipRect(rect().adjusted(1, 0, -1, 0));  // a panel's edge stays seen
  QColor clear = background_;
  clear.setAlpha(0);
  const auto shade = [&](double edge, int depth, int way) {
    QLinearGradient gradient(0, edge, 0, edge + way * depth);
    gradient.setColorAt(0, background_);
    gradient.setColorAt(0.25, background_);
    gradient.setColorAt(1, clear);
    painter.fillRect(QRectF(0, way > 0 ? edge : edge - depth, width(), depth), gradient);
  };
  const int above = std::min(bar_->value() - bar_->minimum(), kDepth);
  const int below = std::min(bar_->maximum() - bar_->value(), kDepth);
  if (above > 0) shade(0, above, 1);
  if (below <= 0) return;
  shade(height(), below, -1);
  if (!scrolled_) paintChevron(painter);
}

}  // namespace kifo
