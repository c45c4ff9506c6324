#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertFocus.h"

#include <algorithm>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertCard.h"

namespace kifo {

AlertFocus::AlertFocus(QWidget* overlay, const AlertCard* card)
    : OverlayFocus(overlay), card_(card) {
  connect(this, &OverlayFocus::arrived, this, [this](QWidget* widget, bool byUser) {
    // Where the alert opens there is nothing to show: the message is read first.
    if (!byUser) return;
    engage();
    Q_EMIT moved(widget);
  });
}

QList<QWidget*> AlertFocus::stops() const {
  QList<QWidget*> stops;
  if (card_ == nullptr) return stops;
  for (QWidget* widget = overlay()->nextInFocusChain(); widget != overlay();
       widget = widget->nextInFocusChain()) {
    if (overlay()->isAncestorOf(widget) && isStop(widget)) stops.append(widget);
  }
  // Parts follow each other as they are seen, whatever the order in which they were added; inside a
  // custom view the window's focus chain decides.
  std::stable_sort(stops.begin(), stops.end(),
                   [this](const QWidget* former, const QWidget* latter) {
                     return card_->readsBefore(former, latter);
                   });
  return stops;
}

void AlertFocus::engage() {
  engaged_ = true;
  Q_EMIT engagementChanged();
}

bool AlertFocus::isEngaged() const {
  return engaged_ && overlay()->isActiveWindow();
}

}  // namespace kifo
