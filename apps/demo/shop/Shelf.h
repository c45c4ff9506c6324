#pragma once

#include <QWidget>
#include <vector>

namespace kifo::shop {

/// Lays cards in as many columns as there is room for.
class Shelf : public QWidget {
  Q_OBJECT

 public:
  using QWidget::QWidget;

  void add(QWidget* card);

  [[nodiscard]] bool hasHeightForWidth() const override { return true; }
  [[nodiscard]] int heightForWidth(int width) const override;
  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  [[nodiscard]] int columns(int width) const;

  std::vector<QWidget*> cards_;
};

}  // namespace kifo::shop
