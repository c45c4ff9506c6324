#include "Kifo_iOS_Common_Kit/core/runtime/Watching.h"

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "Kifo_iOS_Common_Kit/core/Version.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Inspect.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupGate.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupRules.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupType.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunication.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "Kifo_iOS_Common_Kit/storage/KifoSqliteManager.h"

namespace kifo {
namespace {

/// The oldest rows; the counters tell how many there are.
constexpr auto kSelectRows =
    "select ID, REQUEST_ID, case when json_valid(PARAMETERS) then "
    "json_extract(PARAMETERS, '$.name') end, DATE, TRYCOUNT, ISSYNC_SUCCESS from KifoLog "
    "order by ID limit 200";

Value orNull(const std::optional<std::string>& text) {
  return text ? Value(*text) : Value();
}

Value integerOrNull(const StoreConnection::Cell& cell) {
  return cell ? Value(std::strtoll(cell->c_str(), nullptr, 10)) : Value();
}

/// Why the campaign would show now when its event comes, or not.
std::string verdictOf(const Runtime& runtime, const AppCommunicationItem& item) {
  if (!popupType(item.type.value_or(""))) return "its type is no popup's";
  if (!item.uuid || !item.maxShowCount) return "it has no uuid or no show count";
  if (rules::hasExpired(item)) return "it has expired";
  if (rules::storedShows(item) < 1) return "no shows are left";
  if (runtime.popupGate->holds(*item.uuid)) return "the host holds it back";
  return "waits for its event";
}

Value campaign(const Runtime& runtime, const AppCommunicationItem& item) {
  const bool hasBudget = item.uuid && item.maxShowCount;
  return {{"uuid", orNull(item.uuid)},
          {"name", orNull(item.name)},
          {"type", orNull(item.type)},
          {"event", orNull(item.triggeringEventName)},
          {"showsLeft", hasBudget ? Value(rules::storedShows(item)) : Value()},
          {"verdict", verdictOf(runtime, item)},
          {"last", runtime.campaignOutcomes.of(item.uuid.value_or(""))}};
}

Value campaigns(const Runtime& runtime) {
  Value::List list;
  const auto answer = runtime.session.appCommunication();
  if (!answer || !answer->model) return Value::list();
  for (const auto& item : *answer->model) list.push_back(campaign(runtime, *item));
  return Value::list(std::move(list));
}

Value counts(const Counts& counts) {
  Value::Map values;
  for (std::size_t index = 0; index < kCounters; ++index) {
    const auto counter = static_cast<Counter>(index);
    values.emplace(std::string(name(counter)), counts[counter]);
  }
  return values;
}

Value::Map stateOf(const Runtime& runtime) {
  const Statistics statistics = Kifo::statistics();
  return {{"kind", "state"},
          {"time", Platform::current()->clock->millisecondsSince1970()},
          {"status", std::string(rawValue(runtime.session.initializeStatus.load()))},
          {"network", std::string(rawValue(runtime.session.networkStatus.load()))},
          {"popupsPaused", runtime.popupGate->isPaused()},
          {"counters", counts(statistics.sinceInitialize)},
          {"campaigns", campaigns(runtime)}};
}

/// On the main queue. A store that has no file yet gets none by being looked at.
void replyWithState(const WatchService::Reply& reply) {
  const auto runtime = Runtime::existing();
  if (!runtime) return;
  Value::Map state = stateOf(*runtime);
  const auto store = runtime->store();
  std::error_code ignored;
  if (!std::filesystem::exists(store->databasePath(), ignored)) {
    state["rows"] = Value::list();
    return reply(jsonFromValue(state));
  }
  store->perform([state = std::move(state), reply](StoreConnection& file) mutable {
    Value::List rows;
    file.run(kSelectRows, [&](const StoreConnection::Row& row) {
      rows.push_back({{"id", integerOrNull(row[0])},
                      {"requestId", orNull(row[1])},
                      {"event", orNull(row[2])},
                      {"date", integerOrNull(row[3])},
                      {"tries", integerOrNull(row[4])},
                      {"isDelivered", row[5] == "1"}});
    });
    state["rows"] = Value::list(std::move(rows));
    reply(jsonFromValue(state));
  });
}

std::string greeting() {
  const auto runtime = Runtime::existing();
  return jsonFromValue(Value::Map{
      {"kind", "host"},
      {"application", runtime ? runtime->session.identity()->applicationName : std::string()},
      {"sdk", KIFO_VERSION}});
}

}  // namespace

void startWatching() {
  const std::string problem = Platform::current()->watch->open(
      {.greeting = greeting,
       .state =
           [](WatchService::Reply reply) {
             Platform::current()->mainQueue->post(
                 [reply = std::move(reply)] { replyWithState(reply); });
           },
       .followed = [](bool isFollowed) { Watch::isOn = isFollowed; }});
  Console::print(Kifo::LOG_TAG, problem.empty() ? "\"kifo watch\" can look into this process"
                                                : "\"kifo watch\" is not possible: " + problem);
}

void startWatchingIfAsked() {
  const char* asked = std::getenv("KIFO_WATCH");
  if (asked && std::string_view(asked) == "1") startWatching();
}

}  // namespace kifo
