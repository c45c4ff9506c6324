#include "Kifo_iOS_Common_Kit/inapp/quick/QuickOverlay.h"

#include <algorithm>

#include <QCursor>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QQuickWindow>
#include <QSGRectangleNode>
#include <QScopedValueRollback>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/FocusOrder.h"

namespace kifo {
namespace {

/// Above the layer in which Qt Quick Controls keep their popups and drawers.
constexpr double kLowest = 2'000'000;

QList<QuickOverlay*> overlaysOf(const QQuickItem* content) {
  return content->findChildren<QuickOverlay*>(Qt::FindDirectChildrenOnly);
}

/// The item that would have the focus if the window were active.
QQuickItem* focusedIn(const QQuickWindow& window) {
  QQuickItem* item = window.contentItem();
  while (item && item->isFocusScope() && item->scopedFocusItem()) item = item->scopedFocusItem();
  return item == window.contentItem() ? nullptr : item;
}

bool isInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TouchCancel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
      return true;
    default:
      return false;
  }
}

void collectStops(const QQuickItem* item, QList<QQuickItem*>& stops) {
  for (QQuickItem* child : item->childItems()) {
    if (!child->isVisible() || !child->isEnabled()) continue;
    if (child->activeFocusOnTab() || child->property("focusStop").toBool()) stops.append(child);
    collectStops(child, stops);
  }
}

}  // namespace

QuickOverlay::QuickOverlay(QQuickItem* parent) : QQuickItem(parent) {
  setFlags(ItemIsFocusScope | ItemHasContents);
  setAcceptedMouseButtons(Qt::AllButtons);
  setAcceptHoverEvents(true);
  setAcceptTouchEvents(true);
  setKeepMouseGrab(true);  // no handler of the host's takes a drag over
  setKeepTouchGrab(true);
  setCursor(Qt::ArrowCursor);
}

/// The item's own destructor takes the focus away and tells the window, which must not reach what
/// is destroyed by then.
QuickOverlay::~QuickOverlay() {
  if (window()) window()->disconnect(this);
}

void QuickOverlay::cover(QQuickWindow& window) {
  QQuickItem* content = window.contentItem();
  double highest = kLowest;
  for (const QuickOverlay* other : overlaysOf(content)) highest = std::max(highest, other->z());
  setParent(content);
  setParentItem(content);
  setZ(highest + 1);
  const auto follow = [this, content] {
    setSize(content->size());
    place();
    update();
  };
  connect(content, &QQuickItem::widthChanged, this, follow);
  connect(content, &QQuickItem::heightChanged, this, follow);
  connect(&window, &QQuickWindow::activeFocusItemChanged, this, &QuickOverlay::focusMoved);
  connect(qGuiApp, &QGuiApplication::layoutDirectionChanged, this, &QuickOverlay::remake);
  const QInputMethod* method = QGuiApplication::inputMethod();
  const auto followKeyboard = [this, method] {
    setKeyboard(method->isVisible() ? method->keyboardRectangle() : QRectF());
  };
  connect(method, &QInputMethod::keyboardRectangleChanged, this, followKeyboard);
  connect(method, &QInputMethod::visibleChanged, this, followKeyboard);
  followKeyboard();
  follow();
  // Before any filter of the window, by which Qt Quick Controls close and shield their popups.
  QCoreApplication::instance()->installEventFilter(this);
}

void QuickOverlay::setDimming(double alpha) {
  if (alpha == dimming_) return;
  dimming_ = alpha;
  update();
  Q_EMIT dimmingChanged();
}

bool QuickOverlay::takesKey(int /*key*/) const {
  return true;
}

void QuickOverlay::focusArrived(QQuickItem* /*item*/, bool /*byUser*/) {}

void QuickOverlay::setKeyboard(const QRectF& keyboard) {
  keyboard_ = keyboard;
  place();
  update();
}

bool QuickOverlay::contains(const QPointF& point) const {
  return QQuickItem::contains(point) && !keyboard_.contains(point);
}

QSGNode* QuickOverlay::updatePaintNode(QSGNode* node, UpdatePaintNodeData* /*data*/) {
  auto* rectangle = static_cast<QSGRectangleNode*>(node);
  if (!rectangle) rectangle = window()->createRectangleNode();
  QRectF dimmed = boundingRect();
  if (!keyboard_.isEmpty()) dimmed.setBottom(keyboard_.top());
  rectangle->setRect(dimmed);
  rectangle->setColor(QColor::fromRgbF(0, 0, 0, static_cast<float>(dimming_)));
  return rectangle;
}

// Input.

bool QuickOverlay::eventFilter(QObject* watched, QEvent* event) {
  const bool isApplications = watched == QCoreApplication::instance();
  if (isApplications && event->type() == QEvent::ApplicationFontChange) remake();
  if (!holdsFocus_ || watched != window() || !isInput(event->type())) return false;
  if (event->type() == QEvent::KeyPress && tab(*static_cast<QKeyEvent*>(event))) return true;
  // The scene's own delivery, past the filters of the window.
  watched->event(event);
  return true;
}

