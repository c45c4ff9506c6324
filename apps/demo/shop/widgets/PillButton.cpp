#include "apps/demo/shop/widgets/PillButton.h"

#include <QPainter>

#include "apps/demo/shop/widgets/Theme.h"

namespace kifo::shop {

PillButton::PillButton(const QString& text, Look look, QWidget* parent)
    : QPushButton(text, parent), look_(look) {
  setFont(theme::text(15, QFont::DemiBold));
  setCursor(Qt::PointingHandCursor);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_Hover);
}

void PillButton::setOnDark(bool onDark) {
  onDark_ = onDark;
  update();
}

QSize PillButton::sizeHint() const {
  const int sides = look_ == Look::quiet ? 8 : 44;
  return {fontMetrics().horizontalAdvance(text()) + sides, 46};
}

QColor PillButton::fill() const {
  if (!isEnabled()) return onDark_ ? QColor(255, 255, 255, 20) : QColor(0, 0, 0, 18);
  const QColor base = look_ == Look::filled ? theme::kAccent
                      : onDark_             ? QColor(255, 255, 255, 38)
                                : QColor(theme::kInk.red(), theme::kInk.green(), theme::kInk.blue(),
                                         look_ == Look::quiet ? 0 : 8);
  if (isDown()) return look_ == Look::filled ? base.darker(118) : QColor(0, 0, 0, 40);
  if (underMouse()) return look_ == Look::filled ? base.lighter(110) : QColor(0, 0, 0, 22);
  return base;
}

QColor PillButton::ink() const {
  if (!isEnabled()) return onDark_ ? QColor(255, 255, 255, 150) : theme::kMuted;
  if (look_ == Look::filled || onDark_) return Qt::white;
  return look_ == Look::quiet ? theme::kGreen : theme::kInk;
}

void PillButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF pill = QRectF(rect()).adjusted(1, 1, -1, -1);
  painter.setPen(look_ == Look::outlined && isEnabled()
                     ? QPen(onDark_ ? QColor(255, 255, 255, 170) : theme::kInk, 1.4)
                     : QPen(Qt::NoPen));
  painter.setBrush(fill());
  painter.drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);
  painter.setPen(ink());
  painter.drawText(pill, Qt::AlignCenter, text());
  if (hasFocus()) theme::paintFocusRing(painter, pill, pill.height() / 2, ink());
}

}  // namespace kifo::shop
