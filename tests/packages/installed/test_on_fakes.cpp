// A host's test: no network, no disk but a temporary directory, no time that passes by itself.
#include <Kifo_iOS_Common_Kit/core/Kifo.h>
#include <Kifo_iOS_Common_Kit/events/KifoEventManager.h>
#include <Kifo_iOS_Common_Kit/ports/ReachabilityFlags.h>
#include <testing/FakePlatform.h>

int main() {
  const kifo::testing::InstalledFakePlatform fake;
  fake.reachability->setFlags(kifo::ReachabilityFlags::reachable);
  fake.http->setHandler([](const kifo::HttpRequest&) {
    return kifo::HttpAnswer{std::nullopt, 200, R"({"configuration": {"stopAllEvents": false}})"};
  });
  kifo::KifoInitConfig configuration;
  configuration.bundle = {"com.example.shop"};
  configuration.apiUri = "https://api.test/inapp";
  configuration.listenerUri = "https://listener.test/events";
  configuration.authorization = "token";
  kifo::Kifo::initialize(configuration);
  fake.runUntilIdle();
  kifo::KifoEventManager::sendEvent("basket_opened", std::nullopt, {{"items", 3}});
  fake.runUntilIdle();
  const auto sent = fake.http->events("basket_opened");
  return sent.size() == 1 && sent[0]["items"] == 3 ? 0 : 1;
}
