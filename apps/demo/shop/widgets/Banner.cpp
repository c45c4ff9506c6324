#include "apps/demo/shop/widgets/Banner.h"

#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

#include "apps/demo/shop/widgets/AdaptiveRow.h"
#include "apps/demo/shop/widgets/PillButton.h"
#include "apps/demo/shop/widgets/Theme.h"

namespace kifo::shop {
namespace {

QLabel* label(const QString& text, const QFont& font, const QColor& color) {
  auto* made = new QLabel(text);
  made->setFont(font);
  made->setWordWrap(true);
  QPalette palette;
  palette.setColor(QPalette::WindowText, color);
  made->setPalette(palette);
  return made;
}

/// The evening room in the middle of `area`; its wall and floor go on beside the picture.
void paintRoom(QPainter& painter, const QRectF& area) {
  static const QPixmap room(QStringLiteral(":/images/room-evening.png"));
  constexpr double floor = 0.22;  // Of the picture's height.
  painter.fillRect(area.adjusted(0, area.height() * (1 - floor), 0, 0), QColor(0x6E, 0x54, 0x4B));
  const double width = area.height() * room.width() / room.height();
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawPixmap(QRectF(area.center().x() - width / 2, area.top(), width, area.height()), room,
                     room.rect());
}

}  // namespace

Banner::Banner(QWidget* parent) : QWidget(parent) {
  setMinimumHeight(300);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(48, 36, 40, 32);
  column->setSpacing(6);
  column->addStretch();
  column->addWidget(label(tr("Autumn, indoors"), theme::display(40), Qt::white));
  column->addWidget(label(tr("Lamps lit early, long books, and a chair that keeps you."),
                          theme::text(16), QColor(255, 255, 255, 215)));
  auto* buttons = new AdaptiveRow(420, 10);
  buttons->box()->setContentsMargins(0, 14, 0, 0);
  auto* offer = new PillButton(tr("See the autumn offer"));
  auto* room = new PillButton(tr("Look around a room"), PillButton::Look::outlined);
  room->setOnDark(true);
  buttons->box()->addWidget(offer);
  buttons->box()->addWidget(room);
  buttons->box()->addStretch();
  column->addWidget(buttons);
  column->addStretch();
  connect(offer, &QPushButton::clicked, this, &Banner::offerWanted);
  connect(room, &QPushButton::clicked, this, &Banner::roomWanted);
}

void Banner::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF card = QRectF(rect()).adjusted(theme::kShadow, theme::kShadow, -theme::kShadow, -4);
  QPainterPath shape;
  shape.addRoundedRect(card, theme::kRadius, theme::kRadius);
  painter.setClipPath(shape);
  // The room's middle stands right of the headline.
  const double shift = std::max(0.0, card.width() - 420) * 0.68;
  painter.fillRect(card, QColor(0x4A, 0x53, 0x72));
  paintRoom(painter, card.adjusted(shift, 0, 0, 0));
  QLinearGradient shade(card.topLeft(), card.topRight());
  shade.setColorAt(0, QColor(0x2A, 0x33, 0x4D, 250));
  shade.setColorAt(0.4, QColor(0x2A, 0x33, 0x4D, 235));
  // A narrow banner has its words over the whole picture.
  shade.setColorAt(0.85, QColor(0x2A, 0x33, 0x4D, card.width() < 560 ? 190 : 0));
  painter.fillRect(card, shade);
}

}  // namespace kifo::shop
