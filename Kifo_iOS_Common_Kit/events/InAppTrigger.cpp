#include "Kifo_iOS_Common_Kit/events/InAppTrigger.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/core/Inspect.h"
#include "Kifo_iOS_Common_Kit/core/Runtime.h"
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

/// Queues the choice among the campaigns of the present answer.
void chooseCampaigns(const Runtime& runtime, const std::string& eventName, InAppTrigger::Due due) {
  auto answer = runtime.session.appCommunication();
  if (!answer || !answer->model || answer->model->empty()) {
    KIFO_INSPECT("campaign", {{"event", eventName},
                              {"outcome", "no match"},
                              {"reason", answer ? "no campaigns" : "no answer yet"}});
    return;
  }
  Platform::current()->mainQueue->post(
      [answer = std::move(answer), eventName, due = std::move(due)] {
        bool found = false;
        for (const auto& item : *answer->model) {
          if (item->triggeringEventName != eventName) continue;
          found = true;
          consider(item, due);
        }
        if (!found) KIFO_INSPECT("campaign", {{"event", eventName}, {"outcome", "no match"}});
      });
}

}  // namespace

void InAppTrigger::eventSent(const std::shared_ptr<Runtime>& runtime, const std::string& eventName,
                             Due due) {
  {
    const MutexLock lock(mutex_);
    if (inAppFetchPending_) {
      KIFO_INSPECT("campaign", {{"event", eventName}, {"outcome", "waiting for a fetch"}});
      deferred_ = [runtime, eventName, due = std::move(due)] {
        chooseCampaigns(*runtime, eventName, due);
      };
      return;
    }
  }
  chooseCampaigns(*runtime, eventName, std::move(due));
}

void InAppTrigger::refresh(const std::shared_ptr<Runtime>& runtime) {
  {
    const MutexLock lock(mutex_);
    inAppFetchPending_ = true;
  }
  fetchInAppCommunication(runtime, [runtime](bool) { runtime->inAppTrigger->fetchEnded(); });
}

void InAppTrigger::fetchEnded() {
  std::function<void()> deferred;  // destroyed outside the lock
  const MutexLock lock(mutex_);
  deferred.swap(deferred_);
  // Choosing only queues its work, so nothing of the host's runs under the lock.
  if (deferred) deferred();
  inAppFetchPending_ = false;
}

void InAppTrigger::clear() {
  std::function<void()> deferred;
  const MutexLock lock(mutex_);
  deferred.swap(deferred_);
  inAppFetchPending_ = false;
}

}  // namespace kifo
