#include "apps/demo/shop/ActivityPanel.h"

#include <QPainter>
#include <QTime>

#include "apps/demo/shop/widgets/Theme.h"

namespace kifo::shop {
namespace {

constexpr std::size_t kMostLines = 40;
constexpr int kLineHeight = 52;

/// Answers are the most prominent, then campaigns, then the other events.
QColor dotFor(const QString& name) {
  if (name == QLatin1String("InAppMessageResponse")) return theme::kAccent;
  if (name == QLatin1String("in_app_opened")) return QColor(0xE3, 0x9A, 0x2B);
  return theme::kGreen.lighter(150);
}

void drawElided(QPainter& painter, const QRectF& place, const QString& text) {
  const auto width = static_cast<int>(place.width());
  painter.drawText(place, Qt::AlignVCenter,
                   painter.fontMetrics().elidedText(text, Qt::ElideRight, width));
}

}  // namespace

ActivityPanel::ActivityPanel(QWidget* parent) : QWidget(parent) {
  setFixedWidth(270);
  setAccessibleName(tr("What the server receives"));
}

void ActivityPanel::add(const QString& name, const QString& detail) {
  lines_.push_front({name, detail, QTime::currentTime().toString(QStringLiteral("HH:mm:ss"))});
  if (lines_.size() > kMostLines) lines_.pop_back();
  update();
}

void ActivityPanel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect(), theme::kCard);
  painter.fillRect(QRectF(0, 0, 1, height()), theme::kLine);
  painter.setPen(theme::kInk);
  painter.setFont(theme::text(15, QFont::DemiBold));
  painter.drawText(QRectF(22, 16, width() - 40, 26), Qt::AlignVCenter,
                   tr("What the server receives"));
  double top = 54;
  for (const Line& line : lines_) {
    if (top > height()) break;
    paintLine(painter, line, top);
    top += kLineHeight;
  }
}

void ActivityPanel::paintLine(QPainter& painter, const Line& line, double top) const {
  painter.setPen(Qt::NoPen);
  painter.setBrush(dotFor(line.name));
  painter.drawEllipse(QPointF(27, top + 12), 5, 5);
  const QRectF first(44, top, width() - 62, 24);
  const QRectF second = first.translated(0, 20);
  painter.setPen(theme::kInk);
  painter.setFont(theme::text(14, QFont::Medium));
  drawElided(painter, first, line.name);
  painter.setPen(theme::kMuted);
  painter.setFont(theme::text(12));
  painter.drawText(second, Qt::AlignRight | Qt::AlignVCenter, line.time);
  drawElided(painter, second.adjusted(0, 0, -60, 0), line.detail);
}

}  // namespace kifo::shop
