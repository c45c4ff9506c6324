#pragma once

#include <QColor>
#include <QString>
#include <vector>

namespace kifo::shop {

/// What a product's picture shows.
enum class Motif { lamp, plant, mug, armchair, clock, books };

struct Product {
  QString id;  ///< Travels in events.
  QString name;
  QString maker;
  QString description;
  int price;  ///< Whole euros.
  double stars;
  Motif motif;
  QColor backdrop;
};

/// Everything that the shop sells, in the order of its shelf.
const std::vector<Product>& catalogue();

/// "€ 49".
QString priceText(int euros);

}  // namespace kifo::shop
