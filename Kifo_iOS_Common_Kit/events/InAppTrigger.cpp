#include "Kifo_iOS_Common_Kit/events/InAppTrigger.h"

#include <mutex>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Inspect.h"
#include "Kifo_iOS_Common_Kit/core/Session.h"
#include "Kifo_iOS_Common_Kit/inapp/AppCommunication.h"
#include "Kifo_iOS_Common_Kit/network/InAppFetch.h"

namespace kifo {
namespace {

/// Expiry dates below this are seconds since 1970, from it on milliseconds.
constexpr double kFirstMilliseconds = 1e11;

bool isExpired(const AppCommunicationItem& item) {
  if (!item.expireDate) return false;
  const double milliseconds =
      *item.expireDate < kFirstMilliseconds ? *item.expireDate * 1000.0 : *item.expireDate;
  return milliseconds < static_cast<double>(Platform::current()->clock->millisecondsSince1970());
}

void consider(const std::shared_ptr<AppCommunicationItem>& item, const InAppTrigger::Due& due) {
  if (isExpired(*item)) {
    KIFO_INSPECT("campaign", {{"uuid", item->uuid.value_or("")}, {"outcome", "expired"}});
    return;
  }
  due(item);
}

}  // namespace

struct InAppTrigger::State {
  std::mutex mutex;
  // Guarded by mutex.
  bool inAppFetchPending = false;
  std::function<void()> deferred;
};

InAppTrigger::InAppTrigger() : state_(std::make_unique<State>()) {}

InAppTrigger& InAppTrigger::shared() {
  static InAppTrigger& only = *new InAppTrigger;
  return only;
}

void InAppTrigger::eventSent(const std::string& eventName, Due due) {
  {
    const std::lock_guard lock(state_->mutex);
    if (state_->inAppFetchPending) {
      KIFO_INSPECT("campaign", {{"event", eventName}, {"outcome", "waiting for a fetch"}});
      state_->deferred = [eventName, due = std::move(due)] { look(eventName, due); };
      return;
    }
  }
  look(eventName, std::move(due));
}

void InAppTrigger::refresh() {
  {
    const std::lock_guard lock(state_->mutex);
    state_->inAppFetchPending = true;
  }
  fetchInAppCommunication([](bool) { shared().fetchEnded(); });
}

void InAppTrigger::fetchEnded() {
  const std::lock_guard lock(state_->mutex);
  // Looking only queues its work, so nothing of the host's runs under the lock.
  if (state_->deferred) state_->deferred();
  state_->deferred = nullptr;
  state_->inAppFetchPending = false;
}

void InAppTrigger::reset() {
  const std::lock_guard lock(state_->mutex);
  state_->deferred = nullptr;
  state_->inAppFetchPending = false;
}

void InAppTrigger::look(const std::string& eventName, Due due) {
  auto answer = Session::shared().appCommunication();
  if (!answer || !answer->model || answer->model->empty()) {
    KIFO_INSPECT("campaign", {{"event", eventName},
                              {"outcome", "no match"},
                              {"reason", answer ? "no campaigns" : "no answer yet"}});
    return;
  }
  Platform::current()->mainQueue->enqueue(
      [answer = std::move(answer), eventName, due = std::move(due)] {
        bool found = false;
        for (const auto& item : *answer->model) {
          if (item->triggeringEventName != eventName) continue;
          found = true;
          consider(item, due);
        }
        if (!found) KIFO_INSPECT("campaign", {{"event", eventName}, {"outcome", "no match"}});
      },
      Wake::soon);
}

}  // namespace kifo
