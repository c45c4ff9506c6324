// A host that is killed at a random instant, by a timer of its own:
//   kifo_killed_host live HOME URI GENERATION MICROSECONDS
//       sends events, changes the actor, shows popups, loads pictures, loses the network
//   kifo_killed_host erase HOME URI GENERATION MICROSECONDS
//       the same for a moment, then revokes the consent
//   kifo_killed_host last HOME URI GENERATION
//       sends all that waits again, and ends
//   kifo_killed_host group HOME URI GENERATION
//       kills itself within a transaction
// Its output, a JSON object a line: "foundActor" and "foundShows" as it begins, "actor" and "shows"
// once the main queue, which writes them, has got that far, "revoked" when all is erased,
// "counters" over the store's life at its own end. A generation is the token of its requests.
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/PreferencesManager.h"
#include "Kifo_iOS_Common_Kit/notifications/PushImage.h"
#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "Kifo_iOS_Common_Kit/storage/DataManager.h"
#include "platform/linux/LinuxPlatform.h"
#include "testing/FakePopupPresenter.h"
#include "testing/FakeReachability.h"

namespace kifo {
namespace {

class Screen final : public ViewController {
 public:
  [[nodiscard]] std::string className() const override { return "Screen"; }
};

void dieIn(long microseconds) {
  sigevent death{};
  death.sigev_notify = SIGEV_SIGNAL;
  death.sigev_signo = SIGKILL;
  timer_t timer{};
  itimerspec when{};
  when.it_value = {microseconds / 1'000'000, microseconds % 1'000'000 * 1000 + 1};
  if (timer_create(CLOCK_MONOTONIC, &death, &timer) != 0) std::exit(70);
  timer_settime(timer, 0, &when, nullptr);
}

/// One write: the parent reads whole lines only.
void say(const nlohmann::json& members) {
  const std::string line = members.dump() + "\n";
  if (::write(STDOUT_FILENO, line.data(), line.size()) < 0) std::exit(71);
}

std::int64_t showsLeft() {
  return Platform::current()->userDefaults->integer("campaign");
}

int storedActor() {
  return std::atoi(PreferencesManager::actorId().c_str());
}

struct Host {
  Host(const std::string& home, const std::string& uri, const std::string& generation) {
    Platform platform = makeLinuxPlatform({.documentsDirectory = home});
    network->setFlags(kReachable);
    platform.reachability = network;
    platform.console = nullPlatform().console;
    platform.popups = std::make_shared<testing::FakePopupPresenter>();
    platform.temporaryDirectory = home + "/pictures";
    Platform::install(std::move(platform));
    configuration.bundle = {"com.example.test"};
    configuration.apiUri = uri + "/getInAppCommunication";
    configuration.listenerUri = uri + "/sdkListenerEvent";
    configuration.authorization = generation;
    configuration.requiresConsent = true;
    pictures = uri + "/picture.jpg";
  }

  void begin() const {
    say({{"foundActor", storedActor()}, {"foundShows", showsLeft()}});
    Kifo::initialize(configuration);
    // Until it has begun, calls are dropped for want of consent.
    Platform::current()->mainQueue->sync([] {});
  }
  /// Loses the network, or has it back, and waits until the SDK has read that.
  void setNetwork(bool isReachable) const {
    network->change(isReachable ? kReachable : 0);
    Platform::current()->reachabilityQueue->sync([] {});
    Platform::current()->mainQueue->sync([] {});
  }
  void loadPictures() const {
    for (;;) {
      attachPushImage(std::make_shared<NotificationContent>(), pictures, [](const auto&) {});
    }
  }
  void live(int rounds) {
    std::thread([this] { loadPictures(); }).detach();
    int actor = storedActor();
    for (int round = 0; round < rounds; ++round) {
      if (round % 16 >= 14) setNetwork(round % 2 == 1);
      Kifo::updateActorId(std::to_string(++actor));
      KifoEventManager::sendEvent(screen, "buy", std::nullopt, {{"round", round}},
                                  [](const auto&) {});
      if (round % 4 != 0) continue;
      nlohmann::json written{{"actor", actor}};
      if (const auto shows = showsLeft(); shows > 0) written["shows"] = shows;
      Platform::current()->mainQueue->sync([] {});
      say(written);
    }
  }
  /// Until nothing waits any more. Says how many do, so that the parent sees it work.
  void sendAll() const {
    std::int64_t left = 1;
    while (left > 0) {
      setNetwork(false);
      setNetwork(true);
      Kifo::waitUntilIdle(5.0);
      left = Kifo::statistics().sinceInitialize[Counter::waiting];
      say({{"left", left}});
    }
    nlohmann::json counters;
    for (std::size_t index = 0; index < kCounters; ++index) {
      const auto counter = static_cast<Counter>(index);
      counters[std::string(name(counter))] = Kifo::statistics().overLife[counter];
    }
    say({{"counters", counters}});
  }
  /// Stores ten rows, and then a group that is too large for SQLite's cache, so that pages of it
  /// reach the file before the process dies.
  static void dieWithinGroup() {
    const DataManager data;
    data.createTable();
    const auto storeAll = [&](int count, const std::string& body) {
      Platform::current()->mainQueue->sync([&] {
        for (int number = 0; number < count; ++number) {
          data.cacheLog(1000, std::to_string(number), [=] {
            if (number == 90) raise(SIGKILL);
            return KifoLog(0, body, "http://h/p", "POST", 1, 0, 0, std::to_string(number));
          });
        }
      });
    };
    storeAll(10, "{}");
    Platform::current()->mainQueue->sync([] {});
    storeAll(100, "\"" + std::string(100'000, 'x') + "\"");
    pause();
  }

  static constexpr std::uint32_t kReachable = 2;
  const std::shared_ptr<testing::FakeReachability> network =
      std::make_shared<testing::FakeReachability>();
  const std::shared_ptr<Screen> screen = std::make_shared<Screen>();
  KifoInitConfig configuration;
  std::string pictures;
};

int run(Host& host, const std::string& mode) {
  constexpr int noEnd = 1'000'000'000;
  if (mode == "group") Host::dieWithinGroup();
  if (mode == "last") {
    host.begin();
    if (Kifo::consent() == ConsentStatus::GIVEN) host.sendAll();
    return Kifo::shutdown(20.0) ? 0 : 1;
  }
  Kifo::giveConsent();
  host.begin();
  host.live(mode == "erase" ? 64 : noEnd);
  Kifo::revokeConsent();
  Kifo::waitUntilIdle(20.0);
  say({{"revoked", true}});
  pause();
  return 0;
}

}  // namespace
}  // namespace kifo

int main(int count, char** texts) {
  if (count < 5) return 64;
  if (count > 5) kifo::dieIn(std::atol(texts[5]));
  kifo::Host host(texts[2], texts[3], texts[4]);
  return kifo::run(host, texts[1]);
}
