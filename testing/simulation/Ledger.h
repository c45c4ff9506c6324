#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kifo::testing::simulation {

/// One event: what the host did, and what became of it as far as it can be seen from outside the
/// SDK. Events that the SDK sends by itself have no number, and nothing is known of their sending.
struct Event {
  // What the host did, and how things stood then.
  int number = 0;          ///< From 1 on, in the order of the calls.
  unsigned process = 0;    ///< From 1 on.
  std::uint64_t step = 0;  ///< Of the call.
  bool isBlocked = false;
  bool isOdd = false;    ///< It holds what is never stored.
  bool goesOut = false;  ///< The gates were open.
  std::int64_t cap = 0;  ///< How many rows might wait.
  bool hasRoom = false;  ///< There was certainly room for its copy.
  std::int64_t timestamp = 0;
  std::string token = {};

  // What was seen.
  std::string key = {};     ///< The "requestId" of its body.
  int sentDirectly = 0;     ///< Times that a request of it went out at once…
  int sentFromStore = 0;    ///< … and as a stored row.
  int accepted = 0;         ///< Times that the server took it.
  bool hasFailed = false;   ///< The SDK heard something else than a 200 of it.
  unsigned answeredIn = 0;  ///< The process that heard a 200; 0: none.
  std::uint64_t answeredStep = 0;
  bool isSentAfterAnswer = false;  ///< In the process that had heard the 200.
  bool hasWrongMoment = false;     ///< Another token or time than that of its call.
  std::int64_t row = 0;            ///< Its number in the table; 0: never seen there.
  bool isWaiting = false;          ///< Its row waits to be sent again.
  bool isOverCap = false;          ///< Its row waits behind as many as its cap allows.
  bool hasLeftUnsent = false;      ///< Its row stopped waiting, neither sent nor answered.
};

/// One row of the table as a reader sees it.
struct StoredRow {
  std::int64_t id = 0;
  bool isWaiting = false;
  std::string_view body = {};  ///< Only where `Ledger::wantsBody`.
};

/// A campaign's shows, counted where popups are shown.
struct Budget {
  std::int64_t left = 0;     ///< As the world counts.
  std::int64_t kept = 0;     ///< As the user defaults say.
  bool isOverspent = false;  ///< Shown when none was left.
};

/// Everything that a world has seen. The invariants read it.
struct Ledger {
  std::uint64_t step = 0;
  unsigned process = 0;
  std::uint64_t troubleStep = 0;  ///< When the disk was last not in order.
  std::uint64_t idleStep = 0;     ///< When all work had last ended.

  std::deque<Event> events;
  std::vector<Event*> touched;    ///< Since the invariants were last checked.
  std::vector<Event*> unsettled;  ///< Of which it must still be shown that they are not lost.
  std::int64_t waiting = 0;       ///< Rows that wait.

  std::map<std::string, Budget> budgets;
  std::string token;                ///< The session's, as the world knows it.
  std::string sessionsToken;        ///< As the SDK says.
  std::int64_t sentDirectly = 0;    ///< Requests of this process…
  std::int64_t sentFromStore = 0;   ///< … that went out,
  std::int64_t delivered = 0;       ///< … and those that were answered 200.
  std::uint64_t firstStep = 0;      ///< Of this process.
  int refusals = 0;                 ///< 401 answers since the last 200, in this process.
  bool hasCampaigns = false;        ///< This process got an in-app answer.
  std::vector<std::string> faults;  ///< What else was found to be wrong.

  void beginProcess();
  void add(Event event);
  /// The event whose body this is; made if it was not known.
  Event& eventOf(std::string_view body);
  void sent(std::string_view body, bool fromStore, std::string_view token);
  void answered(std::string_view body, bool isOk);
  [[nodiscard]] bool wantsBody(std::int64_t row) const { return rows_.count(row) == 0; }
  /// The table as it is now, in the order of the rows. `sending` is how many requests are on their
  /// way to the network.
  void sawTable(const std::vector<StoredRow>& rows, std::size_t sending);
  /// The table was erased.
  void forgetTable();
  /// Whether the disk was in order since `since`.
  [[nodiscard]] bool isUndisturbed(std::uint64_t since) const { return troubleStep < since; }

 private:
  void touch(Event& event) { touched.push_back(&event); }
  void left(Event& event, std::size_t sending);

  std::unordered_map<std::string, Event*> byKey_;
  std::unordered_map<int, Event*> byNumber_;
  std::map<std::int64_t, Event*> rows_;  ///< Those of the table as it was last seen.
  int lastDirect_ = 0;
  std::int64_t lastFromStore_ = 0;
};

}  // namespace kifo::testing::simulation
