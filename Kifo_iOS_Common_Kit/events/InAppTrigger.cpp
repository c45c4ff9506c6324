#include "Kifo_iOS_Common_Kit/events/InAppTrigger.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/core/runtime/Inspect.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupRules.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunication.h"
#include "Kifo_iOS_Common_Kit/network/InAppFetch.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

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
          if (!rules::isExpired(*item)) due(item);
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
