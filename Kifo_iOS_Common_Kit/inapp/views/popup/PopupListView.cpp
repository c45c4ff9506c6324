#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupListView.h"

#include <algorithm>
#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoPopupCell.h"

namespace kifo {
namespace {

constexpr int kBeside = 4;  ///< Between the rows and the indicator.

}  // namespace

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

int PopupListView::rowHeight(const Row& row, int width) const {
  return std::max(cellHeight_, row.heightFor(width));
}

int PopupListView::contentHeightFor(int width) const {
  int height = 0;
  for (const Row& row : rows_) height += rowHeight(row, width);
  return height;
}

void PopupListView::moveToFoot(int foot) {
  atFoot_ = true;
  move(x(), std::max(foot + KifoPopupCell::surfaceInset - height(), y()));
  placeRows();
}

void PopupListView::placeRows() {
  const int needed = contentHeightFor(width());
  // A list that scrolls leaves room for its indicator beside the rows.
  const bool scrolls = needed > height();
  const int across = width() - (scrolls ? ScrollIndicator::thickness + kBeside : 0);
  const int start = layoutDirection() == Qt::RightToLeft ? width() - across : 0;
  int y = atFoot_ ? std::max(height() - needed, 0) : 0;
  for (const Row& row : rows_) {
    const int height = rowHeight(row, across);
    row.cell->setGeometry(start, y, across, height);
    y += height;
  }
  widget()->resize(width(), y);
}

void PopupListView::resizeEvent(QResizeEvent* event) {
  placeRows();
  PopupScrollArea::resizeEvent(event);
}

}  // namespace kifo
