#include "Kifo_iOS_Common_Kit/inapp/views/popup/PageIndicator.h"

#include <QPainter>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"

namespace kifo {

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

void PageIndicator::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  paintPages(painter, theme_, rect(), numberOfPages_, currentPage_,
             layoutDirection() == Qt::RightToLeft);
}

}  // namespace kifo
