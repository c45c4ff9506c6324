#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <QRect>
#include <QVariantAnimation>
#include <algorithm>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "tests/support/Common.h"

namespace kifo::testing {

/// The part of a window's picture that `box`, in logical pixels, shows.
inline QImage cut(const QImage& picture, const QRect& box) {
  const double scale = picture.devicePixelRatio();
  return picture.copy(QRectF(QPointF(box.topLeft()) * scale, QSizeF(box.size()) * scale).toRect());
}

/// `off` and `on` are a control without and with the keyboard's focus. The outer line of the ring
/// contrasts with what lies on either side of it, along the middle of the control's left edge.
inline void expectRingStandsOut(const QImage& off, const QImage& on) {
  const int y = on.height() / 2;
  int first = 0;
  while (first < on.width() &&
         contrastRatio(on.pixelColor(first, y), off.pixelColor(first, y)) < 1.5)
    ++first;
  ASSERT_LT(first, on.width() / 2) << "no ring";
  const QColor line = on.pixelColor(first + 1, y);
  EXPECT_GE(contrastRatio(line, on.pixelColor(std::max(first - 2, 0), y)), 3.0);
  EXPECT_GE(contrastRatio(line, on.pixelColor(first + 3, y)), 3.0);
}

/// Brings the one animation that runs in `owner` to a third of its way.
inline void advanceFade(const QObject& owner) {
  int running = 0;
  for (auto* animation : owner.findChildren<QVariantAnimation*>()) {
    if (animation->state() != QAbstractAnimation::Running) continue;
    animation->setCurrentTime(animation->duration() / 3);
    ++running;
  }
  ASSERT_EQ(running, 1);
}

/// A card that is half faded in shows nothing of the shadow that lies around it.
inline void expectNoShadowInside(const QImage& picture, const QRect& card) {
  const QColor inside = picture.pixelColor(card.left() + 22, card.bottom() - 4);
  for (const QPoint corner : {card.topLeft() + QPoint(6, 6), card.topRight() + QPoint(-6, 6),
                              card.bottomLeft() + QPoint(6, -6), card.bottomRight() - QPoint(6, 6),
                              QPoint(card.left() + 2, card.center().y())}) {
    EXPECT_NEAR(picture.pixelColor(corner).lightness(), inside.lightness(), 2)
        << corner.x() << "," << corner.y();
  }
}

}  // namespace kifo::testing
