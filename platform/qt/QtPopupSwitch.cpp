#include "platform/qt/QtPopupSwitch.h"

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupGate.h"
#include "platform/qt/UiLink.h"

namespace kifo {

QtPopupSwitch::QtPopupSwitch(QObject* parent)
    : QObject(parent),
      link_(std::make_shared<UiLink<QtPopupSwitch>>(this)),
      listener_(listenForPopupPauses([link = link_] {
        link->post(
            [](QtPopupSwitch& self) { Q_EMIT self.popupsPausedChanged(self.popupsPaused()); });
      })) {}

QtPopupSwitch::~QtPopupSwitch() {
  link_->close();
}

bool QtPopupSwitch::popupsPaused() const {
  return Kifo::popupsPaused();
}

void QtPopupSwitch::setPopupsPaused(bool isPaused) {
  Kifo::setPopupsPaused(isPaused);
}

}  // namespace kifo
