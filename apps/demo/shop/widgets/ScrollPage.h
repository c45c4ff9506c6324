#pragma once

#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace kifo::shop {

/// A thin scroll bar without arrows.
class ThinScrollBar : public QScrollBar {
  Q_OBJECT

 public:
  explicit ThinScrollBar(QWidget* parent = nullptr) : QScrollBar(Qt::Vertical, parent) {}

  [[nodiscard]] QSize sizeHint() const override { return {10, 40}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
};

/// A column of things that scrolls when the window is too low for it.
class ScrollPage : public QScrollArea {
  Q_OBJECT

 public:
  explicit ScrollPage(QWidget* parent = nullptr);

  [[nodiscard]] QVBoxLayout* column() const { return column_; }

 private:
  QVBoxLayout* column_;
};

}  // namespace kifo::shop
