#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/core/Statistics.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Session.h"
#include "Kifo_iOS_Common_Kit/network/RequestTexts.h"

namespace kifo {

/// One request, from its hand-over to the end of its answer. The state table is in
/// docs/event-path.md.
///
/// **Threading:** the first group is constant once the request is handed over; the others say what
/// protects them.
struct OutgoingRequest {
  /// Who made the request.
  enum class Origin {
    query,   ///< The in-app query. It has no id and no stored copy.
    event,   ///< An event. A copy of it is stored before it goes out.
    stored,  ///< A stored row that is sent again. Its gates were asked before its row was marked.
  };

  enum class State {
    underWay,   ///< Handed over; no answer yet, or one that is not a 200.
    answered,   ///< Answered 200; its row is being marked and removed.
    delivered,  ///< Settled after a 200.
    failed,     ///< Settled otherwise: not sent, or not answered with 200.
  };

  Origin origin = Origin::query;
  std::string id;  ///< Empty for a query.
  std::string method;
  std::shared_ptr<const RequestTexts> texts;
  /// Whose token and origin it carries: those of the moment at which it was made. Null for a
  /// stored row, which carries those of the moment at which it is sent again.
  std::shared_ptr<const Session::Identity> sender;
  bool isNotificationEvent = false;
  bool isGated = false;  ///< Does not go out now; its copy may.
  /// Gets the answer's body, or none when there is no answer to decode. Answer queue.
  std::function<void(std::optional<std::string_view> data)> complete;
  /// Runs when `complete` never will: gated, or answered without a body.
  std::function<void()> whenUnanswered;

  /// Main queue only: whether its row is in the table and not yet marked as delivered.
  bool hasRow = false;
  /// Of an event without a row: how it counts unless it is delivered. Main queue, or before the
  /// request is handed over.
  Counter whenNotDelivered = Counter::droppedByStore;

  // Guarded by InFlightRequests.
  State state = State::underWay;
  bool passWaits = false;  ///< A pass over the stored rows goes on when this request is settled.

  [[nodiscard]] bool isStored() const { return origin == Origin::stored; }
};

}  // namespace kifo
