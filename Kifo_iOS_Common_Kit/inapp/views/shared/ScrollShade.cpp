#include "Kifo_iOS_Common_Kit/inapp/views/shared/ScrollShade.h"

#include <algorithm>

#include <QLinearGradient>
#include <QPainter>
#include <QScrollBar>

namespace kifo {
namespace {

constexpr int kDepth = 20;  ///< Logical pixels at most; less where little is left to scroll.

}  // namespace

ScrollShade::ScrollShade(QScrollBar* bar, const QColor& background, QWidget* parent)
    : QWidget(parent), bar_(bar), background_(background) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  connect(bar_, &QScrollBar::valueChanged, this, qOverload<>(&QWidget::update));
  connect(bar_, &QScrollBar::rangeChanged, this, qOverload<>(&QWidget::update));
}

void ScrollShade::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QColor clear = background_;
  clear.setAlpha(0);
  const auto shade = [&](double edge, int depth, int way) {
    QLinearGradient gradient(0, edge, 0, edge + way * depth);
    gradient.setColorAt(0, background_);
    gradient.setColorAt(1, clear);
    painter.fillRect(QRectF(0, way > 0 ? edge : edge - depth, width(), depth), gradient);
  };
  const int above = std::min(bar_->value() - bar_->minimum(), kDepth);
  const int below = std::min(bar_->maximum() - bar_->value(), kDepth);
  if (above > 0) shade(0, above, 1);
  if (below > 0) shade(height(), below, -1);
}

}  // namespace kifo
