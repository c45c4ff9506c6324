#pragma once

#include <QPainterPath>

#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {

/// A coupon's code within a dashed border in the label's tint.
///
/// **Threading:** UI thread only.
class DashedLabel : public TextLabel {
  Q_OBJECT

 public:
  /// How the border is drawn. Lengths are logical pixels.
  struct ShapeLayer {
    QColor fillColor = Qt::transparent;
    QColor strokeColor = Qt::black;
    double lineWidth = 4;
    Qt::PenJoinStyle lineJoin = Qt::BevelJoin;
    QList<double> lineDashPattern = {6, 4};  ///< On, off.
    QPainterPath path;                       ///< The label's bounds, square corners.
  };

  explicit DashedLabel(QWidget* parent);

  [[nodiscard]] const ShapeLayer& shapeLayer() const { return shapeLayer_; }
  void setTintColor(const QColor& color);
  void setBackgroundColor(const QColor& color);
  void setLineWidth(double width);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void layoutSubviews();

  ShapeLayer shapeLayer_;
  QColor background_ = Qt::transparent;
};

}  // namespace kifo
