#include "apps/demo/headless/Scenario.h"

#include <algorithm>
#include <future>
#include <iostream>
#include <utility>

#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/network/KifoReachability.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "platform/linux/LinuxPlatform.h"

namespace kifo::demo {

namespace {

using Sending = Expectations::Sending;
using namespace std::chrono_literals;

constexpr auto kBound = 30s;
constexpr auto hostToken = "token-of-the-day";

constexpr auto campaigns = R"({
  "model": [],
  "configuration": {"id": "kiosk", "stopAllEvents": false, "offlineQueueSize": 100},
  "blockedEvents": [{"name": "debug_ping"}]
})";

void print(const std::string& text) {
  std::cout << text << std::endl;
}

/// The host's token service, which answers at once.
class KioskTokens final : public TokenServiceProtocol {
 public:
  void getToken(Completion completion) override { completion(hostToken); }
};

KifoInitConfig configurationFor(const testing::LocalServer& server) {
  KifoInitConfig configuration;
  configuration.bundle = {"com.example.kiosk"};
  configuration.apiUri = server.apiUri();
  configuration.listenerUri = server.listenerUri();
  configuration.tokenService = std::make_shared<KioskTokens>();
  configuration.applicationName = "kiosk";
  configuration.isDiskCapacityRequired = true;
  configuration.resendsWhenServerReturns = true;
  configuration.requiresConsent = true;
  return configuration;
}

/// Waits until a cable that was just plugged in can be used: until then events would be stored.
bool awaitNetwork() {
  const auto watcher = KifoReachability::create({}).reachability;
  if (!watcher) return true;  // Without a watcher the SDK takes the network as there.
  const auto reachable = std::make_shared<std::promise<void>>();
  watcher->setWhenReachable([reachable, once = false](auto&) mutable {
    if (!std::exchange(once, true)) reachable->set_value();
  });
  watcher->startNotifier();
  return reachable->get_future().wait_for(kBound) == std::future_status::ready;
}

}  // namespace

Scenario::Scenario(std::filesystem::path home, Network& network, bool printsConsole)
    : home_(std::move(home)),
      network_(network),
      server_({.host = network.serverAddress()}),
      host_(std::make_shared<HostLog>(printsConsole)) {
  server_.campaigns().serveText(campaigns);
}

bool Scenario::run() {
  if (!startServer()) return false;
  print("A server listens on " + server_.uri() + ".");
  return firstMorning() && customers() && outage() && returnOfTheServer() && serverOutage() &&
         losses() && nightAndNextMorning();
}

bool Scenario::judge() {
  const auto received = server_.requests().on("/sdkListenerEvent");
  print("\nWhat the server saw:");
  Expectations::print(received, *host_);
  auto faults = expectations_.faults(received, *host_);
  for (const auto& request : server_.requests().all()) {
    if (request->header("Authorization") != std::string("BearerMOBILE ") + hostToken) {
      faults.push_back("a request bears a wrong token: " + request->header("Authorization"));
    }
  }
  for (const auto& fault : faults) print("  wrong: " + fault);
  if (faults.empty()) {
    print("The server saw each of the " + std::to_string(received.size()) +
          " events once: nothing is missing and nothing came twice.");
  }
  return faults.empty();
}

bool Scenario::firstMorning() {
  print("The kiosk is installed and switched on.");
  // An installation's first user counts as a change from the user "". It is only sent if the
  // server's first answer, which says how many requests may be stored, is quicker than the first
  // write.
  expectations_.allow("actor_change", {{"actorId", ""}});
  expectations_.expect("install", {{"anonymous", true}}, Sending::FRESH);
  expectations_.expect("sdk_initialize", {}, Sending::FRESH);
  switchOn();
  if (!askForConsent() || !settle()) return false;
  expectations_.expect("push_token_change", {{"token_provider", "apns"}}, Sending::FRESH);
  expectations_.expect("push_token_change", {{"token_provider", "firebase"}}, Sending::FRESH);
  Kifo::setApnsToken({0x0A, 0xFF, 0x42});
  Kifo::setPushToken("kiosk-push-token");
  expectations_.expect("app_foreground", {}, Sending::FRESH);
  Kifo::applicationDidBecomeActive();
  return settle();
}

