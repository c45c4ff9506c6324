#include "Kifo_iOS_Common_Kit/inapp/views/shared/RovingFocus.h"

#include <algorithm>

#include <QKeyEvent>
#include <QWidget>

namespace kifo {

RovingFocus::RovingFocus(Stops stops, QObject* parent) : QObject(parent), stops_(stops) {}

void RovingFocus::add(QWidget* option) {
  options_.emplace_back(option);
  option->installEventFilter(this);
  if (stops_ == Stops::one && options_.size() > 1) option->setFocusPolicy(Qt::ClickFocus);
}

bool RovingFocus::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::FocusIn) stopAt(watched);
  if (event->type() != QEvent::KeyPress) return false;
  return press(static_cast<QWidget*>(watched), static_cast<QKeyEvent*>(event)->key());
}

void RovingFocus::stopAt(const QObject* option) {
  if (stops_ == Stops::every) return;
  for (const auto& each : options_) {
    if (each) each->setFocusPolicy(each == option ? Qt::StrongFocus : Qt::ClickFocus);
  }
}

bool RovingFocus::press(QWidget* from, int key) {
  const bool mirrored = from->layoutDirection() == Qt::RightToLeft;
  const auto here = std::find(options_.begin(), options_.end(), from) - options_.begin();
  auto next = here;
  if (key == Qt::Key_Down || key == (mirrored ? Qt::Key_Left : Qt::Key_Right))
    ++next;
  else if (key == Qt::Key_Up || key == (mirrored ? Qt::Key_Right : Qt::Key_Left))
    --next;
  else if (key == Qt::Key_Home)
    next = 0;
  else if (key == Qt::Key_End)
    next = static_cast<std::ptrdiff_t>(options_.size()) - 1;
  else
    return false;
  if (next < 0 || next >= static_cast<std::ptrdiff_t>(options_.size())) return true;
  if (QWidget* option = options_[static_cast<std::size_t>(next)])
    option->setFocus(Qt::TabFocusReason);
  return true;
}

}  // namespace kifo
