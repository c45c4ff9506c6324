#include "testing/simulation/Invariants.h"

#include <array>
#include <string_view>
#include <utility>

namespace kifo::testing::simulation {
namespace {

// Of one event, at any time
// ------------------------------------------------------------------------

bool goesOutOnceAndOnceMoreFromTheStore(const Event& event) {
  return event.sentDirectly <= 1 && event.sentFromStore <= 1;
}

bool isNotSentAgainOnceAnswered(const Event& event) {
  return !event.isSentAfterAnswer;
}

bool arrivesOnceUnlessTheTransportFailed(const Event& event) {
  return event.accepted <= (event.hasFailed ? 2 : 1);
}

bool isNowhereWhenBlocked(const Event& event) {
  return !event.isBlocked || event.key.empty();
}

bool goesOutOnlyThroughOpenGates(const Event& event) {
  return event.number == 0 || event.goesOut || event.sentDirectly == 0;
}

bool carriesTheTokenAndTheTimeOfItsCall(const Event& event) {
  return !event.hasWrongMoment;
}

bool waitsWithinTheCapOfItsCall(const Event& event) {
  return !event.isOverCap;
}

bool staysStoredUntilSentOrAnswered(const Event& event) {
  return !event.hasLeftUnsent;
}

using EventInvariant = std::pair<std::string_view, bool (*)(const Event&)>;
constexpr std::array kOfAnEvent{
    EventInvariant{"an event goes out once, and once more from the store",
                   goesOutOnceAndOnceMoreFromTheStore},
    EventInvariant{"an answered event is not sent again", isNotSentAgainOnceAnswered},
    EventInvariant{"an event arrives once unless the transport failed",
                   arrivesOnceUnlessTheTransportFailed},
    EventInvariant{"a blocked event is nowhere", isNowhereWhenBlocked},
    EventInvariant{"an event goes out only through open gates", goesOutOnlyThroughOpenGates},
    EventInvariant{"an event carries the token and the time of its call",
                   carriesTheTokenAndTheTimeOfItsCall},
    EventInvariant{"rows wait within the cap of their call", waitsWithinTheCapOfItsCall},
    EventInvariant{"a row waits until it is sent or answered", staysStoredUntilSentOrAnswered}};

// Of one event, when nothing is left to do
// ---------------------------------------------------------

bool isSentWhenTheGatesWereOpen(const Event& event, const Ledger& ledger) {
  return !event.goesOut || event.isBlocked || event.process != ledger.process ||
         event.sentDirectly == 1;
}

bool isAnsweredOrStored(const Event& event, const Ledger& ledger) {
  const bool mustBeKept = event.hasRoom && !event.isBlocked && !event.isOdd &&
                          event.process == ledger.process && ledger.isUndisturbed(event.step);
  return !mustBeKept || event.answeredIn != 0 || event.row != 0;
}

bool hasNoWaitingRowOnceAnswered(const Event& event, const Ledger& ledger) {
  return !event.isWaiting || event.answeredIn == 0 || event.answeredIn != ledger.process ||
         !ledger.isUndisturbed(event.step);
}

using IdleInvariant = std::pair<std::string_view, bool (*)(const Event&, const Ledger&)>;
constexpr std::array kOfAnEventWhenIdle{
    IdleInvariant{"an event is sent when the gates were open", isSentWhenTheGatesWereOpen},
    IdleInvariant{"an event is answered or stored", isAnsweredOrStored},
    IdleInvariant{"an answered event has no waiting row", hasNoWaitingRowOnceAnswered}};

// Of the session
// -----------------------------------------------------------------------------------

bool budgetsAreSpentOncePerShow(const Ledger& ledger) {
  for (const auto& [campaign, budget] : ledger.budgets) {
    if (budget.isOverspent || budget.left != budget.kept) return false;
  }
  return true;
}

bool theTokenIsThatOfThisSession(const Ledger& ledger) {
  return ledger.token == ledger.sessionsToken;
}

using SessionInvariant = std::pair<std::string_view, bool (*)(const Ledger&)>;
constexpr std::array kOfTheSession{
    SessionInvariant{"a budget is spent once per show", budgetsAreSpentOncePerShow},
    SessionInvariant{"the token is that of this session", theTokenIsThatOfThisSession}};

std::string description(std::string_view invariant, const Event& event) {
  return std::string(invariant) + " (event " + std::to_string(event.number) + ", " + event.key +
         ")";
}

std::optional<std::string> brokenWhenIdle(Ledger& ledger) {
  for (Event* event : std::exchange(ledger.unsettled, {})) {
    for (const auto& [name, holds] : kOfAnEventWhenIdle) {
      if (!holds(*event, ledger)) return description(name, *event);
    }
    // One that is under way is looked at again.
    const bool isOpen = event->answeredIn == 0 && !event->hasFailed && event->goesOut;
    if (isOpen && event->process == ledger.process) ledger.unsettled.push_back(event);
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> wrongCounter(const Ledger& ledger, const Counts& counts,
                                        const UnderWay& underWay) {
  using Expected = std::pair<Counter, std::int64_t>;
  for (const auto& [counter, expected] : {Expected{Counter::sent, ledger.sentDirectly},
                                          Expected{Counter::resent, ledger.sentFromStore},
                                          Expected{Counter::delivered, ledger.delivered},
                                          Expected{Counter::underWay, underWay.requests}}) {
    if (counts[counter] != expected) return "the counter " + std::string(name(counter));
  }
  // A row whose deletion failed stays in the table, but does not count as waiting.
  const bool isOrderly = ledger.isUndisturbed(ledger.firstStep);
  const std::int64_t waiting = ledger.waiting - underWay.rows;
  if (isOrderly && counts[Counter::waiting] != waiting) return "the counter waiting";
  return std::nullopt;
}

std::optional<std::string> brokenInvariant(Ledger& ledger, bool isIdle) {
  if (!ledger.faults.empty()) return ledger.faults.front();
  for (const auto& [name, holds] : kOfTheSession) {
    if (!holds(ledger)) return std::string(name);
  }
  for (const Event* event : std::exchange(ledger.touched, {})) {
    for (const auto& [name, holds] : kOfAnEvent) {
      if (!holds(*event)) return description(name, *event);
    }
  }
  return isIdle ? brokenWhenIdle(ledger) : std::nullopt;
}

}  // namespace kifo::testing::simulation
