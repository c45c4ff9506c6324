#include "apps/demo/shop/widgets/NavigationBar.h"

#include <QHBoxLayout>
#include <QPainter>

#include "apps/demo/shop/widgets/Theme.h"

namespace kifo::shop {
namespace {

constexpr int kSide = 12;
constexpr int kNameWidth = 132;
constexpr int kLeft = 32;
constexpr int kBadge = 22;

}  // namespace

NavigationButton::NavigationButton(const QString& text, QWidget* parent)
    : QPushButton(text, parent) {
  setFont(theme::text(15, QFont::DemiBold));
  setCursor(Qt::PointingHandCursor);
  setCheckable(true);
  setFocusPolicy(Qt::TabFocus);
  setAttribute(Qt::WA_Hover);
}

void NavigationButton::setBadge(int number) {
  badge_ = number;
  setAccessibleDescription(number > 0 ? QString::number(number) : QString());
  updateGeometry();
  update();
}

QSize NavigationButton::sizeHint() const {
  return {fontMetrics().horizontalAdvance(text()) + 2 * kSide + (badge_ > 0 ? kBadge + 4 : 0), 48};
}

void NavigationButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF word(kSide, 0, fontMetrics().horizontalAdvance(text()), height());
  painter.setPen(isChecked() || underMouse() ? theme::kInk : theme::kMuted);
  painter.drawText(word, Qt::AlignVCenter, text());
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme::kAccent);
  if (isChecked())
    painter.drawRoundedRect(QRectF(word.left(), height() - 9, word.width(), 3), 1.5, 1.5);
  if (badge_ > 0) {
    const QRectF circle(word.right() + 8, (height() - kBadge) / 2.0, kBadge, kBadge);
    painter.drawEllipse(circle);
    painter.setPen(Qt::white);
    painter.setFont(theme::text(12, QFont::Bold));
    painter.drawText(circle, Qt::AlignCenter, QString::number(badge_));
  }
  if (hasFocus())
    theme::paintFocusRing(painter, QRectF(rect()).adjusted(1, 5, -1, -5), 8, theme::kGreen);
}

NavigationBar::NavigationBar(QWidget* parent) : QWidget(parent) {
  setFixedHeight(64);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(kNameWidth, 0, 20, 0);
  row->setSpacing(2);
  row->addStretch();
}

NavigationButton* NavigationBar::add(const QString& text) {
  auto* button = new NavigationButton(text);
  auto* row = static_cast<QHBoxLayout*>(layout());
  row->insertWidget(pages_++, button);
  return button;
}

NavigationButton* NavigationBar::addSwitch(const QString& text) {
  auto* button = new NavigationButton(text);
  static_cast<QHBoxLayout*>(layout())->addWidget(button);
  return button;
}

void NavigationBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect(), theme::kPaper);
  painter.fillRect(QRectF(0, height() - 1, width(), 1), theme::kLine);
  painter.setFont(theme::display(28));
  painter.setPen(theme::kInk);
  painter.drawText(QRectF(kLeft, 0, kNameWidth, height() - 4), Qt::AlignVCenter,
                   QStringLiteral("Nook"));
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme::kAccent);
  painter.drawEllipse(
      QPointF(kLeft + painter.fontMetrics().horizontalAdvance(QStringLiteral("Nook")) + 7,
              height() / 2.0 + 6),
      4, 4);
}

}  // namespace kifo::shop
