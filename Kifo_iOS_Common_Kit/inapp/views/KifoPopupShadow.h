#pragma once

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace kifo {

/// The soft shadow below an alert's card, painted once for each outline and kept.
///
/// **Threading:** UI thread only.
class KifoPopupShadow {
 public:
  /// How far the shadow reaches beyond the outline.
  static constexpr int kReach = 28;

  /// Paints the shadow of `outline` moved to `at`.
  void paint(QPainter& painter, const QPainterPath& outline, const QPoint& at);

 private:
  void render(const QPainterPath& outline, double devicePixelRatio);

  QPainterPath outline_;
  QPixmap picture_;
};

}  // namespace kifo