bool Scenario::askForConsent() {
  print("Its user is asked first: until the answer nothing leaves, and nothing is kept.");
  if (!initialize()) return false;
  KifoEventManager::sendEvent("looked_at", std::nullopt);
  Kifo::setPushToken("dropped");
  if (!Kifo::waitUntilIdle(kBound.count())) return false;
  const bool isQuiet = server_.requests().count() == 0 && std::filesystem::is_empty(home_);
  print(isQuiet ? "  The server has seen no request, and the home is empty."
                : "  wrong: something was sent or kept");
  print("The user agrees.");
  Kifo::giveConsent();
  return isQuiet && awaitOnline();
}

bool Scenario::customers() {
  print("A customer looks around and logs in.");
  const auto home = std::make_shared<HomeScreen>();
  const auto catalogue = std::make_shared<CatalogueScreen>();
  show(home, "HomeScreen");
  if (!settle()) return false;
  event("product_viewed", {{"sku", "B-17"}, {"price", 12.5}, {"note", "the barista's choice"}},
        Sending::FRESH);
  KifoEventManager::sendEvent("debug_ping", std::nullopt);  // The server blocks this one.
  if (!settle()) return false;
  hide(home, "HomeScreen");
  if (!settle()) return false;
  show(catalogue, "CatalogueScreen");
  if (!settle()) return false;
  expectations_.expect("login", {{"page_name", "CatalogueScreen"}, {"method", "badge"}},
                       Sending::FRESH);
  KifoEventManager::sendLoginEvent(catalogue, std::nullopt, {{"method", "badge"}});
  if (!settle()) return false;
  expectations_.expect("actor_change", {{"newActorId", "customer-4711"}}, Sending::FRESH);
  Kifo::updateActorId("customer-4711");
  expectations_.expect("basket_opened", {{"items", 3}, {"actorId", "customer-4711"}},
                       Sending::FRESH);
  KifoEventManager::sendEvent("basket_opened", std::nullopt, {{"items", 3}});
  return settle();
}

bool Scenario::outage() {
  print("The server goes away while events are sent.");
  server_.stop();
  host_->mark();
  event("item_added", {{"sku", "B-17"}}, Sending::RESENT);
  event("item_added", {{"sku", "C-04"}}, Sending::RESENT);
  // Not before the host knows that these two failed does the cable come off.
  if (!host_->waitForDecisions("answered", 2, kBound)) return false;
  if (!change([this] { network_.unplug(); }, "OFFLINE")) return false;
  const auto checkout = std::make_shared<CheckoutScreen>();
  show(checkout, "CheckoutScreen");
  event("payment_started", {{"amount", 37.5}, {"city", "İzmir"}}, Sending::RESENT);
  event("payment_done", {{"amount", 37.5}}, Sending::RESENT);
  hide(checkout, "CheckoutScreen");
  return host_->waitForDecisions("stored", 6, kBound);
}

bool Scenario::returnOfTheServer() {
  print("The server comes back: what was stored is sent, one request after another.");
  if (!startServer()) return false;
  host_->mark();
  if (!change([this] { network_.plugIn(); }, "ONLINE") || !settle()) return false;
  event("receipt_printed", {{"pages", 1}}, Sending::FRESH);
  return settle();
}

bool Scenario::serverOutage() {
  constexpr int count = 3;
  print("The server goes away again, but the network stays up.");
  server_.stop();
  host_->mark();
  for (int cup = 1; cup <= count; ++cup) event("cup_filled", {{"cup", cup}}, Sending::RESENT);
  if (!host_->waitForDecisions("answered", count, kBound)) return false;
  print("The server comes back: its answer to the next event has the stored ones sent, too.");
  if (!startServer()) return false;
  event("shift_ended", {{"cups", count}}, Sending::FRESH);
  return settle();
}

