#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupListView.h"

#include <algorithm>
#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupGeometry.h"

namespace kifo {
PopupListView::PopupListView(const PopupTheme& theme, RovingFocus::Stops stops, double cellHeight,
                             QWidget* parent)
    : PopupScrollArea(theme.options.reducedMotion, parent),
      roving_(new RovingFocus(stops, this)),
      cellHeight_(static_cast<int>(cellHeight)) {
  setColors(theme.panel, theme.ink);
  setWidget(new QWidget);
  widget()->setAutoFillBackground(false);
}

void PopupListView::add(Row row) {
  roving_->add(row.control);
  rows_.push_back(std::move(row));
}

int PopupListView::rowHeight(int row, int width) const {
  return std::max(cellHeight_, rows_[static_cast<std::size_t>(row)].heightFor(width));
}

int PopupListView::contentHeightFor(int width) const {
  return rowsHeight(
      static_cast<int>(rows_.size()),
      [this](int row, int across) { return rowHeight(row, across); }, width);
}

void PopupListView::setAtFoot(bool atFoot) {
  if (atFoot == atFoot_) return;
  atFoot_ = atFoot;
  placeRows();
}

void PopupListView::placeRows() {
  const auto boxes = rowBoxes(
      static_cast<int>(rows_.size()), [this](int row, int width) { return rowHeight(row, width); },
      {0, 0, width(), height()}, atFoot_, layoutDirection() == Qt::RightToLeft);
  for (std::size_t row = 0; row < boxes.size(); ++row) {
    const PopupBox& box = boxes[row];
    rows_[row].cell->setGeometry(box.x, box.y, box.width, box.height);
  }
  widget()->resize(width(), boxes.empty() ? 0 : boxes.back().bottom());
}

void PopupListView::resizeEvent(QResizeEvent* event) {
  placeRows();
  PopupScrollArea::resizeEvent(event);
}

}  // namespace kifo