/// Before any item has the key: the scene would take it to an item outside.
bool QuickOverlay::tab(const QKeyEvent& event) {
  const bool isTab = event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab;
  if (!isTab || isAbove(window()->activeFocusItem())) return false;
  stepFocus(event.key() == Qt::Key_Tab && !event.modifiers().testFlag(Qt::ShiftModifier));
  return true;
}

bool QuickOverlay::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride &&
      takesKey(static_cast<QKeyEvent*>(event)->key())) {
    event->accept();
    return true;
  }
  return QQuickItem::event(event);
}

void QuickOverlay::keyPressEvent(QKeyEvent* event) {
  event->accept();
}

void QuickOverlay::keyReleaseEvent(QKeyEvent* event) {
  event->accept();
}
void QuickOverlay::pressed(QPointF /*position*/, QPoint /*global*/) {}
void QuickOverlay::moved(QPoint /*global*/) {}
void QuickOverlay::released() {}

void QuickOverlay::mousePressEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() != Qt::LeftButton) return;
  pressed(event->position(), event->globalPosition().toPoint());
}

void QuickOverlay::mouseMoveEvent(QMouseEvent* event) {
  event->accept();
  if (event->buttons().testFlag(Qt::LeftButton)) moved(event->globalPosition().toPoint());
}

void QuickOverlay::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::LeftButton) released();
}

void QuickOverlay::mouseDoubleClickEvent(QMouseEvent* event) {
  event->accept();
}

void QuickOverlay::wheelEvent(QWheelEvent* event) {
  event->accept();
}
void QuickOverlay::touchEvent(QTouchEvent* event) {
  event->accept();
  if (event->type() == QEvent::TouchCancel) finger_ = -1;
  for (const QEventPoint& point : event->points()) {
    const QPoint global = point.globalPosition().toPoint();
    if (point.state() == QEventPoint::Pressed && finger_ < 0) {
      finger_ = point.id();
      pressed(point.position(), global);
    } else if (point.id() == finger_ && point.state() == QEventPoint::Updated) {
      moved(global);
    } else if (point.id() == finger_ && point.state() == QEventPoint::Released) {
      finger_ = -1;
      return released();
    }
  }
}

void QuickOverlay::hoverEnterEvent(QHoverEvent* event) {
  event->accept();
}
void QuickOverlay::hoverMoveEvent(QHoverEvent* event) {
  event->accept();
}

// The focus.

void QuickOverlay::takeFocus(QQuickItem* first) {
  const QScopedValueRollback rollback(movesFocus_, true);
  if (!holdsFocus_) focusBefore_ = focusedIn(*window());
  if (focusBefore_ && isInside(focusBefore_)) focusBefore_ = nullptr;
  holdsFocus_ = true;
  focusLast_ = first;
  first->forceActiveFocus(Qt::ActiveWindowFocusReason);
}

void QuickOverlay::giveFocusBack() {
  if (!holdsFocus_) return;
  holdsFocus_ = false;
  setEnabled(false);
  passFocusOn();
  const QQuickItem* now = focusedIn(*window());
  if (now && !isInside(now)) return;
  const bool wanted = focusBefore_ && focusBefore_->isVisible() && focusBefore_->isEnabled() &&
                      focusBefore_->window() == window();
  if (wanted) {
    focusBefore_->forceActiveFocus(Qt::ActiveWindowFocusReason);
  } else {
    setFocus(false);
  }
}

/// Overlays that took the focus from us give it back to whom we took it from.
void QuickOverlay::passFocusOn() {
  for (QuickOverlay* other : overlaysOf(window()->contentItem())) {
    if (other == this || !other->focusBefore_ || !isInside(other->focusBefore_)) continue;
    other->focusBefore_ = focusBefore_;
  }
}

bool QuickOverlay::isInside(const QQuickItem* item) const {
  return item == this || isAncestorOf(item);
}

bool QuickOverlay::isAbove(const QQuickItem* item) const {
  for (; item; item = item->parentItem()) {
    const auto* other = qobject_cast<const QuickOverlay*>(item);
    if (other) return other->z() > z();
  }
  return false;
}

void QuickOverlay::focusMoved() {
  QQuickItem* now = window() ? window()->activeFocusItem() : nullptr;
  if (!holdsFocus_ || !now || now == window()->contentItem() || !isVisible()) return;
  if (isInside(now)) {
    const bool byUser = !movesFocus_ && now != focusLast_;
    focusLast_ = now;
    focusArrived(now, byUser);
  } else if (!isAbove(now)) {
    const QScopedValueRollback rollback(movesFocus_, true);
    QQuickItem* last = focusLast_ && isInside(focusLast_) ? focusLast_.data() : this;
    last->forceActiveFocus(Qt::OtherFocusReason);
  }
}

QList<QQuickItem*> QuickOverlay::focusStops() const {
  QList<QQuickItem*> stops;
  collectStops(this, stops);
  return stops;
}

void QuickOverlay::stepFocus(bool forwards) {
  const QList<QQuickItem*> all = focusStops();
  if (all.isEmpty()) return;
  const auto here = all.indexOf(window()->activeFocusItem());
  all[nextStop(here, all.size(), forwards)]->forceActiveFocus(forwards ? Qt::TabFocusReason
                                                                       : Qt::BacktabFocusReason);
}

}  // namespace kifo
