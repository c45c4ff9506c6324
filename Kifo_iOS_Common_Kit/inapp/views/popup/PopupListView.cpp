#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupListView.h"

#include <algorithm>
#include <utility>

namespace kifo {

PopupListView::PopupListView(const PopupTheme& theme, RovingFocus::Stops stops, double cellHeight,
                             QWidget* parent)
    : PopupScrollArea(theme, parent),
      roving_(new RovingFocus(stops, this)),
      cellHeight_(static_cast<int>(cellHeight)) {
  setWidget(new QWidget);
  widget()->setAutoFillBackground(false);
}

void PopupListView::add(Row row) {
  roving_->add(row.control);
  rows_.push_back(std::move(row));
}

int PopupListView::rowHeight(const Row& row, int width) const {
  return std::max(cellHeight_, row.heightFor(width));
}

int PopupListView::contentHeightFor(int width) const {
  int height = 0;
  for (const Row& row : rows_) height += rowHeight(row, width);
  return height;
}

void PopupListView::resizeEvent(QResizeEvent* event) {
  const int across = width();
  int y = 0;
  for (const Row& row : rows_) {
    const int height = rowHeight(row, across);
    row.cell->setGeometry(0, y, across, height);
    y += height;
  }
  widget()->resize(across, y);
  PopupScrollArea::resizeEvent(event);
}

}  // namespace kifo
