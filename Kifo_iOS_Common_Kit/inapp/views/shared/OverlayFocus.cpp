#include "Kifo_iOS_Common_Kit/inapp/views/shared/OverlayFocus.h"

#include <QApplication>
#include <QScopedValueRollback>

namespace kifo {

OverlayFocus::OverlayFocus(QWidget* overlay) : QObject(overlay), overlay_(overlay) {
  connect(qApp, &QApplication::focusChanged, this,
          [this](QWidget* /*before*/, QWidget* now) { changed(now); });
}

void OverlayFocus::take(QWidget* first) {
  const QScopedValueRollback rollback(moving_, true);
  if (!holding_) before_ = overlay_->window()->focusWidget();
  if (before_ && isInside(before_)) before_ = nullptr;
  holding_ = true;
  last_ = first;
  first->setFocus(Qt::ActiveWindowFocusReason);
}

void OverlayFocus::giveBack() {
  if (!holding_) return;
  holding_ = false;
  bequeath();
  QWidget* now = overlay_->window()->focusWidget();
  if (now && !isInside(now)) return;
  const bool wanted = before_ && before_->isVisible() && before_->isEnabled();
  if (wanted && before_->window() == overlay_->window()) {
    before_->setFocus(Qt::ActiveWindowFocusReason);
  } else if (now) {
    now->clearFocus();  // Qt would hand it on to whatever comes next
  }
}

/// Overlays that took the focus from us give it back to whom we took it from.
void OverlayFocus::bequeath() {
  const QWidget* host = overlay_->parentWidget();
  if (!host) return;
  for (OverlayFocus* other : host->findChildren<OverlayFocus*>()) {
    if (other != this && other->before_ && isInside(other->before_)) other->before_ = before_;
  }
}

bool OverlayFocus::isInside(const QWidget* widget) const {
  return widget == overlay_ || overlay_->isAncestorOf(widget);
}

bool OverlayFocus::isAbove(const QWidget* widget) const {
  const QWidget* host = overlay_->parentWidget();
  while (widget && widget->parentWidget() != host) widget = widget->parentWidget();
  if (!widget || !host) return false;
  const QObjectList& order = host->children();
  return order.indexOf(widget) > order.indexOf(overlay_);
}

void OverlayFocus::changed(QWidget* now) {
  if (!holding_ || !now || now->window() != overlay_->window() || !overlay_->isVisible()) return;
  if (isInside(now)) {
    const bool byUser = !moving_ && now != last_;
    last_ = now;
    Q_EMIT arrived(now, byUser);
  } else if (!isAbove(now)) {
    const QScopedValueRollback rollback(moving_, true);
    (last_ && isInside(last_) ? last_.data() : overlay_)->setFocus(Qt::OtherFocusReason);
  }
}

bool OverlayFocus::isStop(const QWidget* widget) const {
  return (widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isEnabled() &&
         widget->isVisibleTo(overlay_) && !widget->focusProxy();
}

QList<QWidget*> OverlayFocus::stops() const {
  QList<QWidget*> found = overlay_->findChildren<QWidget*>();
  found.removeIf([this](const QWidget* widget) { return !isStop(widget); });
  return found;
}

bool OverlayFocus::step(bool forwards) {
  const QList<QWidget*> all = stops();
  if (all.isEmpty()) return true;
  const auto here = all.indexOf(overlay_->window()->focusWidget());
  const auto start = here < 0 && !forwards ? all.size() : here;
  const auto next = (start + (forwards ? 1 : -1) + all.size()) % all.size();
  all[next]->setFocus(forwards ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  return true;
}

}  // namespace kifo
