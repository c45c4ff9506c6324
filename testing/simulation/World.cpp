#include "testing/simulation/World.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Consent.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Counters.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/inapp/InAppReporter.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunication.h"
#include "Kifo_iOS_Common_Kit/network/InFlightRequests.h"
#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "testing/FakeClock.h"
#include "testing/FakeIdentifiers.h"
#include "testing/simulation/Invariants.h"
#include "testing/simulation/Ledger.h"
#include "testing/simulation/Process.h"
#include "testing/simulation/Server.h"
#include "testing/simulation/TableReader.h"

namespace kifo::testing::simulation {
namespace {

constexpr std::uint32_t kReachable = 2;

class Screen final : public ViewController {
 public:
  [[nodiscard]] std::string className() const override { return "Screen"; }
};

std::string header(const HttpRequest& request, std::string_view name) {
  for (const auto& [key, value] : request.headers) {
    if (key == name) return value;
  }
  return {};
}

bool isQuery(const HttpRequest& request) {
  return request.url.starts_with(kApi);
}

class World {
 public:
  World();
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  void perform(const Operation& operation);
  /// Heals everything and lets all work end; then nothing may wait any more.
  void finish();
  [[nodiscard]] const std::optional<std::string>& violation() const { return violation_; }
  [[nodiscard]] std::size_t steps() const { return ledger_.step; }

 private:
  // The process.
  void start(std::uint32_t argument);
  void end();
  void shutDown(std::uint32_t argument);
  void kill(std::uint32_t argument);
  void powerFails(std::uint32_t argument);
  [[nodiscard]] static bool isWithheld() { return Runtime::current()->consent.isWithheld(); }
  /// Whether the SDK has an address to send to, or drops what it is given.
  [[nodiscard]] static bool mayCall() { return isWithheld() || !Kifo::listenerUri().empty(); }
  [[nodiscard]] bool isOn() const { return disk_.health() != Disk::Health::off; }

  // What happens.
  bool runOne(std::uint32_t number);
  void runAll();
  void passTime(std::uint32_t argument);
  void initialize(std::uint32_t argument, bool isForced);
  void onHostThread(std::uint32_t argument, const std::function<void()>& call);
  void sendEvent(std::uint32_t argument, Value oddity);
  void noteEvent(const std::string& name, bool isOdd);
  void sendOther(std::uint32_t argument);
  void changeIdentity(std::uint32_t argument);
  void answerRequest(std::size_t index, std::uint32_t number);
  void answerAll();
  void answerToken(std::uint32_t argument);
  void changeNetwork(std::uint32_t argument);
  void changeConsent(bool isGiven);
  void pausePopups(bool isPaused);
  void showPopup();
  void answerPopup(std::uint32_t argument);
  void breakDisk(std::uint32_t argument);
  void powerMayFail();

  // What is seen.
  void sawRequest(const HttpRequest& request);
  void sawStatus();
  void check();
  void checkIdle();
  void fail(std::string what) { ledger_.faults.push_back(std::move(what)); }

  // What outlives a process.
  Disk disk_;
  const std::shared_ptr<Defaults> defaults_ = std::make_shared<Defaults>(disk_);
  const std::shared_ptr<FakeClock> clock_ = std::make_shared<FakeClock>();
  const std::shared_ptr<FakeIdentifiers> identifiers_ = std::make_shared<FakeIdentifiers>();
  const std::shared_ptr<TokenService> tokens_ = std::make_shared<TokenService>();
  TableReader table_{disk_};
  std::uint32_t campaigns_ = 0;
  int lastNumber_ = 0;
  int lastToken_ = 0;

  std::unique_ptr<Process> process_;
  std::shared_ptr<Screen> screen_ = std::make_shared<Screen>();
  InitializeStatusType status_ = InitializeStatusType::NOT_INITIALIZED;
  bool isCachingDisabled_ = false;
  std::optional<std::string> configuredToken_;                 ///< The last configuration's.
  std::optional<std::string> pendingToken_;                    ///< The session's, once it begins.
  std::shared_ptr<int> successes_ = std::make_shared<int>(0);  ///< Of the last start.
  bool isErasing_ = false;  ///< The consent was revoked and the table is still there.
  std::uint64_t revokedStep_ = 0;
  bool isPaused_ = false;              ///< The host holds popups back.
  bool isBlind_ = false;               ///< Reading the network has failed: its watcher has stopped.
  std::uint64_t idleIdentifiers_ = 0;  ///< Identifiers given out when all work had last ended.
  int chosen_ = 0;                     ///< Calls of handlers of chosen buttons.

