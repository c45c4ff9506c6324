#include <array>
#include <utility>

#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/inapp/InAppReporter.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupGate.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunication.h"
#include "testing/simulation/Server.h"
#include "testing/simulation/World.h"

namespace kifo::testing::simulation {

void World::initialize(std::uint32_t argument, bool isForced) {
  if (Kifo::consent() == ConsentStatus::REFUSED && isWithheld()) return;
  KifoInitConfig configuration;
  configuration.bundle = {"com.example.world"};
  configuration.apiUri = kApi;
  configuration.listenerUri = kListener;
  configuration.applicationName = "World";
  configuration.forceInitialize = isForced;
  configuration.offlineCachingDisabled = argument / 4 % 16 == 15;
  configuration.resendsWhenServerReturns = argument / 256 % 2 == 1;
  configuration.isWifiStatusRequired = argument / 512 % 2 == 1;
  if (argument / 1024 % 3 == 0) configuration.actorId = "actor";
  const bool isRepeated = Kifo::isInitialized() && !isForced;
  if (!isRepeated) isCachingDisabled_ = configuration.offlineCachingDisabled;
  if (argument / 4096 % 2 == 0) {
    configuration.authorization = "given-" + std::to_string(++lastToken_);
  } else {
    configuration.tokenService = tokens_;
  }
  if (!isRepeated) successes_ = std::make_shared<int>(0);
  Kifo::initialize(configuration, [this, successes = successes_] {
    if (++*successes > 1) fail("the success of a start was told twice");
    if (isOn()) sendEvent(0, {});
  });
  if (isRepeated) return;
  configuredToken_ = configuration.authorization;
  if (isWithheld()) {
    pendingToken_ = configuredToken_;
  } else if (configuredToken_) {
    ledger_.token = *configuredToken_;
  }
}

/// Calls at once, as the thread of the user interface does, or has another thread do it.
void World::onHostThread(std::uint32_t argument, const std::function<void()>& call) {
  const auto guarded = [call] {
    if (mayCall()) call();
  };
  const auto which = argument / 8 % 4;
  if (which < 2) return guarded();
  (which == 2 ? process_->hostA : process_->hostB)->post(guarded);
}

void World::noteEvent(const std::string& name, bool isOdd) {
  const auto runtime = Runtime::current();
  const auto answer = runtime->session.appCommunication();
  Event event{.number = ++lastNumber_, .process = ledger_.process, .step = ledger_.step};
  event.isOdd = isOdd;
  event.isBlocked = isWithheld() || (answer && answer->blockedEvents && name == "noise");
  event.goesOut = answer && Kifo::networkStatus() == KifoNetworkStatus::ONLINE;
  if (answer && answer->configuration) {
    event.cap = answer->configuration->offlineQueueSize.value_or(0);
  }
  // Each event on its way to the store has taken an identifier.
  const auto onTheirWay = static_cast<std::int64_t>(identifiers_->issued() - idleIdentifiers_);
  event.hasRoom = ledger_.waiting + onTheirWay < event.cap && disk_.exists(kDatabase) &&
                  !disk_.exists(std::string(kDatabase) + "-journal");
  event.timestamp = clock_->millisecondsSince1970();
  event.token = "BearerMOBILE " + ledger_.token;
  ledger_.add(std::move(event));
}

void World::sendEvent(std::uint32_t argument, Value oddity) {
  constexpr std::array names{"click", "buy", "look", "noise"};
  const std::string name = names[argument % names.size()];
  noteEvent(name, !oddity.isNull());
  const EventParameters parameters{{"n", lastNumber_}, {"value", std::move(oddity)}};
  if (argument / 4 % 2 == 1) {
    return KifoEventManager::sendEvent(name, std::nullopt, parameters, [](const auto&) {});
  }
  KifoEventManager::sendEvent(screen_, name, std::nullopt, parameters,
                              [this](const auto&) { ++chosen_; });
}

void World::sendOther(std::uint32_t argument) {
  switch (argument % 5) {
    case 0:
      return KifoEventManager::sendLoginEvent(screen_, std::nullopt);
    case 1:
      return Kifo::applicationDidBecomeActive();
    case 2:
      return Kifo::applicationWillResignActive();
    case 3:
      return KifoEventManager::sendApplicationErrorEvent({"host", 1, "broken"});
    default:
      return KifoEventManager::sendPushNotificationReceivedEvent("", "actor", "c", "code", "ALL");
  }
}

void World::changeIdentity(std::uint32_t argument) {
  if (isWithheld() || !mayCall()) return;
  switch (argument % 4) {
    case 0:
      return Kifo::updateActorId("actor-" + std::to_string(argument / 4 % 3));
    case 1:
      return Kifo::setPushToken("push-" + std::to_string(argument / 4 % 3));
    case 2:
      return Kifo::setApnsToken({1, static_cast<std::uint8_t>(argument / 4)});
    default:
      ledger_.token = "set-" + std::to_string(++lastToken_);
      return Kifo::setAuthorizationToken(ledger_.token);
  }
}

void World::changeConsent(bool isGiven) {
  if (isGiven) return Kifo::giveConsent();
  Kifo::revokeConsent();
  // A session of its own begins, in which nothing is left of this one.
  ledger_.beginProcess();
  isForgetting_ = true;
  tokens_->process = ledger_.process;
  status_ = InitializeStatusType::NOT_INITIALIZED;
  isErasing_ = true;
  revokedStep_ = ledger_.step;
  *successes_ = 0;
  pendingToken_ = configuredToken_;
  process_->presenter->waiting.clear();
  process_->presenter->shown.clear();
}

void World::pausePopups(bool isPaused) {
  isPaused_ = isPaused;
  Kifo::setPopupsPaused(isPaused);
}

/// The host's gate decides otherwise from now on, and has popups that wait asked for again or not.
void World::changeGate(std::uint32_t argument) {
  using enum PopupDecision;
  constexpr std::array decisions{show, show, later, never};
  decision_ = decisions[argument % decisions.size()];
  if (argument / 4 % 2 == 1) Kifo::popupsMayShow();
}

void World::showPopup() {
  auto& waiting = process_->presenter->waiting;
  if (waiting.empty()) return;
  const Presenter::Request request = waiting.front();
  waiting.pop_front();
  const auto& item = *request->preferences.appCommunicationItem;
  isPutOff_ = false;
  const bool isShown = request->open && request->open();
  if (isPutOff_ && !Runtime::current()->popupGate->holds(*item.uuid)) {
    fail("a popup that the host put off is forgotten");
  }
  if (!isShown) return;
  auto& budget = ledger_.budgets.try_emplace(*item.uuid, Budget{*item.maxShowCount}).first->second;
  if (isOn()) budget.isOverspent |= --budget.left < 0;
  if (*item.uuid == "P-EXPIRED") fail("an expired campaign was shown");
  if (decision_ != PopupDecision::show) fail("a popup was shown against the host's gate");
  if (isPaused_) fail("a popup was shown while popups are paused");
  process_->presenter->shown.push_back(request);
}

/// Nothing holds popups back any more: each one that is due shows.
void World::showAll() {
  decision_ = PopupDecision::show;
  pausePopups(false);
  Kifo::popupsMayShow();
  for (runAll(); !process_->presenter->waiting.empty(); runAll()) showPopup();
  for (const auto* campaign : kCampaignIds) {
    if (Runtime::current()->popupGate->holds(campaign)) fail("a popup is held back for ever");
  }
}

void World::answerPopup(std::uint32_t argument) {
  auto& shown = process_->presenter->shown;
  if (shown.empty()) return;
  const Presenter::Request request = shown.front();
  shown.pop_front();
  const auto button = std::make_shared<AppCommunicationItemButton>();
  const int before = chosen_;
  const bool isPlain = !request->submitButtonItem;
  switch (argument % 4) {
    case 0:
      if (request->actionItem) request->actionItem(button);
      break;
    case 1:
      isPlain ? request->actionItem(button) : request->submitButtonItem(button);
      if (chosen_ != before + 1) fail("a chosen button did not reach the host once");
      break;
    default:
      request->reporter->answered(request->preferences.appCommunicationItem, {}, screen_,
                                  request->preferences.pageName);
  }
}

}  // namespace kifo::testing::simulation
