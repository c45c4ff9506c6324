#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/ViewController.h"
#include "Kifo_iOS_Common_Kit/inapp/AppCommunicationItem.h"

namespace kifo {

/// Decides when the campaigns that an event names are looked for: at once, or, while a page-in's
/// query is under way, when its answer is there, so that a new page's events meet the page's own
/// campaigns.
///
/// **Threading:** thread-safe. Campaigns are chosen on the main queue.
class InAppTrigger {
 public:
  /// Gets each campaign that is due, in the server's order, on the main queue.
  using Due = std::function<void(std::shared_ptr<AppCommunicationItem>)>;

  /// The process's trigger. Never destroyed.
  static InAppTrigger& shared();

  /// A custom event was sent. Of two that come while a query is under way the later one counts.
  void eventSent(const std::string& eventName, Due due);

  /// Starts the query of a page-in.
  void refresh();

  /// Forgets what waits. For shutdown and tests.
  void reset();

 private:
  struct State;

  InAppTrigger();
  void fetchEnded();
  static void look(const std::string& eventName, Due due);

  std::unique_ptr<State> state_;
};

}  // namespace kifo
