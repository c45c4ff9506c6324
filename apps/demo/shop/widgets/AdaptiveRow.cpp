#include "apps/demo/shop/widgets/AdaptiveRow.h"

#include <algorithm>

namespace kifo::shop {

AdaptiveRow::AdaptiveRow(int breadth, int spacing, QWidget* parent)
    : QWidget(parent), breadth_(breadth), box_(new QBoxLayout(QBoxLayout::LeftToRight, this)) {
  box_->setContentsMargins(0, 0, 0, 0);
  box_->setSpacing(spacing);
}

QSize AdaptiveRow::minimumSizeHint() const {
  // A row that may become a column needs no more width than its widest part.
  int width = 0;
  for (int index = 0; index < box_->count(); ++index) {
    width = std::max(width, box_->itemAt(index)->minimumSize().width());
  }
  return {width, QWidget::minimumSizeHint().height()};
}

void AdaptiveRow::resizeEvent(QResizeEvent*) {
  const auto direction = width() < breadth_ ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight;
  if (direction == box_->direction()) return;
  box_->setDirection(direction);
  updateGeometry();  // the page around it knows the height of the other direction
}

}  // namespace kifo::shop
