#include "Kifo_iOS_Common_Kit/events/KifoViewController.h"

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupGate.h"

namespace kifo {
namespace {

/// A screen that no shared pointer holds is still a screen with a name; nobody keeps it past the
/// call.
std::shared_ptr<ViewController> held(KifoViewController& screen) {
  if (auto shared = screen.weak_from_this().lock()) return shared;
  return std::shared_ptr<ViewController>(std::shared_ptr<void>(), &screen);
}

bool sendsPageEvents() {
  const bool isEnabled = Runtime::current()->session.sendActivityLifeCycleEventStatus ==
                         SendLifeCycleEventStatus::ENABLED;
  if (!isEnabled)
    Console::print(KifoViewController::LOG_TAG, "send activity lifecycle events disabled!");
  return isEnabled;
}

}  // namespace

void KifoViewController::viewDidLoad() {}

void KifoViewController::viewWillAppear(bool) {}

void KifoViewController::viewDidAppear(bool) {
  Runtime::current()->popupGate->askAgain();
  if (sendsPageEvents()) KifoEventManager::sendPageInEvent(held(*this), std::nullopt);
}

void KifoViewController::viewWillDisappear(bool) {
  if (sendsPageEvents()) KifoEventManager::sendPageOutEvent(held(*this), std::nullopt);
}

}  // namespace kifo
