#include "testing/simulation/Ledger.h"

#include <charconv>
#include <utility>

namespace kifo::testing::simulation {
namespace {

/// What stands behind `"name":` in a flat JSON text, up to the end of the value.
std::string_view member(std::string_view json, std::string_view name) {
  std::string marker;
  marker.append("\"").append(name).append("\":");
  const auto found = json.find(marker);
  if (found == std::string_view::npos) return {};
  json.remove_prefix(found + marker.size());
  const bool isText = json.starts_with('"');
  if (isText) json.remove_prefix(1);
  return json.substr(0, json.find_first_of(isText ? "\"" : ",}"));
}

template <class Number>
Number numberIn(std::string_view text) {
  Number number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

}  // namespace

void Ledger::beginProcess() {
  for (Event& event : events) {
    const bool isKept = event.answeredStep < idleStep && isUndisturbed(event.answeredStep);
    if (event.answeredIn == process && process > 0 && !isKept) event.hasFailed = true;
  }
  ++process;
  token.clear();
  refusals = 0;
  sentDirectly = sentFromStore = delivered = 0;
  firstStep = step + 1;
  hasCampaigns = false;
}

void Ledger::add(Event event) {
  events.push_back(std::move(event));
  byNumber_[events.back().number] = &events.back();
  unsettled.push_back(&events.back());
  touch(events.back());
}

Event& Ledger::eventOf(std::string_view body) {
  std::string key(member(body, "requestId"));
  if (const auto found = byKey_.find(key); found != byKey_.end()) return *found->second;
  const auto numbered = byNumber_.find(numberIn<int>(member(body, "n")));
  if (numbered == byNumber_.end()) {
    events.push_back({.process = process, .step = step});
  } else if (!numbered->second->key.empty()) {
    faults.push_back("one call became two events");
  }
  Event& event = numbered == byNumber_.end() ? events.back() : *numbered->second;
  event.key = key;
  byKey_[std::move(key)] = &event;
  return event;
}

void Ledger::sent(std::string_view body, bool fromStore, std::string_view sentToken) {
  Event& event = eventOf(body);
  touch(event);
  ++(fromStore ? event.sentFromStore : event.sentDirectly);
  ++(fromStore ? sentFromStore : sentDirectly);
  event.isSentAfterAnswer |= event.answeredIn == process;
  if (event.number > 0) {
    event.hasWrongMoment |= numberIn<std::int64_t>(member(body, "timestamp")) != event.timestamp;
    event.hasWrongMoment |= !fromStore && sentToken != event.token;
  }
  if (fromStore) {
    if (event.row != 0 && event.row <= lastFromStore_)
      faults.push_back("a row went out before an older one");
    lastFromStore_ = event.row;
  } else if (event.number > 0) {
    if (event.number < lastDirect_) faults.push_back("an event went out before an older one");
    lastDirect_ = event.number;
  }
}

void Ledger::answered(std::string_view body, bool isOk) {
  Event& event = eventOf(body);
  touch(event);
  if (isOk) ++delivered;
  if (!isOk) {
    event.hasFailed = true;
  } else if (event.answeredIn == 0) {
    event.answeredIn = process;
    event.answeredStep = step;
    unsettled.push_back(&event);
  }
}

void Ledger::left(Event& event, std::size_t sending) {
  event.isWaiting = false;
  event.hasLeftUnsent = event.answeredIn == 0 && event.sentFromStore == 0 && sending == 0;
  touch(event);
}

void Ledger::forgetTable() {
  for (const auto& [id, event] : rows_) event->isWaiting = false;
  rows_.clear();
  waiting = 0;
  lastFromStore_ = 0;
}

void Ledger::sawTable(const std::vector<StoredRow>& rows, std::size_t sending) {
  std::map<std::int64_t, Event*> now;
  waiting = 0;
  for (const StoredRow& row : rows) {
    const auto known = rows_.find(row.id);
    Event& event = known == rows_.end() ? eventOf(row.body) : *known->second;
    now[row.id] = &event;
    if (known == rows_.end()) {
      if (event.row != 0) faults.push_back("an event was stored twice");
      event.row = row.id;
      touch(event);
    }
    if (event.isWaiting && !row.isWaiting) left(event, sending);
    event.isWaiting = row.isWaiting;
    if (!row.isWaiting) continue;
    event.isOverCap |= event.number > 0 && waiting >= event.cap;
    if (event.isOverCap) touch(event);
    ++waiting;
  }
  for (const auto& [id, event] : rows_) {
    if (event->isWaiting && now.count(id) == 0) left(*event, sending);
  }
  rows_ = std::move(now);
}

}  // namespace kifo::testing::simulation
