#pragma once

#include <QObject>
#include <vector>

#include "apps/demo/shop/Catalogue.h"

namespace kifo::shop {

/// What the visitor wants to buy.
class Basket : public QObject {
  Q_OBJECT

 public:
  struct Entry {
    const Product* product;
    int count;
  };

  using QObject::QObject;

  void add(const Product& product);
  void clear();

  [[nodiscard]] const std::vector<Entry>& entries() const { return entries_; }
  [[nodiscard]] int count() const;
  [[nodiscard]] int total() const;  ///< Whole euros.

 Q_SIGNALS:
  void changed();

 private:
  std::vector<Entry> entries_;
};

}  // namespace kifo::shop
