#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupScrollArea.h"

#include <algorithm>

#include <QScrollBar>

namespace kifo {
namespace {

constexpr int kRevealMargin = 8;

}  // namespace

PopupScrollArea::PopupScrollArea(bool still, QWidget* parent) : QScrollArea(parent) {
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setMinimumSize(0, 0);
  viewport()->setAutoFillBackground(false);
  verticalScrollBar()->setSingleStep(24);
  shade_ = new ScrollShade(verticalScrollBar(), this);
  indicator_ = new ScrollIndicator(verticalScrollBar(), still, this);
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this,
          [this](int offset) { Q_EMIT scrollViewDidScroll(offset); });
}

void PopupScrollArea::setColors(const QColor& background, const QColor& ink) {
  shade_->setColors(background, ink);
  indicator_->setColor(ink);
}

bool PopupScrollArea::isScrollable() const {
  return verticalScrollBar()->maximum() > 0;
}

bool PopupScrollArea::scrollBy(int pixels) {
  const int before = verticalScrollBar()->value();
  verticalScrollBar()->setValue(before + pixels);
  return verticalScrollBar()->value() != before;
}

void PopupScrollArea::reveal(const QWidget* descendant) {
  const int top = descendant->mapTo(widget(), QPoint()).y();
  const int height = std::min(descendant->height(), viewport()->height());
  ensureVisible(0, top, 0, kRevealMargin);
  ensureVisible(0, top + height, 0, kRevealMargin);
}

void PopupScrollArea::resizeEvent(QResizeEvent* event) {
  QScrollArea::resizeEvent(event);
  const int inset = 2;
  const int x =
      layoutDirection() == Qt::RightToLeft ? inset : width() - ScrollIndicator::thickness - inset;
  indicator_->setGeometry(x, inset, ScrollIndicator::thickness, std::max(height() - 2 * inset, 0));
  shade_->setGeometry(rect());
  shade_->raise();
  indicator_->raise();
}

bool scrollAround(QWidget* from, int pixels) {
  for (QWidget* widget = from; widget; widget = widget->parentWidget()) {
    auto* area = qobject_cast<PopupScrollArea*>(widget);
    if (area && area->scrollBy(pixels)) return true;
  }
  return false;
}

}  // namespace kifo
