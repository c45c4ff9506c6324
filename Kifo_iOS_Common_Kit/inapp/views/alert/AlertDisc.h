#pragma once

#include <QColor>
#include <QWidget>

namespace kifo {

/// A filled circle: the coloured one that holds an alert's icon, and the disc behind it.
///
/// **Threading:** UI thread only.
class AlertDisc : public QWidget {
  Q_OBJECT
 public:
  explicit AlertDisc(QWidget* parent = nullptr);

  void setColor(const QColor& color);
  [[nodiscard]] QColor color() const { return color_; }
  /// Draws a thin line around the part that lies above `height`, where the disc leaves the card.
  void setRim(const QColor& color, int height);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QColor color_;
  QColor rim_;
  int rimHeight_ = 0;
};

}  // namespace kifo
