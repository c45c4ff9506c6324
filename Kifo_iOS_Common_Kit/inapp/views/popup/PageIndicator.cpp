#include "Kifo_iOS_Common_Kit/inapp/views/popup/PageIndicator.h"

#include <QPainter>
#include <QStyle>

namespace kifo {
namespace {

constexpr double kDot = 6;
constexpr double kPitch = 14;  ///< From one dot's middle to the next one's.

}  // namespace

PageIndicator::PageIndicator(const PopupTheme& theme, QWidget* parent)
    : QWidget(parent), theme_(theme) {
  nameIt();
}

void PageIndicator::setNumberOfPages(int pages) {
  numberOfPages_ = pages;
  nameIt();
}

void PageIndicator::setCurrentPage(int page) {
  currentPage_ = page;
  nameIt();
}

void PageIndicator::nameIt() {
  setAccessibleName(theme_.options.texts.page.arg(currentPage_ + 1).arg(numberOfPages_));
  update();
}

void PageIndicator::paintDots(QPainter& painter) const {
  const double used = (numberOfPages_ - 1) * kPitch;
  const bool mirrored = layoutDirection() == Qt::RightToLeft;
  for (int page = 0; page < numberOfPages_; ++page) {
    const int place = mirrored ? numberOfPages_ - 1 - page : page;
    const QPointF middle(width() / 2.0 - used / 2 + place * kPitch, height() / 2.0);
    painter.setBrush(page == currentPage_ ? theme_.accent : theme_.shade(0.28));
    const double radius = page == currentPage_ ? kDot / 2 + 1 : kDot / 2;
    painter.drawEllipse(middle, radius, radius);
  }
}

void PageIndicator::paintWay(QPainter& painter) const {
  const QRectF way(8, height() / 2.0 - 2, width() - 16.0, 4);
  painter.setBrush(theme_.shade(0.18));
  painter.drawRoundedRect(way, 2, 2);
  const double piece = qMax(way.width() / numberOfPages_, 16.0);
  double along = (way.width() - piece) * currentPage_ / (numberOfPages_ - 1);
  if (layoutDirection() == Qt::RightToLeft) along = way.width() - piece - along;
  painter.setBrush(theme_.accent);
  painter.drawRoundedRect(QRectF(way.x() + along, way.y(), piece, 4), 2, 2);
}

void PageIndicator::paintEvent(QPaintEvent*) {
  if (numberOfPages_ < 2) return;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  if (numberOfPages_ * kPitch <= width())
    paintDots(painter);
  else
    paintWay(painter);
}

}  // namespace kifo