bool Scenario::losses() {
  return std::ranges::all_of(network_.losses(), [this](const auto& loss) { return lose(loss); });
}

bool Scenario::lose(const Network::Loss& loss) {
  constexpr int count = 5;
  print(loss.announcement);
  host_->mark();
  if (!change(loss.lose, "OFFLINE")) return false;
  print("  The SDK is offline: it stores " + std::to_string(count) + " events.");
  for (int table = 1; table <= count; ++table) {
    event("table_laid", {{"table", table}, {"without", loss.what}}, Sending::RESENT);
  }
  if (!host_->waitForDecisions("stored", count, kBound)) return false;
  if (!change(loss.find, "ONLINE") || !settle()) return false;
  print("  It is online again: they went out, one after another.");
  return true;
}

bool Scenario::nightAndNextMorning() {
  print("In the evening the cable comes off once more, and the kiosk is switched off.");
  host_->mark();
  if (!change([this] { network_.unplug(); }, "OFFLINE")) return false;
  event("stock_counted", {{"shelves", 12}}, Sending::RESENT);
  expectations_.expect("app_background", {}, Sending::RESENT);
  Kifo::applicationWillResignActive();
  if (!Kifo::shutdown()) return false;
  print("The next morning it is switched on again: no install, and the evening's events arrive.");
  network_.plugIn();
  expectations_.expect("sdk_initialize", {{"actorId", "customer-4711"}}, Sending::FRESH);
  switchOn();
  return initialize() && awaitOnline() && settle() && Kifo::shutdown();
}

void Scenario::switchOn() {
  LinuxPlatformOptions options;
  options.documentsDirectory = home_.string();
  options.applicationIdentifier = "com.example.kiosk";
  auto platform = makeLinuxPlatform(options);
  network_.equip(platform);
  platform.console = host_;
  platform.inspector = host_;
  Platform::install(std::move(platform));
}

bool Scenario::initialize() {
  if (!awaitNetwork()) return false;
  host_->mark();
  Kifo::initialize(configurationFor(server_), [] { print("  The server has answered."); });
  return true;
}

bool Scenario::awaitOnline() {
  return host_->waitForLine("Kifo Kifo: KifoNetworkStatus: ONLINE", kBound);
}

bool Scenario::startServer() {
  int port = 0;
  network_.atTheServer([&] { port = server_.start(); });
  return port != 0;
}

bool Scenario::change(const std::function<void()>& change, const std::string& status) {
  change();
  return host_->waitForLine("Kifo Kifo: KifoNetworkStatus: " + status, kBound);
}

bool Scenario::settle() {
  const auto arrived = [&](const testing::RequestLog::Requests& requests) {
    return static_cast<std::size_t>(std::ranges::count_if(requests, [](const auto& request) {
             return request->path == "/sdkListenerEvent";
           })) >= expectations_.count();
  };
  return server_.requests().waitFor(arrived, kBound) && Kifo::waitUntilIdle(kBound.count());
}

void Scenario::show(const std::shared_ptr<KifoViewController>& screen, const std::string& name) {
  const bool online = Kifo::networkStatus() == KifoNetworkStatus::ONLINE;
  expectations_.expect("page_in", {{"page_name", name}}, online ? Sending::FRESH : Sending::RESENT);
  screen->viewDidLoad();
  screen->viewWillAppear(false);
  screen->viewDidAppear(false);
}

void Scenario::hide(const std::shared_ptr<KifoViewController>& screen, const std::string& name) {
  const bool online = Kifo::networkStatus() == KifoNetworkStatus::ONLINE;
  expectations_.expect("page_out", {{"page_name", name}},
                       online ? Sending::FRESH : Sending::RESENT);
  screen->viewWillDisappear(false);
}

void Scenario::event(const std::string& name, EventParameters parameters,
                     Expectations::Sending sending) {
  expectations_.expect(name, parameters, sending);
  KifoEventManager::sendEvent(name, std::nullopt, std::move(parameters));
}

}  // namespace kifo::demo
