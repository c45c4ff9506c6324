#include "apps/kifo/watch/WatchView.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <ctime>

namespace kifo::tool {
namespace {

using nlohmann::json;
using Color = Terminal::Color;

constexpr std::size_t kSubjectColumns = 28;
/// How many rows that come together are shown one by one.
constexpr std::size_t kReadable = 40;
/// Requests whose event's name is remembered.
constexpr std::size_t kMostEvents = 100000;

std::string text(const json& object, const char* key) {
  const auto found = object.find(key);
  if (found == object.end() || found->is_null()) return "";
  return found->is_string() ? found->get<std::string>()
                            : found->dump(-1, ' ', false, json::error_handler_t::replace);
}

std::int64_t number(const json& object, const char* key) {
  const auto found = object.find(key);
  return found != object.end() && found->is_number_integer() ? found->get<std::int64_t>() : 0;
}

const json& part(const json& object, const char* key) {
  static const json none = json::array();
  const auto found = object.find(key);
  return found == object.end() ? none : *found;
}

/// Such as "14:03:27.081".
std::string clock(std::int64_t milliseconds) {
  const auto seconds = static_cast<std::time_t>(milliseconds / 1000);
  std::tm local{};
  char shown[32] = "";
  if (localtime_r(&seconds, &local) == nullptr) return shown;
  const std::size_t size = std::strftime(shown, sizeof shown, "%H:%M:%S", &local);
  std::snprintf(shown + size, sizeof shown - size, ".%03d", static_cast<int>(milliseconds % 1000));
  return shown;
}

bool isOneOf(const std::string& word, std::initializer_list<const char*> words) {
  return std::ranges::find(words, word) != words.end();
}

Color colorOf(const json& decision) {
  const std::string kind = text(decision, "kind");
  const std::string outcome = text(decision, "outcome");
  if (kind == "answered") return text(decision, "status") == "200" ? Color::green : Color::red;
  if (isOneOf(kind, {"givenUp", "notStored", "lost"})) return Color::red;
  if (isOneOf(outcome, {"refused", "not shown", "screen gone", "expired"})) return Color::red;
  if (isOneOf(outcome, {"shown", "answered", "handed to the host"})) return Color::green;
  if (outcome == "no match") return Color::grey;
  const bool isPlain = isOneOf(kind, {"event", "composed", "stored", "sent", "resent"});
  return isPlain ? Color::grey : Color::yellow;
}

/// What is not in a column of its own.
std::string details(const json& decision) {
  if (text(decision, "kind") == "lost") {
    return text(decision, "count") + " lines were lost: this terminal reads too slowly";
  }
  std::string made;
  const auto add = [&](const std::string& word) {
    if (!word.empty()) made += (made.empty() ? "" : ", ") + word;
  };
  add(text(decision, "outcome"));
  add(text(decision, "reason"));
  for (const auto& [key, value] : decision.items()) {
    const bool isColumn = isOneOf(
        key, {"kind", "time", "event", "uuid", "requestId", "outcome", "reason", "parameters"});
    const std::string shown = text(decision, key.c_str());
    if (!isColumn && !shown.empty()) add(key + " " + shown);
  }
  return Terminal::plain(made);
}

std::string shortId(const std::string& requestId) {
  return requestId.substr(0, requestId.find('-'));
}

std::string paired(const json& counters, std::initializer_list<const char*> names) {
  std::string made;
  for (const char* name : names) {
    made += (made.empty() ? "" : "  ") + std::string(name) + " " + text(counters, name);
  }
  return made;
}

}  // namespace

void WatchView::learn(const json& decision) {
  const std::string requestId = text(decision, "requestId");
  const std::string event = text(decision, "event");
  if (requestId.empty() || event.empty()) return;
  if (events_.size() >= kMostEvents) events_.clear();
  events_[requestId] = event;
}

std::string WatchView::subject(const json& decision) const {
  if (const std::string event = text(decision, "event"); !event.empty()) return event;
  if (const std::string uuid = text(decision, "uuid"); !uuid.empty()) {
    const auto known = campaigns_.find(uuid);
    return known == campaigns_.end() ? uuid : known->second;
  }
  const auto known = events_.find(text(decision, "requestId"));
  return known == events_.end() ? "" : known->second;
}

bool WatchView::passes(const json& decision) const {
  const std::string name = subject(decision);
  const bool isLoss = text(decision, "kind") == "lost";
  if (!filter_.event.empty() && name != filter_.event) return isLoss;
  if (filter_.campaign.empty()) return true;
  const bool isCampaign = decision.contains("uuid");
  return isLoss ||
         (isCampaign && (name == filter_.campaign || text(decision, "uuid") == filter_.campaign));
}

std::string WatchView::row(const json& decision) const {
  if (!passes(decision)) return "";
  const Color color = colorOf(decision);
  return terminal_.paint(Color::grey, clock(number(decision, "time"))) + "  " +
         terminal_.paint(color, Terminal::fitted(text(decision, "kind"), 12)) + "  " +
         Terminal::fitted(subject(decision), kSubjectColumns) + "  " +
         terminal_.paint(Color::grey, Terminal::fitted(shortId(text(decision, "requestId")), 8)) +
         "  " + details(decision);
}

std::vector<std::string> WatchView::rows(const std::vector<json>& decisions) {
  std::vector<std::string> shown;
  std::map<std::string, int> counted;
  // The thread that sends a request may be faster than the one that composes its event.
  for (const json& decision : decisions) learn(decision);
  const bool isReadable = decisions.size() <= kReadable;
  for (const json& decision : decisions) {
    const std::string made = row(decision);
    if (made.empty()) continue;
    const Color color = colorOf(decision);
    if (isReadable || color == Color::red || color == Color::yellow ||
        (decision.contains("uuid") && shown.size() < kReadable)) {
      shown.push_back(made);
    } else {
      ++counted[text(decision, "kind")];
    }
  }
  if (shown.size() > kReadable) {
    counted["more"] = static_cast<int>(shown.size() - kReadable);
    shown.resize(kReadable);
  }
  std::string rest;
  for (const auto& [kind, count] : counted) rest += "  " + kind + " " + std::to_string(count);
  if (!rest.empty()) shown.push_back(terminal_.paint(Color::grey, "              and" + rest));
  return shown;
}

std::string WatchView::summary(const json& state) {
  return paired(part(state, "counters"),
                {"composed", "delivered", "waiting", "underWay", "failed", "popupsShown"});
}

std::string WatchView::state(const json& state) {
  const auto heading = [this](const std::string& words) {
    return terminal_.paint(Color::grey, words) + "\n";
  };
  const json& counters = part(state, "counters");
  std::string made = heading("STATE") + "  " + text(state, "status") + ", " +
                     text(state, "network") +
                     (text(state, "popupsPaused") == "true" ? ", popups are paused" : "") + "\n";
  made += heading("COUNTERS since initialize");
  std::string line = " ";
  for (const auto& [name, value] : counters.items()) {
    if (value == 0) continue;
    const std::string pair = " " + name + " " + value.dump();
    if (line.size() + pair.size() > 100) made += std::exchange(line, " ") + "\n";
    line += pair;
  }
  made += (line == " " ? "  all are 0" : line) + "\n";
  made += heading("CAMPAIGNS");
  for (const json& campaign : part(state, "campaigns")) {
    const std::string uuid = text(campaign, "uuid");
    const std::string name = text(campaign, "name");
    if (!name.empty()) campaigns_[uuid] = name;
    made += "  " + Terminal::fitted(name.empty() ? uuid : name, kSubjectColumns) + "  " +
            Terminal::fitted(text(campaign, "type"), 10) + "  on " +
            Terminal::fitted(text(campaign, "event"), 24) + "  shows left " +
            Terminal::fitted(text(campaign, "showsLeft"), 4) + "  " +
            Terminal::plain(text(campaign, "verdict"));
    const std::string last = text(campaign, "last");
    made += (last.empty() ? "" : "; before: " + Terminal::plain(last)) + "\n";
  }
  if (part(state, "campaigns").empty()) made += "  none\n";
  made += heading("STORED ROWS");
  for (const json& row : part(state, "rows")) {
    learn(row);
    made += "  " + Terminal::fitted(text(row, "id"), 6) + "  " +
            Terminal::fitted(text(row, "event"), kSubjectColumns) + "  " +
            Terminal::fitted(shortId(text(row, "requestId")), 8) + "  tried " + text(row, "tries") +
            (text(row, "isDelivered") == "true" ? ", delivered" : "") + "\n";
  }
  if (part(state, "rows").empty()) made += "  none\n";
  return made;
}

}  // namespace kifo::tool
