#include "apps/demo/headless/Day.h"

#include <algorithm>
#include <future>
#include <iostream>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/network/KifoReachability.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "platform/linux/LinuxPlatform.h"

namespace kifo::demo {

namespace {

using Way = Expectations::Way;
using namespace std::chrono_literals;

constexpr auto patience = 30s;
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

KifoInitConfig configurationFor(const testing::LocalServer& server) {
  KifoInitConfig configuration;
  configuration.bundle = {"com.example.kiosk"};
  configuration.apiUri = server.apiUri();
  configuration.listenerUri = server.listenerUri();
  configuration.tokenService = std::make_shared<KioskTokens>();
  configuration.applicationName = "kiosk";
  configuration.isDiskCapacityRequired = true;
  return configuration;
}

/// A cable that was just plugged in is of use only a moment later: until then the morning's events
/// would be stored.
bool awaitNetwork() {
  const auto watcher = KifoReachability::create({}).reachability;
  if (!watcher) return true;  // nobody will say that it is not there
  const auto reachable = std::make_shared<std::promise<void>>();
  watcher->setWhenReachable([reachable, once = false](auto&) mutable {
    if (!std::exchange(once, true)) reachable->set_value();
  });
  watcher->startNotifier();
  return reachable->get_future().wait_for(patience) == std::future_status::ready;
}

}  // namespace

Day::Day(std::filesystem::path home, Network& network, bool printsConsole)
    : home_(std::move(home)),
      network_(network),
      server_({.host = network.serverAddress()}),
      host_(std::make_shared<HostLog>(printsConsole)) {
  server_.campaigns().serveText(campaigns);
}

bool Day::live() {
  if (!startServer()) return false;
  tell("A server listens on " + server_.uri() + ".");
  return firstMorning() && customers() && outage() && returnOfTheServer() && losses() &&
         nightAndNextMorning();
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
  if (!change([this] { network_.unplug(); }, "OFFLINE")) return false;
  const auto checkout = std::make_shared<CheckoutScreen>();
  show(checkout, "CheckoutScreen");
  event("payment_started", {{"amount", 37.5}, {"city", "İzmir"}}, Way::RESENT);
  event("payment_done", {{"amount", 37.5}}, Way::RESENT);
  hide(checkout, "CheckoutScreen");
  return host_->waitForDecisions("stored", 6, patience);
}

bool Day::returnOfTheServer() {
  tell("The server comes back: what was stored is sent, one request after another.");
  if (!startServer()) return false;
  host_->mark();
  if (!change([this] { network_.plugIn(); }, "ONLINE") || !settle()) return false;
  event("receipt_printed", {{"pages", 1}}, Way::FRESH);
  return settle();
}

bool Day::losses() {
  return std::ranges::all_of(network_.losses(), [this](const auto& loss) { return lose(loss); });
}

bool Day::lose(const Network::Loss& loss) {
  constexpr int count = 5;
  tell(loss.told);
  host_->mark();
  if (!change(loss.lose, "OFFLINE")) return false;
  tell("  The SDK is offline: it stores " + std::to_string(count) + " events.");
  for (int table = 1; table <= count; ++table) {
    event("table_laid", {{"table", table}, {"without", loss.what}}, Way::RESENT);
  }
  if (!host_->waitForDecisions("stored", count, patience)) return false;
  if (!change(loss.find, "ONLINE") || !settle()) return false;
  tell("  It is online again: they went out, one after another.");
  return true;
}

bool Day::nightAndNextMorning() {
  tell("In the evening the cable comes off once more, and the kiosk is switched off.");
  host_->mark();
  if (!change([this] { network_.unplug(); }, "OFFLINE")) return false;
  event("stock_counted", {{"shelves", 12}}, Way::RESENT);
  expectations_.expect("app_background", nlohmann::json::object(), Way::RESENT);
  Kifo::applicationWillResignActive();
  if (!Kifo::shutdown()) return false;
  tell("The next morning it is switched on again: no install, and the evening's events arrive.");
  network_.plugIn();
  expectations_.expect("sdk_initialize", {{"actorId", "customer-4711"}}, Way::FRESH);
  switchOn();
  return initialize() && settle() && Kifo::shutdown();
}

void Day::switchOn() {
  LinuxPlatformOptions options;
  options.documentsDirectory = home_.string();
  options.applicationIdentifier = "com.example.kiosk";
  auto platform = makeLinuxPlatform(options);
  network_.equip(platform);
  platform.console = host_;
  platform.inspector = host_;
  Platform::install(std::move(platform));
}

bool Day::initialize() {
  if (!awaitNetwork()) return false;
  host_->mark();
  Kifo::initialize(configurationFor(server_), [] { tell("  The server has answered."); });
  return host_->waitForLine("Kifo Kifo: KifoNetworkStatus: ONLINE", patience);
}

bool Day::startServer() {
  int port = 0;
  network_.atTheServer([&] { port = server_.start(); });
  return port != 0;
}

bool Day::change(const std::function<void()>& change, const std::string& status) {
  change();
  return host_->waitForLine("Kifo Kifo: KifoNetworkStatus: " + status, patience);
}

bool Day::settle() {
  const auto arrived = [&](const testing::RequestLog::Requests& requests) {
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
  KifoEventManager::sendEvent(name, std::nullopt, *valueFromJson(parameters.dump())->asMap());
}

}  // namespace kifo::demo
