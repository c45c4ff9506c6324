#include "Kifo_iOS_Common_Kit/inapp/views/shared/Overlay.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QScopedValueRollback>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/FocusOrder.h"

namespace kifo {

Overlay::Overlay(QWidget* host, Qt::WindowFlags type) : QWidget(host) {
  setAttribute(Qt::WA_NoMousePropagation);
  setAcceptDrops(true);  // And refuses them, so that the window behind gets none.
  setCursor(Qt::ArrowCursor);
  hide();
  if (host) {
    host->installEventFilter(this);
  } else {
    setWindowFlags(type | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
  }
  connect(qApp, &QApplication::focusChanged, this, &Overlay::focusChanged);
}

/// The widget's own destructor moves the focus, of which what is destroyed by then must not hear.
Overlay::~Overlay() {
  if (qApp) qApp->disconnect(this);
}

void Overlay::setDimming(double alpha) {
  dimming_ = alpha;
  update();
}

bool Overlay::takesKey(int /*key*/) const {
  return true;
}

void Overlay::coverHost() {
  if (parentWidget() && !isWindow()) setGeometry(parentWidget()->rect());
}

bool Overlay::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::ShortcutOverride:
      if (!takesKey(static_cast<QKeyEvent*>(event)->key())) break;
      event->accept();
      return true;
    case QEvent::Resize:
    case QEvent::LayoutDirectionChange:
      place();
      break;
    default:
      break;
  }
  return QWidget::event(event);
}

bool Overlay::eventFilter(QObject* watched, QEvent* event) {
  if (watched == parentWidget() && event->type() == QEvent::Resize && isVisible()) coverHost();
  return QWidget::eventFilter(watched, event);
}

void Overlay::paintEvent(QPaintEvent* /*event*/) {
  QPainter(this).fillRect(rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(dimming_)));
}

// The focus.

bool Overlay::focusNextPrevChild(bool next) {
  stepFocus(next);
  return true;
}

void Overlay::takeFocus(QWidget* first) {
  const QScopedValueRollback rollback(movesFocus_, true);
  if (!holdsFocus_) focusBefore_ = window()->focusWidget();
  if (focusBefore_ && isInside(focusBefore_)) focusBefore_ = nullptr;
  holdsFocus_ = true;
  focusLast_ = first;
  first->setFocus(Qt::ActiveWindowFocusReason);
}

void Overlay::giveFocusBack() {
  if (!holdsFocus_) return;
  holdsFocus_ = false;
  passFocusOn();
  QWidget* now = window()->focusWidget();
  if (now && !isInside(now)) return;
  const bool wanted = focusBefore_ && focusBefore_->isVisible() && focusBefore_->isEnabled();
  if (wanted && focusBefore_->window() == window()) {
    focusBefore_->setFocus(Qt::ActiveWindowFocusReason);
  } else if (now) {
    now->clearFocus();  // Qt would hand it on to whatever comes next
  }
}

/// Overlays that took the focus from us give it back to whom we took it from.
void Overlay::passFocusOn() {
  if (!parentWidget()) return;
  for (Overlay* other : parentWidget()->findChildren<Overlay*>()) {
    if (other == this || !other->focusBefore_ || !isInside(other->focusBefore_)) continue;
    other->focusBefore_ = focusBefore_;
  }
}

bool Overlay::isInside(const QWidget* widget) const {
  return widget == this || isAncestorOf(widget);
}

bool Overlay::isAbove(const QWidget* widget) const {
  const QWidget* host = parentWidget();
  while (widget && widget->parentWidget() != host) widget = widget->parentWidget();
  if (!widget || !host) return false;
  const QObjectList& order = host->children();
  return order.indexOf(widget) > order.indexOf(this);
}

void Overlay::focusChanged(QWidget* /*before*/, QWidget* now) {
  if (!holdsFocus_ || !now || now->window() != window() || !isVisible()) return;
  if (isInside(now)) {
    const bool byUser = !movesFocus_ && now != focusLast_;
    focusLast_ = now;
    focusArrived(now, byUser);
  } else if (!isAbove(now)) {
    const QScopedValueRollback rollback(movesFocus_, true);
    (focusLast_ && isInside(focusLast_) ? focusLast_.data() : this)->setFocus(Qt::OtherFocusReason);
  }
}

bool Overlay::isFocusStop(const QWidget* widget) const {
  return (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isEnabled() &&
         widget->isVisibleTo(this) && !widget->focusProxy();
}

QList<QWidget*> Overlay::focusStops() const {
  QList<QWidget*> found = findChildren<QWidget*>();
  found.removeIf([this](const QWidget* widget) { return !isFocusStop(widget); });
  return found;
}

void Overlay::stepFocus(bool forwards) {
  const QList<QWidget*> all = focusStops();
  if (all.isEmpty()) return;
  const auto here = all.indexOf(window()->focusWidget());
  all[nextStop(here, all.size(), forwards)]->setFocus(forwards ? Qt::TabFocusReason
                                                               : Qt::BacktabFocusReason);
}

}  // namespace kifo
