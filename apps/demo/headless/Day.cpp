#include "apps/demo/headless/Day.h"

#include <algorithm>
#include <iostream>

#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "platform/linux/LinuxPlatform.h"

namespace kifo::demo {

namespace {

using Way = Expectations::Way;
using namespace std::chrono_literals;

constexpr auto patience = 30s;
constexpr std::uint32_t reachableFlag = 2;
constexpr auto tokenOfTheDay = "token-of-the-day";

constexpr auto campaigns = R"({
  "model": [],
  "configuration": {"id": "kiosk", "stopAllEvents": false, "offlineQueueSize": 100},
  "blockedEvents": [{"name": "debug_ping"}]
})";

void tell(const std::string& text) {
  std::cout << text << std::endl;
}

/// The host's side of authorization: it knows its token at once.
class KioskTokens final : public TokenServiceProtocol {
 public:
  void getToken(Completion completion) override { completion(tokenOfTheDay); }
};

KifoInitConfig configurationFor(const server::LocalServer& server) {
  KifoInitConfig configuration;
  configuration.bundle = {"com.example.kiosk"};
  configuration.apiUri = server.apiUri();
  configuration.listenerUri = server.listenerUri();
  configuration.tokenService = std::make_shared<KioskTokens>();
  configuration.applicationName = "kiosk";
  configuration.isDiskCapacityRequired = true;
  return configuration;
}

}  // namespace

Day::Day(std::filesystem::path home, bool printsConsole)
    : home_(std::move(home)),
      host_(std::make_shared<HostLog>(printsConsole)),
      reachability_(std::make_shared<testing::FakeReachability>()) {
  server_.campaigns().serveText(campaigns);
  reachability_->setFlags(reachableFlag);
}

bool Day::live() {
  if (server_.start() == 0) return false;
  tell("A server listens on " + server_.uri() + ".");
  return firstMorning() && customers() && outage() && returnOfTheServer() && nightAndNextMorning();
}

bool Day::judge() {
  const auto received = server_.requests().on("/sdkListenerEvent");
  tell("\nWhat the server saw:");
  Expectations::print(received, *host_);
  auto faults = expectations_.faults(received, *host_);
  for (const auto& request : server_.requests().all()) {
    if (request->header("Authorization") != std::string("BearerMOBILE ") + tokenOfTheDay) {
      faults.push_back("a request bears a wrong token: " + request->header("Authorization"));
    }
  }
  for (const auto& fault : faults) tell("  wrong: " + fault);
  if (faults.empty()) {
    tell("The server saw each of the " + std::to_string(received.size()) +
         " events once: nothing is missing and nothing came twice.");
  }
  return faults.empty();
}

bool Day::firstMorning() {
  tell("The kiosk is installed and switched on.");
  // An installation's first user is a change from nobody. It is only sent if the server's first
  // answer, which says how many requests may be stored, is quicker than the first write.
  expectations_.allow("actor_change", {{"actorId", ""}});
  expectations_.expect("install", {{"anonymous", true}}, Way::FRESH);
  expectations_.expect("sdk_initialize", nlohmann::json::object(), Way::FRESH);
  switchOn();
  if (!initialize() || !settle()) return false;
  expectations_.expect("push_token_change", {{"token_provider", "apns"}}, Way::FRESH);
  expectations_.expect("push_token_change", {{"token_provider", "firebase"}}, Way::FRESH);
  Kifo::setApnsToken({0x0A, 0xFF, 0x42});
  Kifo::setPushToken("kiosk-push-token");
  expectations_.expect("app_foreground", nlohmann::json::object(), Way::FRESH);
  Kifo::applicationDidBecomeActive();
  return settle();
}

bool Day::customers() {
  tell("A customer looks around and logs in.");
  const auto home = std::make_shared<HomeScreen>();
  const auto catalogue = std::make_shared<CatalogueScreen>();
  show(home, "HomeScreen");
  if (!settle()) return false;
  event("product_viewed", {{"sku", "B-17"}, {"price", 12.5}, {"note", "the barista's choice"}},
        Way::FRESH);
  KifoEventManager::sendEvent("debug_ping", std::nullopt);  // The server blocks this one.
  if (!settle()) return false;
  hide(home, "HomeScreen");
  if (!settle()) return false;
  show(catalogue, "CatalogueScreen");
  if (!settle()) return false;
  expectations_.expect("login", {{"page_name", "CatalogueScreen"}, {"method", "badge"}},
                       Way::FRESH);
  KifoEventManager::sendLoginEvent(catalogue, std::nullopt, {{"method", "badge"}});
  if (!settle()) return false;
  expectations_.expect("actor_change", {{"newActorId", "customer-4711"}}, Way::FRESH);
  Kifo::updateActorId("customer-4711");
  expectations_.expect("basket_opened", {{"items", 3}, {"actorId", "customer-4711"}}, Way::FRESH);
  KifoEventManager::sendEvent("basket_opened", std::nullopt, {{"items", 3}});
  return settle();
}

