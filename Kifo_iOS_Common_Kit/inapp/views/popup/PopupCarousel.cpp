#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupCarousel.h"

#include <algorithm>
#include <cmath>

#include <QKeyEvent>
#include <QMouseEvent>

#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageLoader.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoImageCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupControl.h"

namespace kifo {
namespace {

constexpr double kSwipe = 0.2;         ///< Of the width, to turn a page.
constexpr double kSwipeThreshold = 8;  ///< Logical pixels before a press counts as a swipe.

class FocusMark : public QWidget {
 public:
  FocusMark(const PopupTheme& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintFocusRing(painter, rect(), 8, theme_.panel, theme_.accent);
  }

 private:
  const PopupTheme& theme_;
};

}  // namespace

PopupCarousel::PopupCarousel(const PopupTheme& theme, QWidget* parent)
    : QWidget(parent), theme_(theme), focusMark_(new FocusMark(theme_, this)) {
  setFocusPolicy(Qt::StrongFocus);
  slide_.setEasingCurve(QEasingCurve::InOutCubic);
  connect(&slide_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { moveTo(value.toDouble()); });
}

void PopupCarousel::setImages(std::vector<std::string> urls, std::shared_ptr<ImageLoader> loader) {
  urls_ = std::move(urls);
  loader_ = std::move(loader);
  nameIt();
  moveTo(0);
}

KifoImageCollectionViewCell* PopupCarousel::cellForItem(int row) const {
  const auto found = cells_.find(row);
  return found == cells_.end() ? nullptr : found->second;
}

void PopupCarousel::scrollToItem(int row, int, ScrollPosition, bool animated) {
  row = std::clamp(row, 0, std::max(numberOfItems() - 1, 0));
  currentPage_ = row;
  nameIt();
  slide_.stop();
  const int duration = animated ? theme_.milliseconds(theme_.options.durations.scroll) : 0;
  if (duration == 0 || !isVisible()) return moveTo(row);
  slide_.setStartValue(offset_);
  slide_.setEndValue(static_cast<double>(row));
  slide_.setDuration(duration);
  slide_.start();
}

void PopupCarousel::nameIt() {
  setAccessibleName(theme_.options.texts.page.arg(currentPage_ + 1).arg(numberOfItems()));
}

void PopupCarousel::moveTo(double offset) {
  offset_ = offset;
  keepCellsAbout(static_cast<int>(std::floor(offset)), static_cast<int>(std::ceil(offset)));
  for (const auto& [row, cell] : cells_) place(row, cell);
}

/// The neighbours of what is seen are there too, so that their pictures are fetched ahead.
void PopupCarousel::keepCellsAbout(int first, int last) {
  first = std::max(first - 1, 0);
  last = std::min(last + 1, numberOfItems() - 1);
  for (auto entry = cells_.begin(); entry != cells_.end();) {
    const bool keep = entry->first >= first && entry->first <= last;
    if (!keep) entry->second->deleteLater();
    entry = keep ? std::next(entry) : cells_.erase(entry);
  }
  for (int row = first; row <= last; ++row) {
    if (cells_.contains(row)) continue;
    auto* cell = new KifoImageCollectionViewCell(theme_, this);
    cell->configure(urls_[static_cast<std::size_t>(row)], *loader_);
    cells_[row] = cell;
    cell->show();
  }
  focusMark_->raise();
}

void PopupCarousel::place(int row, KifoImageCollectionViewCell* cell) {
  const double pages = layoutDirection() == Qt::RightToLeft ? offset_ - row : row - offset_;
  cell->setGeometry(static_cast<int>(std::lround(pages * width())), 0, QWidget::width(), height());
}

void PopupCarousel::resizeEvent(QResizeEvent*) {
  slide_.stop();
  moveTo(currentPage_);
  focusMark_->setGeometry(rect());
}

void PopupCarousel::turnTo(int row) {
  row = std::clamp(row, 0, std::max(numberOfItems() - 1, 0));
  scrollToItem(row, 0, ScrollPosition::centeredHorizontally, true);
  Q_EMIT pageTurned(row);
}

void PopupCarousel::keyPressEvent(QKeyEvent* event) {
  const int forwards = layoutDirection() == Qt::RightToLeft ? -1 : 1;
  if (event->key() == Qt::Key_Right) return turnTo(currentPage_ + forwards);
  if (event->key() == Qt::Key_Left) return turnTo(currentPage_ - forwards);
  event->ignore();
}

void PopupCarousel::mousePressEvent(QMouseEvent* event) {
  swiping_ = false;
  swipeStart_ = event->position().x();
  swipeOffset_ = offset_;
  event->ignore();  // a press without a swipe is one of the popup's body
}

void PopupCarousel::mouseMoveEvent(QMouseEvent* event) {
  const double travelled = event->position().x() - swipeStart_;
  swiping_ = swiping_ || (pagingEnabled_ && std::abs(travelled) > kSwipeThreshold);
  if (!swiping_) return event->ignore();
  slide_.stop();
  const double pages = travelled / std::max(width(), 1.0);
  const double wanted = swipeOffset_ + (layoutDirection() == Qt::RightToLeft ? pages : -pages);
  moveTo(std::clamp(wanted, 0.0, std::max(numberOfItems() - 1, 0) * 1.0));
}

void PopupCarousel::mouseReleaseEvent(QMouseEvent* event) {
  if (!std::exchange(swiping_, false)) return event->ignore();
  const double turned = offset_ - currentPage_;
  const int way = turned > kSwipe ? 1 : turned < -kSwipe ? -1 : 0;
  turnTo(currentPage_ + way);
}

void PopupCarousel::focusInEvent(QFocusEvent* event) {
  focusMark_->setVisible(event->reason() != Qt::MouseFocusReason);
}

void PopupCarousel::focusOutEvent(QFocusEvent*) {
  focusMark_->hide();
}

}  // namespace kifo