  Ledger ledger_;
  std::optional<std::string> violation_;
};

World::World() {
  Kifo::shutdown(0.0);
  start(0);
  check();
}

World::~World() {
  process_->die();
  end();
}

// The process ------------------------------------------------------------------------------------

void World::start(std::uint32_t argument) {
  ledger_.beginProcess();

  status_ = InitializeStatusType::NOT_INITIALIZED;
  isBlind_ = false;
  isPaused_ = false;
  pendingToken_.reset();
  tokens_->process = ledger_.process;
  Platform lasting = nullPlatform();
  lasting.userDefaults = defaults_;
  lasting.clock = clock_;
  lasting.identifiers = identifiers_;
  lasting.storeFiles = std::shared_ptr<StoreFiles>(&disk_, [](auto*) {});
  lasting.documentsDirectory = kDocuments;
  process_ =
      std::make_unique<Process>(lasting, [this](const auto& request) { sawRequest(request); });
  process_->reachability->setFlags(argument / 64 % 4 == 3 ? 0 : kReachable);
  Kifo::setTokenService(tokens_);
  initialize(argument, false);
}

void World::end() {
  Kifo::shutdown(0.0);
  process_.reset();
}

void World::shutDown(std::uint32_t argument) {
  runAll();
  end();
  table_.read(ledger_, 0);
  start(argument);
}

void World::kill(std::uint32_t argument) {
  process_->die();
  tokens_->questions.clear();
  end();
  disk_.restart(argument);
  start(argument);
}

void World::powerFails(std::uint32_t argument) {
  if (const int delay = static_cast<int>(argument % 64)) {
    disk_.setHealthLater(Disk::Health::off, delay);
  } else {
    disk_.setHealth(Disk::Health::off);
  }
}

// What happens -----------------------------------------------------------------------------------

void World::perform(const Operation& operation) {
  const std::uint32_t argument = operation.argument;
  switch (operation.kind) {
    case Kind::runTask:
      runOne(argument);
      break;
    case Kind::runAll:
      runAll();
      break;
    case Kind::passTime:
      passTime(argument);
      break;
    case Kind::sendEvent:
      onHostThread(argument, [this, argument] { sendEvent(argument, {}); });
      break;
    case Kind::sendOddEvent: {
      const std::array<const char*, 3> oddities{"an ' apostrophe", "broken \xC3\x28 text",
                                                "\x01\n\t"};
      if (mayCall()) sendEvent(argument, oddities[argument % oddities.size()]);
      break;
    }
    case Kind::enterPage:
      onHostThread(argument, [this] { KifoEventManager::sendPageInEvent(screen_, "Page"); });
      break;
    case Kind::leavePage:
      onHostThread(argument, [this] { KifoEventManager::sendPageOutEvent(screen_, std::nullopt); });
      break;
    case Kind::sendOther:
      onHostThread(argument, [this, argument] { sendOther(argument); });
      break;
    case Kind::changeIdentity:
      changeIdentity(argument);
      break;
    case Kind::initialize:
      initialize(argument, argument % 4 != 0);
      break;
    case Kind::closeScreen:
      screen_ = std::make_shared<Screen>();
      break;
    case Kind::answerRequest:
      if (const auto open = process_->network->open().size(); open > 0) {
        answerRequest(argument / 16 % open, argument);
      }
      break;
    case Kind::answerAll:
      answerAll();
      break;
    case Kind::answerToken:
      answerToken(argument);
      break;
    case Kind::changeNetwork:
      changeNetwork(argument);
      break;
    case Kind::changeCampaigns:
      campaigns_ = argument;
      break;
    case Kind::changeConsent:
      changeConsent(argument % 2 == 1);
      break;
    case Kind::pausePopups:
      pausePopups(argument % 3 == 0);
      break;
    case Kind::showPopup:
      showPopup();
      break;
    case Kind::answerPopup:
      answerPopup(argument);
      break;
    case Kind::breakDisk:
      breakDisk(argument);
      break;
    case Kind::mendDisk:
      disk_.setHealth(isOn() ? Disk::Health::good : Disk::Health::off);
      break;
    case Kind::shutDown:
      shutDown(argument);
      break;
    case Kind::kill:
      kill(argument);
      break;
    case Kind::powerFails:
      powerFails(argument);
      break;
  }
  check();
}

bool World::runOne(std::uint32_t number) {
  return process_->runOne(number);
}

void World::runAll() {
  while (!violation_ && process_->runOne(0)) check();
}

void World::passTime(std::uint32_t argument) {
  constexpr std::array seconds{0.5, 1.0, 11.0, 40.0, 700.0};
  const double passed = seconds[argument % seconds.size()];
  clock_->advance(passed);
  process_->executor->passTime(passed);
}

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

void World::answerRequest(std::size_t index, std::uint32_t number) {
  const HttpRequest request = process_->network->open()[index].request;
  const Fate chosen =
      fate(number, isQuery(request) ? inAppAnswer(campaigns_) : std::string("{\"code\":0}"));
  const bool isOk = !chosen.answer.error && chosen.answer.status == 200;
  if (chosen.answer.status == 401) ++ledger_.refusals;
  if (isQuery(request)) {
    ledger_.hasCampaigns |= isOk && chosen.answer.body == inAppAnswer(campaigns_);
  } else {
    if (chosen.isAccepted) ++ledger_.eventOf(*request.body).accepted;
    ledger_.answered(*request.body, isOk);
  }
  process_->network->answer(index, chosen.answer);
}

void World::answerAll() {
  constexpr std::uint32_t good = 8;
  while (!process_->network->open().empty()) answerRequest(0, good);
}

void World::answerToken(std::uint32_t argument) {
  auto& questions = tokens_->questions;
  if (questions.empty()) return;
  const auto which =
      questions.begin() + static_cast<std::ptrdiff_t>(argument / 8 % questions.size());
  const TokenService::Question question = *which;
  if (argument % 8 != 7) questions.erase(which);  // a service may answer twice
  if (argument % 4 == 0) return question.completion(std::nullopt);
  const std::string token = "fetched-" + std::to_string(++lastToken_);
  if (question.process == ledger_.process) ledger_.token = token;
  question.completion(token);
}

void World::changeNetwork(std::uint32_t argument) {
  constexpr std::uint32_t cellular = 1U << 18;
  constexpr std::array<std::uint32_t, 4> flags{0, kReachable, kReachable, kReachable | cellular};
  if (argument / 4 % 32 == 31) {
    isBlind_ = true;
    process_->reachability->failFlags(5);
  }
  process_->reachability->change(flags[argument % flags.size()]);
}

void World::changeConsent(bool isGiven) {
  if (isGiven) return Kifo::giveConsent();
  Kifo::revokeConsent();
  // A session of its own begins, in which nothing is left of this one.
  ledger_.beginProcess();
  ledger_.budgets.clear();
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

void World::showPopup() {
  auto& waiting = process_->presenter->waiting;
  if (waiting.empty()) return;
  const Presenter::Request request = waiting.front();
  waiting.pop_front();
  const auto& item = *request->preferences.appCommunicationItem;
  if (!request->open || !request->open()) return;
  auto& budget = ledger_.budgets.try_emplace(*item.uuid, Budget{*item.maxShowCount}).first->second;
  if (isOn()) budget.isOverspent |= --budget.left < 0;
  if (*item.uuid == "P-EXPIRED") fail("an expired campaign was shown");
  if (isPaused_) fail("a popup was shown while popups are paused");
  process_->presenter->shown.push_back(request);
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

void World::breakDisk(std::uint32_t argument) {
  if (!isOn()) return;
  const auto health = argument % 2 == 0 ? Disk::Health::failing : Disk::Health::full;
  disk_.setHealthLater(health, static_cast<int>(argument / 2 % 64));
}

// What is seen -----------------------------------------------------------------------------------

void World::sawRequest(const HttpRequest& request) {
  if (!isOn()) return;
  if (isWithheld() && !request.url.empty()) fail("a request went out without consent");
  if (isQuery(request) || !request.body) return;
  // An event itself may never be repeated by the transport; a row that is sent again may.
  ledger_.sent(*request.body, request.mayRepeat, header(request, "Authorization"));
}

void World::sawStatus() {
  using enum InitializeStatusType;
  const auto now = Kifo::getInitializeStatusType();
  const auto before = std::exchange(status_, now);
  if (now == before) return;
  if (now == NOT_INITIALIZED) fail("a session forgot that it was initialised");
  if (now == INITIALIZED && !ledger_.hasCampaigns) fail("initialised without an answer");
  if (now == TOKEN_FAILED && ledger_.refusals < 2) fail("the token failed without two refusals");
}

void World::check() {
  ++ledger_.step;
  if (disk_.health() != Disk::Health::good) ledger_.troubleStep = ledger_.step;
  const bool hasDied = !isOn();
  if (hasDied) {
    process_->die();
    tokens_->questions.clear();
    end();
    disk_.restart(static_cast<std::uint32_t>(ledger_.step));
    start(static_cast<std::uint32_t>(ledger_.step) * 64);
  }
  if (violation_) return;
  // A row that was marked may have been on its way when the power failed.
  table_.read(ledger_, hasDied || isErasing_ ? 1 : process_->network->waiting());
  if (!disk_.exists(kDatabase)) isErasing_ = false;
  sawStatus();
  ledger_.sessionsToken = Kifo::authorization();
  if (pendingToken_ == ledger_.sessionsToken) {
    ledger_.token = *pendingToken_;
    pendingToken_.reset();
  }
  for (auto& [campaign, budget] : ledger_.budgets) budget.kept = defaults_->integer(campaign);
  const bool isIdle = process_->isIdle();
  violation_ = brokenInvariant(ledger_, isIdle);
  if (isIdle && !violation_) checkIdle();
}

void World::checkIdle() {
  idleIdentifiers_ = identifiers_->issued();
  ledger_.idleStep = ledger_.step;
  if (isWithheld() && ledger_.isUndisturbed(revokedStep_) &&
      (disk_.exists(kDatabase) || !defaults_->isEmpty())) {
    violation_ = "nothing is kept without consent";
  }
  const auto runtime = Runtime::current();
  if (runtime->inFlight->count() != process_->network->open().size()) {
    violation_ = "the requests under way are those that the network has";
  }
  if (violation_ || !runtime->counters->isFound()) return;
  const Counts counts = Kifo::statistics().sinceInitialize;
  UnderWay underWay;
  for (const auto& [request, done] : process_->network->open()) {
    if (isQuery(request)) continue;
    ++underWay.requests;
    underWay.rows += ledger_.eventOf(*request.body).isWaiting ? 1 : 0;
  }
  if (auto wrong = wrongCounter(ledger_, counts, underWay)) violation_ = std::move(wrong);
}

void World::finish() {
  disk_.restart(0);
  Kifo::giveConsent();
  runAll();
  answerAll();
  runAll();
  for (int part = 0; part < 2 && !violation_; ++part) {
    const auto rounds = ledger_.waiting + 4;
    for (std::int64_t round = 0; round < rounds && !violation_; ++round) {
      for (const std::uint32_t flags : {0U, kReachable}) {
        process_->reachability->failFlags(0);
        process_->reachability->change(flags);
        for (runAll(); !process_->network->open().empty() && !violation_; runAll()) answerAll();
      }
    }
    const bool mustBeEmpty =
        part == 1 || (!isBlind_ && !isCachingDisabled_ && ledger_.hasCampaigns);
    if (mustBeEmpty && ledger_.waiting > 0) fail("a row waits although everything works");
    check();
    if (part == 0) shutDown(0);
  }
}

}  // namespace

Outcome play(const Script& script) {
  World world;
  Outcome outcome;
  for (const Operation& operation : script) {
    if (world.violation()) break;
    world.perform(operation);
    ++outcome.operation;
  }
  if (!world.violation()) {
    world.finish();
    ++outcome.operation;
  }
  outcome.steps = world.steps();
  outcome.violation = world.violation();
  return outcome;
}

}  // namespace kifo::testing::simulation
