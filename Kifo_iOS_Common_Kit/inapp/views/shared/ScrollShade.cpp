#include "Kifo_iOS_Common_Kit/inapp/views/shared/ScrollShade.h"

#include <QPainter>
#include <QScrollBar>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"

namespace kifo {
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

void ScrollShade::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  const ScrollState state{1.0 * bar_->value(), 1.0 * bar_->maximum(), 1.0 * bar_->pageStep()};
  paintScrollShade(painter, rect(), state, background_, ink_, !scrolled_);
}

}  // namespace kifo
