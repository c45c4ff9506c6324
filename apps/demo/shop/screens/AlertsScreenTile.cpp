#include "apps/demo/shop/screens/AlertsScreenTile.h"

#include <QPainter>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoPopupStyleKit.h"
#include "apps/demo/shop/widgets/Theme.h"

namespace kifo::shop {
namespace {

constexpr double kDisc = 34;
constexpr double kIcon = 16;
const QColor kDarkTile(0x36, 0x40, 0x5D);

}  // namespace

AlertsScreenTile::AlertsScreenTile(KifoPopupStyle style, const QString& text, QWidget* parent)
    : QPushButton(text, parent), style_(style) {
  setFont(theme::text(15, QFont::DemiBold));
  setCursor(Qt::PointingHandCursor);
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_Hover);
}

void AlertsScreenTile::setOnDark(bool onDark) {
  onDark_ = onDark;
  update();
}

void AlertsScreenTile::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const double lift = isDown() ? 0.0 : underMouse() ? 1.0 : 0.3;
  theme::paintCard(painter, rect(), onDark_ ? kDarkTile : theme::kCard, lift);
  const QRectF card = QRectF(rect()).marginsRemoved(
      {theme::kShadow, theme::kShadow, theme::kShadow, theme::kShadow});
  QRectF disc(card.left() + 14, 0, kDisc, kDisc);
  disc.moveCenter({disc.center().x(), card.center().y()});
  QRectF icon(0, 0, kIcon, kIcon);
  icon.moveCenter(disc.center());
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor::fromRgb(defaultColorInt(style_)));
  painter.drawEllipse(disc);
  KifoPopupStyleKit::draw(painter, icon, style_,
                          style_ == KifoPopupStyle::warning ? theme::kInk : QColor(Qt::white));
  painter.setPen(onDark_ ? QColor(Qt::white) : theme::kInk);
  painter.drawText(card.adjusted(kDisc + 26, 0, -8, 0), Qt::AlignVCenter | Qt::TextWordWrap,
                   text());
  if (hasFocus()) {
    theme::paintFocusRing(painter, card, theme::kRadius,
                          onDark_ ? QColor(Qt::white) : theme::kGreen);
  }
}

}  // namespace kifo::shop
