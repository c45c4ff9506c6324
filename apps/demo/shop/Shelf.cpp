#include "apps/demo/shop/Shelf.h"

#include <algorithm>

namespace kifo::shop {
namespace {

constexpr int kCardWidth = 225;
constexpr int kCardHeight = 300;

}  // namespace

void Shelf::add(QWidget* card) {
  card->setParent(this);
  cards_.push_back(card);
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Minimum);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

int Shelf::columns(int width) const {
  return std::clamp(width / kCardWidth, 1, std::max(1, static_cast<int>(cards_.size())));
}

int Shelf::heightForWidth(int width) const {
  const int perRow = columns(width);
  return (static_cast<int>(cards_.size()) + perRow - 1) / perRow * kCardHeight;
}

QSize Shelf::sizeHint() const {
  return {kCardWidth * 3, heightForWidth(kCardWidth * 3)};
}

void Shelf::resizeEvent(QResizeEvent*) {
  const int perRow = columns(width());
  for (int index = 0; index < static_cast<int>(cards_.size()); ++index) {
    const int left = width() * (index % perRow) / perRow;
    const int right = width() * (index % perRow + 1) / perRow;
    cards_[static_cast<std::size_t>(index)]->setGeometry(left, index / perRow * kCardHeight,
                                                         right - left, kCardHeight);
  }
}

}  // namespace kifo::shop
