#pragma once

#include <QWidget>
#include <vector>

namespace kifo::shop {

/// Lays cards in as many columns as there is space for.
class Shelf : public QWidget {
  Q_OBJECT

 public:
  /// `card`: the least width of a card, and the height of each.
  explicit Shelf(QSize card = {225, 300}, QWidget* parent = nullptr);

  void add(QWidget* card);

  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  [[nodiscard]] int columns(int width) const;

  const QSize card_;
  std::vector<QWidget*> cards_;
};

}  // namespace kifo::shop
