#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupFocus.h"

#include <QApplication>
#include <QScopedValueRollback>
#include <algorithm>

#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupCard.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupOverlay.h"

namespace kifo {

KifoPopupFocus::KifoPopupFocus(QWidget* overlay, const KifoPopupCard* card)
    : QObject(overlay), overlay_(overlay), card_(card) {
  connect(qApp, &QApplication::focusChanged, this,
          [this](QWidget* /*old*/, QWidget* now) { changed(now); });
}

void KifoPopupFocus::take(QWidget* first) {
  const QScopedValueRollback rollback(moving_, true);
  before_ = overlay_->window()->focusWidget();
  if (before_ == overlay_ || (before_ != nullptr && isInside(before_))) before_ = nullptr;
  holding_ = true;
  last_ = first;
  first->setFocus(Qt::ActiveWindowFocusReason);
}

void KifoPopupFocus::giveBack() {
  if (!holding_) return;
  holding_ = false;
  bequeath();
  QWidget* now = overlay_->window()->focusWidget();
  if (now != nullptr && !isInside(now)) return;
  if (before_ != nullptr && before_->isVisible() && before_->isEnabled() &&
      overlay_->window()->isAncestorOf(before_)) {
    before_->setFocus(Qt::ActiveWindowFocusReason);
  } else if (now != nullptr) {
    // Qt would hand it on to whatever comes next.
    now->clearFocus();
  }
}

void KifoPopupFocus::bequeath() {
  if (overlay_->parentWidget() == nullptr) return;
  const auto overlays =
      overlay_->parentWidget()->findChildren<KifoPopupOverlay*>(Qt::FindDirectChildrenOnly);
  for (KifoPopupOverlay* other : overlays) {
    KifoPopupFocus& theirs = other->focus();
    if (&theirs != this && theirs.before_ != nullptr && isInside(theirs.before_)) {
      theirs.before_ = before_;
    }
  }
}

bool KifoPopupFocus::isInside(const QWidget* widget) const {
  return widget == overlay_ || overlay_->isAncestorOf(widget);
}

bool KifoPopupFocus::isAbove(const QWidget* widget) const {
  const QWidget* host = overlay_->parentWidget();
  while (widget != nullptr && widget->parentWidget() != host) widget = widget->parentWidget();
  if (widget == nullptr || host == nullptr) return false;
  const QObjectList& order = host->children();
  return order.indexOf(widget) > order.indexOf(overlay_);
}

void KifoPopupFocus::changed(QWidget* now) {
  if (!holding_ || now == nullptr || now->window() != overlay_->window()) return;
  if (isInside(now)) {
    // Where the alert itself put the focus, and where a window that becomes active again returns it
    // to, there is nothing to show: the message is read first.
    const bool byUser = !moving_ && now != last_;
    last_ = now;
    if (!byUser) return;
    engage();
    Q_EMIT moved(now);
    return;
  }
  if (isAbove(now)) return;
  const QScopedValueRollback rollback(moving_, true);
  (last_ != nullptr && isInside(last_) ? last_.data() : overlay_)->setFocus();
}

QList<QWidget*> KifoPopupFocus::stops() const {
  QList<QWidget*> stops;
  if (card_ == nullptr) return stops;
  for (QWidget* widget = overlay_->nextInFocusChain(); widget != overlay_;
       widget = widget->nextInFocusChain()) {
    if (overlay_->isAncestorOf(widget) && (widget->focusPolicy() & Qt::TabFocus) &&
        widget->isVisibleTo(overlay_) && widget->isEnabled() && widget->focusProxy() == nullptr) {
      stops.append(widget);
    }
  }
  // Parts follow each other as they are seen, whatever the order in which they were added; inside a
  // custom view the window's focus chain decides.
  std::stable_sort(stops.begin(), stops.end(),
                   [this](const QWidget* former, const QWidget* latter) {
                     return card_->readsBefore(former, latter);
                   });
  return stops;
}

bool KifoPopupFocus::step(bool forward) {
  const QList<QWidget*> all = stops();
  if (all.isEmpty()) return true;
  const auto at = all.indexOf(QApplication::focusWidget());
  const auto next =
      at < 0 ? (forward ? 0 : all.size() - 1) : (at + (forward ? 1 : all.size() - 1)) % all.size();
  all[next]->setFocus(forward ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  return true;
}

void KifoPopupFocus::engage() {
  engaged_ = true;
  Q_EMIT engagementChanged();
}

bool KifoPopupFocus::isEngaged() const {
  return engaged_ && overlay_->isActiveWindow();
}

}  // namespace kifo
