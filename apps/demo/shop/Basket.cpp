#include "apps/demo/shop/Basket.h"

#include <algorithm>
#include <numeric>

namespace kifo::shop {

void Basket::add(const Product& product) {
  const auto isProduct = [&](const Entry& entry) { return entry.product == &product; };
  if (const auto found = std::ranges::find_if(entries_, isProduct); found != entries_.end()) {
    ++found->count;
  } else {
    entries_.push_back({&product, 1});
  }
  Q_EMIT changed();
}

void Basket::clear() {
  entries_.clear();
  Q_EMIT changed();
}

int Basket::count() const {
  return std::accumulate(entries_.begin(), entries_.end(), 0,
                         [](int sum, const Entry& entry) { return sum + entry.count; });
}

int Basket::total() const {
  return std::accumulate(entries_.begin(), entries_.end(), 0, [](int sum, const Entry& entry) {
    return sum + entry.count * entry.product->price;
  });
}

}  // namespace kifo::shop
