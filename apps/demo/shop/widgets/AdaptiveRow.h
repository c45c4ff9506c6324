#pragma once

#include <QBoxLayout>
#include <QWidget>

namespace kifo::shop {

/// Widgets side by side while there is space, one under the other when there is not.
class AdaptiveRow : public QWidget {
  Q_OBJECT

 public:
  /// `breadth`: below this many logical pixels the row becomes a column.
  explicit AdaptiveRow(int breadth, int spacing, QWidget* parent = nullptr);

  [[nodiscard]] QBoxLayout* box() const { return box_; }
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  const int breadth_;
  QBoxLayout* const box_;
};

}  // namespace kifo::shop
