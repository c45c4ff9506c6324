#pragma once

#include <QColor>
#include <QString>
#include <vector>

namespace kifo::shop {

struct Product {
  QString id;  ///< Travels in events.
  QString name;
  QString maker;
  QString description;
  int price;  ///< Whole euros.
  double stars;
  QString picture;  ///< The resource with it, without a background.
  QColor backdrop;
};

/// Everything that the shop sells, in the order of its shelf.
const std::vector<Product>& catalogue();

/// "€ 49".
QString priceText(int euros);

}  // namespace kifo::shop
