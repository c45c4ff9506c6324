#pragma once

#include <vector>

#include <QPointF>
#include <QPointer>
#include <QTimer>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanTracker.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopUpOptions.h"

class QQuickItem;

namespace kifo {

class QuickScroll;

/// Scrolls the areas of a popup by a press that none of its controls took and by the keys, and
/// shows now and then what can be scrolled until something was.
///
/// **Threading:** UI thread only. **Ownership:** belongs to its popup, which outlives it; holds the
/// areas weakly.
class QuickScrolling {
 public:
  QuickScrolling(const QQuickItem& popup, const PopUpDurations& durations);

  void add(QuickScroll* area);
  /// Begins to show what can be scrolled.
  void start();

  // A press; `position` is in the popup, `global` on the screen.
  void press(QPointF position, QPoint global);
  void move(QPoint global);
  /// Whether there was a press and it did not become a drag.
  bool release();

  /// The arrows up and down and the page keys, which scroll a tall panel.
  static bool isKey(int key);
  /// False when the panel could not move.
  bool scrollByKey(int key);

 private:
  void flash();
  [[nodiscard]] QuickScroll* areaAt(QPointF position) const;

  const QQuickItem& popup_;
  const PopUpDurations& durations_;
  std::vector<QPointer<QuickScroll>> areas_;
  QTimer flashTimer_;
  PanTracker pan_;
  QPointer<QuickScroll> touched_;  ///< What the press would scroll.
  bool pressing_ = false;
};

}  // namespace kifo
