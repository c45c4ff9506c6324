#include "apps/demo/shop/widgets/ScrollPage.h"

#include <QPainter>

#include "apps/demo/shop/widgets/Theme.h"

namespace kifo::shop {

void ThinScrollBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.fillRect(rect(), theme::kPaper);
  if (maximum() <= minimum()) return;
  painter.setRenderHint(QPainter::Antialiasing);
  const double whole = maximum() - minimum() + pageStep();
  const double length = std::max(24.0, height() * pageStep() / whole);
  const double top = (height() - length) * (value() - minimum()) / (maximum() - minimum());
  painter.setPen(Qt::NoPen);
  painter.setBrush(isSliderDown() || underMouse() ? theme::kMuted : QColor(0xCF, 0xC8, 0xBD));
  painter.drawRoundedRect(QRectF(2, top + 2, width() - 4, length - 4), 3, 3);
}

ScrollPage::ScrollPage(QWidget* parent) : QScrollArea(parent) {
  auto* content = new QWidget;
  column_ = new QVBoxLayout(content);
  column_->setContentsMargins(20, 16, 20, 20);
  column_->setSpacing(6);
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBar(new ThinScrollBar);
  setFocusPolicy(Qt::NoFocus);
  setWidget(content);
}

}  // namespace kifo::shop
