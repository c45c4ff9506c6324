#pragma once

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {

/// A coupon's code within a dashed border in the label's tint.
///
/// **Threading:** UI thread only.
class DashedLabel : public TextLabel {
  Q_OBJECT

 public:
  using TextLabel::TextLabel;

  [[nodiscard]] const CouponLook& shapeLayer() const { return look_; }
  void setShape(const CouponLook& look);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  CouponLook look_;
};

}  // namespace kifo
