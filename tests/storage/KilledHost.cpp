// A host that is killed at a random instant, by a timer of its own:
//   kifo_killed_host live HOME URI GENERATION MICROSECONDS
//       sends events, changes the actor, shows popups, loads pictures, loses the network
//   kifo_killed_host erase HOME URI GENERATION MICROSECONDS
//       the same for a moment, then revokes the consent
//   kifo_killed_host last HOME URI GENERATION
//       sends all that waits again, and ends
//   kifo_killed_host group HOME URI GENERATION
//       kills itself within a transaction
// Its output: "found ACTOR SHOWS" as it begins, "actor ACTOR" and "shows SHOWS" once the main
// queue, which writes them, has got that far, "revoked" when all is erased, "counter NAME VALUE" of
// the store's life at its own end. A generation is the token of its requests.
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
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
void say(const std::string& line) {
  if (::write(STDOUT_FILENO, (line + "\n").data(), line.size() + 1) < 0) std::exit(71);
}

std::string showsLeft() {
  return std::to_string(Platform::current()->userDefaults->integer("campaign"));
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
    say("found " + PreferencesManager::actorId() + " " + showsLeft());
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
    int actor = std::atoi(PreferencesManager::actorId().c_str());
    for (int round = 0; round < rounds; ++round) {
      if (round % 16 >= 14) setNetwork(round % 2 == 1);
      Kifo::updateActorId(std::to_string(++actor));
      KifoEventManager::sendEvent(screen, "buy", std::nullopt, {{"round", round}},
                                  [](const auto&) {});
      if (round % 4 != 0) continue;
      const std::string shows = showsLeft();
      Platform::current()->mainQueue->sync([] {});
      say("actor " + std::to_string(actor));
      say("shows " + shows);
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
      say("left " + std::to_string(left));
    }
    const Counts life = Kifo::statistics().overLife;
    for (std::size_t index = 0; index < kCounters; ++index) {
      const auto counter = static_cast<Counter>(index);
      say("counter " + std::string(name(counter)) + " " + std::to_string(life[counter]));
    }
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
  say("revoked");
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
