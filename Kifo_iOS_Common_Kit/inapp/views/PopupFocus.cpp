#include "Kifo_iOS_Common_Kit/inapp/views/PopupFocus.h"

#include <QApplication>

namespace kifo {

PopupFocus::PopupFocus(QWidget* overlay) : QObject(overlay), overlay_(overlay) {
  connect(qApp, &QApplication::focusChanged, this, &PopupFocus::moved);
}

void PopupFocus::take() {
  if (!held_) before_ = overlay_->window()->focusWidget();
  held_ = true;
  last_ = overlay_;
  overlay_->setFocus(Qt::OtherFocusReason);
}

void PopupFocus::giveBack() {
  if (!held_) return;
  held_ = false;
  QWidget* now = overlay_->window()->focusWidget();
  const bool ours = now && (now == overlay_ || overlay_->isAncestorOf(now));
  if (!ours) return;
  if (before_ && before_->isEnabled() && before_->window() == overlay_->window()) {
    before_->setFocus(Qt::OtherFocusReason);
  } else {
    now->clearFocus();
  }
}

QList<QWidget*> PopupFocus::stops() const {
  QList<QWidget*> found;
  for (QWidget* widget : overlay_->findChildren<QWidget*>()) {
    const bool stop = (widget->focusPolicy() & Qt::TabFocus) != 0;
    if (stop && widget->isEnabled() && widget->isVisible() && !widget->focusProxy())
      found << widget;
  }
  return found;
}

bool PopupFocus::step(bool forwards) {
  const QList<QWidget*> all = stops();
  if (all.isEmpty()) return true;
  const auto here = all.indexOf(overlay_->window()->focusWidget());
  const auto start = here < 0 && !forwards ? all.size() : here;
  const auto next = (start + (forwards ? 1 : -1) + all.size()) % all.size();
  all[next]->setFocus(forwards ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  return true;
}

/// A host may put other overlays on top, and they may have the focus; what lies below may not.
bool PopupFocus::isBelowOverlay(const QWidget* widget) const {
  const QWidget* parent = overlay_->parentWidget();
  if (!parent || !parent->isAncestorOf(widget)) return widget == parent;
  const QWidget* top = widget;
  while (top->parentWidget() != parent) top = top->parentWidget();
  const auto& siblings = parent->children();
  return siblings.indexOf(const_cast<QWidget*>(top)) < siblings.indexOf(overlay_);
}

void PopupFocus::moved(QWidget*, QWidget* to) {
  if (!held_ || !to || !overlay_->isVisible()) return;
  if (to == overlay_ || overlay_->isAncestorOf(to)) {
    last_ = to;
    Q_EMIT arrived(to);
  } else if (to->window() == overlay_->window() && isBelowOverlay(to)) {
    QWidget* back = last_ ? last_.data() : overlay_;
    back->setFocus(Qt::OtherFocusReason);
  }
}

}  // namespace kifo