bool Day::outage() {
  tell("The server goes away while events are sent.");
  server_.stop();
  host_->mark();
  event("item_added", {{"sku", "B-17"}}, Way::RESENT);
  event("item_added", {{"sku", "C-04"}}, Way::RESENT);
  // Not before the host knows that these two failed does the cable come off.
  if (!host_->waitForDecisions("answered", 2, patience)) return false;
  network(false);
  const auto checkout = std::make_shared<CheckoutScreen>();
  show(checkout, "CheckoutScreen");
  event("payment_started", {{"amount", 37.5}, {"city", "İzmir"}}, Way::RESENT);
  event("payment_done", {{"amount", 37.5}}, Way::RESENT);
  hide(checkout, "CheckoutScreen");
  return host_->waitForDecisions("stored", 6, patience);
}

bool Day::returnOfTheServer() {
  tell("The server comes back: what was stored is sent, one request after another.");
  if (server_.start() == 0) return false;
  host_->mark();
  network(true);
  if (!settle()) return false;
  event("receipt_printed", {{"pages", 1}}, Way::FRESH);
  return settle();
}

bool Day::nightAndNextMorning() {
  tell("In the evening the cable comes off once more, and the kiosk is switched off.");
  host_->mark();
  network(false);
  event("stock_counted", {{"shelves", 12}}, Way::RESENT);
  expectations_.expect("app_background", nlohmann::json::object(), Way::RESENT);
  Kifo::applicationWillResignActive();
  if (!Kifo::shutdown()) return false;
  tell("The next morning it is switched on again: no install, and the evening's events arrive.");
  reachability_->setFlags(reachableFlag);
  expectations_.expect("sdk_initialize", {{"actorId", "customer-4711"}}, Way::FRESH);
  switchOn();
  return initialize() && settle() && Kifo::shutdown();
}

void Day::switchOn() {
  LinuxPlatformOptions options;
  options.documentsDirectory = home_.string();
  options.applicationIdentifier = "com.example.kiosk";
  auto platform = makeLinuxPlatform(options);
  platform.reachability = reachability_;
  platform.console = host_;
  platform.inspector = host_;
  Platform::install(std::move(platform));
}

bool Day::initialize() {
  host_->mark();
  Kifo::initialize(configurationFor(server_), [] { tell("  The server has answered."); });
  return host_->waitForLine("Kifo Kifo: KifoNetworkStatus: ONLINE", patience);
}

void Day::network(bool reachable) {
  reachability_->change(reachable ? reachableFlag : 0);
  host_->waitForLine(
      std::string("Kifo Kifo: KifoNetworkStatus: ") + (reachable ? "ONLINE" : "OFFLINE"), patience);
}

bool Day::settle() {
  const auto arrived = [&](const server::RequestLog::Requests& requests) {
    return static_cast<std::size_t>(std::ranges::count_if(requests, [](const auto& request) {
             return request->path == "/sdkListenerEvent";
           })) >= expectations_.count();
  };
  if (!server_.requests().waitFor(arrived, patience) || !host_->waitForAnswers(patience)) {
    return false;
  }
  // What the last answers led to runs out: each step of it queues the next one.
  const auto platform = Platform::current();
  for (int step = 0; step < 10; ++step) {
    platform->answerQueue->sync([] {});
    platform->mainQueue->sync([] {});
  }
  return host_->waitForAnswers(patience);
}

void Day::show(const std::shared_ptr<KifoViewController>& screen, const std::string& name) {
  const bool online = Kifo::networkStatus() == KifoNetworkStatus::ONLINE;
  expectations_.expect("page_in", {{"page_name", name}}, online ? Way::FRESH : Way::RESENT);
  screen->viewDidLoad();
  screen->viewWillAppear(false);
  screen->viewDidAppear(false);
}

void Day::hide(const std::shared_ptr<KifoViewController>& screen, const std::string& name) {
  const bool online = Kifo::networkStatus() == KifoNetworkStatus::ONLINE;
  expectations_.expect("page_out", {{"page_name", name}}, online ? Way::FRESH : Way::RESENT);
  screen->viewWillDisappear(false);
}

void Day::event(const std::string& name, const nlohmann::json& parameters, Expectations::Way way) {
  expectations_.expect(name, parameters, way);
  EventParameters given;
  for (const auto& [key, value] : parameters.items()) given[key] = value;
  KifoEventManager::sendEvent(name, std::nullopt, std::move(given));
}

}  // namespace kifo::demo
