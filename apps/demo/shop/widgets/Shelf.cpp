#include "apps/demo/shop/widgets/Shelf.h"

#include <algorithm>

namespace kifo::shop {

Shelf::Shelf(QSize card, QWidget* parent) : QWidget(parent), card_(card) {}

void Shelf::add(QWidget* card) {
  card->setParent(this);
  cards_.push_back(card);
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

int Shelf::columns(int width) const {
  return std::clamp(width / card_.width(), 1, std::max(1, static_cast<int>(cards_.size())));
}

int Shelf::heightForWidth(int width) const {
  const int perRow = columns(width);
  return (static_cast<int>(cards_.size()) + perRow - 1) / perRow * card_.height();
}

QSize Shelf::sizeHint() const {
  return {card_.width() * 3, heightForWidth(card_.width() * 3)};
}

void Shelf::resizeEvent(QResizeEvent*) {
  const int perRow = columns(width());
  for (int index = 0; index < static_cast<int>(cards_.size()); ++index) {
    const int left = width() * (index % perRow) / perRow;
    const int right = width() * (index % perRow + 1) / perRow;
    cards_[static_cast<std::size_t>(index)]->setGeometry(left, index / perRow * card_.height(),
                                                         right - left, card_.height());
  }
}

}  // namespace kifo::shop
