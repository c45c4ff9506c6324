#pragma once

#include <functional>
#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {

class Runtime;

/// Decides when the campaigns that an event names are looked for: at once, or, while a page-in's
/// query is under way, when its answer is there, so that a new page's events find the page's own
/// campaigns.
///
/// **Threading:** thread-safe. Campaigns are chosen on the main queue.
class InAppTrigger {
 public:
  /// Gets each campaign that is due, in the server's order, on the main queue.
  using Due = std::function<void(const std::shared_ptr<AppCommunicationItem>&)>;

  /// A custom event was sent. Of two that come while a query is under way the later one counts.
  void eventSent(const std::shared_ptr<Runtime>& runtime, const std::string& eventName, Due due);

  /// Starts the query of a page-in.
  void refresh(const std::shared_ptr<Runtime>& runtime);

  /// Forgets what waits.
  void clear();

 private:
  void fetchEnded();

  Mutex mutex_;
  bool inAppFetchPending_ KIFO_GUARDED_BY(mutex_) = false;
  std::function<void()> deferred_ KIFO_GUARDED_BY(mutex_);
};

}  // namespace kifo
