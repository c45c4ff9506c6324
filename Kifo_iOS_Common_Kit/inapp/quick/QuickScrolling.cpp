#include "Kifo_iOS_Common_Kit/inapp/quick/QuickScrolling.h"

#include <algorithm>
#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickScroll.h"

namespace kifo {
namespace {

constexpr int kLineStep = 48;  ///< An arrow key scrolls a tall panel by this much.

}  // namespace

QuickScrolling::QuickScrolling(const QQuickItem& popup, const PopUpDurations& durations)
    : popup_(popup), durations_(durations) {
  QObject::connect(&flashTimer_, &QTimer::timeout, &flashTimer_, [this] { flash(); });
}

void QuickScrolling::add(QuickScroll* area) {
  areas_.emplace_back(area);
}

void QuickScrolling::start() {
  flashTimer_.start(durations_.scrollIndicatorDelay + durations_.scrollIndicatorInterval);
}

void QuickScrolling::flash() {
  flashTimer_.setInterval(durations_.scrollIndicatorInterval);
  for (const auto& area : areas_) {
    if (area && area->contentY() > 1) return flashTimer_.stop();
  }
  for (const auto& area : areas_) {
    if (area) area->flash();
  }
}

/// The innermost area at that place.
QuickScroll* QuickScrolling::areaAt(QPointF position) const {
  QuickScroll* found = nullptr;
  for (const auto& area : areas_) {
    const bool isThere =
        area && area->isVisible() && area->contains(area->mapFromItem(&popup_, position));
    if (isThere && (!found || found->isAncestorOf(area))) found = area;
  }
  return found;
}

void QuickScrolling::press(QPointF position, QPoint global) {
  pressing_ = true;
  touched_ = areaAt(position);
  pan_.press(global);
}

void QuickScrolling::move(QPoint global) {
  const int travelled = pressing_ ? pan_.move(global) : 0;
  if (travelled != 0) scrollAround(touched_, travelled);
}

bool QuickScrolling::release() {
  return std::exchange(pressing_, false) && !pan_.isPanning();
}

bool QuickScrolling::isKey(int key) {
  return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
         key == Qt::Key_PageDown;
}

bool QuickScrolling::scrollByKey(int key) {
  const auto panel = std::ranges::find_if(
      areas_, [](const auto& area) { return area && area->part() == QuickPiece::PanelScroll; });
  if (!isKey(key) || panel == areas_.end()) return false;
  const int page = static_cast<int>((*panel)->height()) * 4 / 5;
  const int step = key == Qt::Key_PageUp || key == Qt::Key_PageDown ? page : kLineStep;
  const bool up = key == Qt::Key_Up || key == Qt::Key_PageUp;
  return (*panel)->scrollBy(up ? -step : step);
}

}  // namespace kifo
