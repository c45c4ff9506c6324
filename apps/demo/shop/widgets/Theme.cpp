#include "apps/demo/shop/widgets/Theme.h"

#include <QStringList>

namespace kifo::shop::theme {

QFont text(int pixels, QFont::Weight weight) {
  QFont font;
  font.setFamilies({QStringLiteral("Noto Sans"), font.family()});
  font.setPixelSize(pixels);
  font.setWeight(weight);
  return font;
}

QFont display(int pixels) {
  QFont font;
  font.setFamilies(
      {QStringLiteral("Noto Serif Display"), QStringLiteral("Noto Serif"), font.family()});
  font.setPixelSize(pixels);
  font.setWeight(QFont::DemiBold);
  return font;
}

QPalette palette() {
  QPalette palette;
  palette.setColor(QPalette::Window, kPaper);
  palette.setColor(QPalette::WindowText, kInk);
  palette.setColor(QPalette::Base, kCard);
  palette.setColor(QPalette::Text, kInk);
  palette.setColor(QPalette::Highlight, kGreen);
  return palette;
}

void paintCard(QPainter& painter, const QRectF& bounds, const QColor& fill, double lift) {
  const QRectF card = bounds.adjusted(kShadow, kShadow, -kShadow, -kShadow);
  painter.setPen(Qt::NoPen);
  // Ever wider, ever fainter outlines make a soft shadow without an off-screen pass.
  for (double spread = 1; spread <= kShadow - 3; spread += 1) {
    const double fade = 1 - spread / kShadow;
    painter.setBrush(QColor(70, 50, 30, qRound((5 + 6 * lift) * fade)));
    painter.drawRoundedRect(card.adjusted(-spread, -spread + 3, spread, spread + 2),
                            kRadius + spread, kRadius + spread);
  }
  painter.setBrush(fill);
  painter.drawRoundedRect(card, kRadius, kRadius);
}

void paintFocusRing(QPainter& painter, const QRectF& shape, double radius, const QColor& color) {
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(color, 2));
  painter.drawRoundedRect(shape.adjusted(3, 3, -3, -3), radius - 3, radius - 3);
}

}  // namespace kifo::shop::theme
