#include <stdlib.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <future>
#include <nlohmann/json.hpp>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/Record.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/events/InAppTrigger.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupManager.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunication.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"
#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "bench/Table.h"
#include "bench/popups/PopupBenches.h"
#include "platform/linux/LinuxPlatform.h"

namespace kifo::bench {
namespace {

constexpr int kCampaigns = 500;
constexpr int kRuns = 300;

using Clock = std::chrono::steady_clock;

double since(Clock::time_point begin) {
  return std::chrono::duration<double, std::micro>(Clock::now() - begin).count();
}

class Screen final : public ViewController {
 public:
  [[nodiscard]] std::string className() const override { return "BenchScreen"; }
};

struct Nobody final : InAppReporter {
  void opened(std::shared_ptr<AppCommunicationItem>, std::shared_ptr<ViewController>,
              std::optional<std::string>) override {}
  void answered(std::shared_ptr<AppCommunicationItem>, InAppAnswer, std::shared_ptr<ViewController>,
                std::optional<std::string>) override {}
};

/// Surveys that each wait for an event of their own; the odd ones may not be shown any more.
std::shared_ptr<AppCommunication> campaigns() {
  nlohmann::json model = nlohmann::json::array();
  for (int i = 0; i < kCampaigns; ++i) {
    const std::string number = std::to_string(i);
    model.push_back({{"type", "SURVEY"},
                     {"uuid", "campaign-" + number},
                     {"triggeringEventName", "event_" + number},
                     {"expireDate", 4102444800000.0},
                     {"maxShowCount", i % 2 == 0 ? 1000000 : 0},
                     {"header", {{"text", "Campaign " + number}, {"color", "1C1C1E"}}},
                     {"choices", {{{"id", "a"}, {"text", "One"}}, {{"id", "b"}, {"text", "Two"}}}},
                     {"submitButton", {{"id", "s"}, {"text", "Send"}}}});
  }
  return decode<AppCommunication>(nlohmann::json{{"model", model}}.dump());
}

/// From the event to the last campaign that it names, over the main queue and back.
void measureTrigger(const std::string& event, int expected, const std::string& what) {
  Samples samples;
  for (int i = 0; i < kRuns; ++i) {
    std::promise<void> done;
    int found = 0;
    const auto begin = Clock::now();
    const auto runtime = Runtime::current();
    runtime->inAppTrigger->eventSent(runtime, event, [&](const auto&) { ++found; });
    Platform::current()->mainQueue->post([&] { done.set_value(); });
    done.get_future().wait();
    samples.add(since(begin));
    if (found != expected) std::abort();
  }
  row(what,
      "median " + microseconds(samples.median()) + ", 99 % " + microseconds(samples.quantile(0.99)),
      "wanted 1000 µs");
}

void measureHop() {
  Samples samples;
  for (int i = 0; i < kRuns; ++i) {
    std::promise<void> done;
    const auto begin = Clock::now();
    Platform::current()->mainQueue->post([&] { done.set_value(); });
    done.get_future().wait();
    samples.add(since(begin));
  }
  row("floor: the main queue's hop alone", "median " + microseconds(samples.median()), "");
}

/// Every campaign through its show operation: half of them are presented, half refused.
void measureManager(const AppCommunication& all) {
  PopupManager manager(std::make_shared<Nobody>());
  const auto screen = std::make_shared<Screen>();
  Samples whole;
  Samples one;
  for (int i = 0; i < kRuns / 10; ++i) {
    const auto begin = Clock::now();
    for (const auto& item : *all.model) {
      const auto start = Clock::now();
      manager.showNotificationSurveyPopUpRadioGroupWindow(screen, "home", item, {});
      one.add(since(start));
    }
    whole.add(since(begin));
  }
  row("a show operation: checked, spent, presented or refused",
      "median " + microseconds(one.median()) + ", 99 % " + microseconds(one.quantile(0.99)),
      "wanted 1000 µs");
  row("all 500 of them, one after another", "median " + microseconds(whole.median()), "");
}

}  // namespace

void choosingBench() {
  section("choosing among " + std::to_string(kCampaigns) + " campaigns");
  char directory[] = "/tmp/kifo-bench-XXXXXX";
  if (!mkdtemp(directory)) return;
  LinuxPlatformOptions options;
  options.documentsDirectory = directory;
  Platform platform = makeLinuxPlatform(options);
  platform.console = nullPlatform().console;
  platform.reachability = nullPlatform().reachability;
  platform.popups = nullPlatform().popups;
  Platform::install(std::move(platform));
  const auto all = campaigns();
  Runtime::current()->session.setAppCommunication(all);
  measureHop();
  measureTrigger("event_499", 1, "the one that an event names");
  measureTrigger("no_such_event", 0, "none of them");
  for (const auto& item : *all->model) item->triggeringEventName = "all";
  measureTrigger("all", kCampaigns, "all 500 of them");
  measureManager(*all);
  Kifo::shutdown();
  std::filesystem::remove_all(directory);
}

}  // namespace kifo::bench
