#include "Kifo_iOS_Common_Kit/inapp/PopupGate.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupRules.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

constexpr std::string_view LOG_TAG = "Kifo PopupGate:";

/// Never destroyed: a thread of the host may switch while the process runs its exit handlers.
struct Listeners {
  Mutex mutex;
  std::vector<std::weak_ptr<const std::function<void()>>> all KIFO_GUARDED_BY(mutex);
};

Listeners& listeners() {
  static Listeners& only = *new Listeners;
  return only;
}

void tellListeners() {
  std::vector<PopupPauseListener> alive;
  {
    Listeners& list = listeners();
    const MutexLock lock(list.mutex);
    std::erase_if(list.all, [&](const auto& each) {
      alive.push_back(each.lock());
      return !alive.back();
    });
  }
  for (const auto& listener : alive) {
    if (listener) (*listener)();
  }
}

/// Whether this thread is inside a host's gate: a gate that has popups asked for again would be
/// asked without end.
thread_local bool isDeciding = false;

const AppCommunicationItem& itemOf(const PopupRequest& request) {
  return *request.preferences.appCommunicationItem;
}

PopupInfo infoOf(const PopupRequest& request) {
  const PopupPreferences& shown = request.preferences;
  const AppCommunicationItem& item = itemOf(request);
  const auto screen = shown.controller.lock();
  return {.campaign = item.uuid.value_or(""),
          .name = item.name.value_or(""),
          .type = item.type.value_or(""),
          .screen = screen ? screen->className() : "",
          .title = shown.title.value_or(""),
          .text = shown.detailText.value_or(""),
          .question = shown.questionText.value_or("")};
}

bool isSameScreen(const PopupRequest& one, const PopupRequest& other) {
  const auto& first = one.preferences.controller;
  const auto& second = other.preferences.controller;
  return !first.owner_before(second) && !second.owner_before(first);
}

}  // namespace

PopupPauseListener listenForPopupPauses(std::function<void()> changed) {
  auto listener = std::make_shared<const std::function<void()>>(std::move(changed));
  Listeners& list = listeners();
  const MutexLock lock(list.mutex);
  list.all.push_back(listener);
  return listener;
}

void PopupGate::setDecider(PopupDecider decider) {
  // The one of before is destroyed outside the lock, or when its last call ends.
  auto next = decider ? std::make_shared<const PopupDecider>(std::move(decider)) : nullptr;
  {
    const MutexLock lock(mutex_);
    if (isClosed_) return;
    decider_.swap(next);
  }
  queueHeld();
}

void PopupGate::setPaused(bool isPaused) {
  {
    const MutexLock lock(mutex_);
    if (std::exchange(isPaused_, isPaused) == isPaused) return;
  }
  tellListeners();
  queueHeld();
}

bool PopupGate::isPaused() const {
  const MutexLock lock(mutex_);
  return isPaused_;
}

std::uint64_t PopupGate::nextOrder() {
  const MutexLock lock(mutex_);
  return ++lastOrder_;
}

std::uint64_t PopupGate::asks() const {
  const MutexLock lock(mutex_);
  return asks_;
}

void PopupGate::present(const Request& request) {
  const auto asksBefore = asks();
  if (isPaused()) return hold(request, "popups are paused", asksBefore);
  Platform::current()->popups->present(request);
}

bool PopupGate::allows(const Request& request) {
  const auto asksBefore = asks();
  const auto decision = isPaused() ? PopupDecision::later : decide(*request);
  bool isPausedNow = false;
  {
    // Read again: the gate may have paused popups, or ended the SDK.
    const MutexLock lock(mutex_);
    if (isClosed_) return false;
    isPausedNow = isPaused_;
  }
  if (decision == PopupDecision::never) {
    count(Counter::popupsRefusedByHost);
    rules::inspect(itemOf(*request), "never", "the host's gate");
    return false;
  }
  if (decision == PopupDecision::show && !isPausedNow) return true;
  hold(request, isPausedNow ? "popups are paused" : "the host's gate", asksBefore);
  return false;
}

PopupDecision PopupGate::decide(const PopupRequest& request) {
  std::shared_ptr<const PopupDecider> decider;
  {
    const MutexLock lock(mutex_);
    decider = decider_;
  }
  if (!decider) return PopupDecision::show;
  auto decision = PopupDecision::later;
  const bool wasDeciding = std::exchange(isDeciding, true);
  callHost(LOG_TAG, [&] { decision = (*decider)(infoOf(request)); });
  isDeciding = wasDeciding;
  return decision;
}

void PopupGate::hold(const Request& request, const char* reason, std::uint64_t asksBefore) {
  const std::string& campaign = *itemOf(*request).uuid;
  const auto isTheSame = [&](const Request& each) {
    return *itemOf(*each).uuid == campaign && isSameScreen(*each, *request);
  };
  const auto isBefore = [](const Request& one, const Request& other) {
    return one->order < other->order;
  };
  bool isRepeated = false;
  bool isOvertaken = false;
  {
    const MutexLock lock(mutex_);
    if (isClosed_) return;
    isOvertaken = asks_ != asksBefore;
    isRepeated = std::ranges::any_of(held_, isTheSame);
    if (!isRepeated) {
      held_.insert(std::ranges::upper_bound(held_, request, isBefore), request);
    }
  }
  count(isRepeated ? Counter::popupsRefusedRepeated : Counter::popupsPaused);
  rules::inspect(itemOf(*request), "later", isRepeated ? "it waits already" : reason);
  if (isOvertaken) queueHeld();
}

bool PopupGate::holds(const std::string& campaign) const {
  const MutexLock lock(mutex_);
  return std::ranges::any_of(held_,
                             [&](const Request& each) { return *itemOf(*each).uuid == campaign; });
}

void PopupGate::askAgain() {
  if (!isDeciding) queueHeld();
}

void PopupGate::queueHeld() {
  {
    const MutexLock lock(mutex_);
    ++asks_;
    if (held_.empty() || isPaused_ || std::exchange(isAskDue_, true)) return;
  }
  Platform::current()->mainQueue->post([weak = weak_from_this()] {
    if (const auto gate = weak.lock()) gate->presentHeld();
  });
}

void PopupGate::presentHeld() {
  std::vector<Request> held;
  {
    const MutexLock lock(mutex_);
    isAskDue_ = false;
    if (isPaused_) return;
    held.swap(held_);
  }
  // A campaign that was due over several screens shows over the first that is still there.
  std::set<std::string> campaigns;
  for (const Request& request : held) {
    const bool isScreenGone = request->preferences.controller.expired();
    if (isScreenGone || campaigns.insert(*itemOf(*request).uuid).second) {
      Platform::current()->popups->present(request);
    } else {
      count(Counter::popupsRefusedRepeated);
    }
  }
}

void PopupGate::takeSettings(const PopupGate& other) {
  std::shared_ptr<const PopupDecider> decider;
  bool isPaused = false;
  {
    const MutexLock lock(other.mutex_);
    decider = other.decider_;
    isPaused = other.isPaused_;
  }
  const MutexLock lock(mutex_);
  decider_.swap(decider);
  isPaused_ = isPaused;
}

void PopupGate::close() {
  std::shared_ptr<const PopupDecider> decider;
  std::vector<Request> held;
  const MutexLock lock(mutex_);
  isClosed_ = true;
  decider.swap(decider_);
  held.swap(held_);
}

}  // namespace kifo
