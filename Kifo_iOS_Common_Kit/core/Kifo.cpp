#include "Kifo_iOS_Common_Kit/core/Kifo.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/PermissionStatus.h"
#include "Kifo_iOS_Common_Kit/core/PreferencesManager.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Watching.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupGate.h"
#include "Kifo_iOS_Common_Kit/network/InAppFetch.h"
#include "Kifo_iOS_Common_Kit/network/NetworkManager.h"
#include "Kifo_iOS_Common_Kit/network/ResendSchedule.h"
#include "Kifo_iOS_Common_Kit/network/ServiceClient.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "Kifo_iOS_Common_Kit/storage/DataManager.h"

namespace kifo {
namespace {

void print(std::string_view message) {
  Console::print(Kifo::LOG_TAG, message);
}

std::string newIdentifier() {
  return Platform::current()->identifiers->uuid();
}

/// On the reachability queue: an event of the next moment is stored, or sent, whatever the disk has
/// the main queue do.
void networkStatusRead(Session& session, bool isOnline) {
  const auto status = isOnline ? KifoNetworkStatus::ONLINE : KifoNetworkStatus::OFFLINE;
  // Before anything is sent: connections from before the loss lead nowhere.
  if (isOnline && session.networkStatus != status) Platform::current()->http->networkChanged();
  session.networkStatus = status;
}

/// On the main queue, where what is stored can be re-sent.
void networkStatusChanged(const std::shared_ptr<Runtime>& runtime, bool isOnline) {
  if (isOnline) ServiceClient::make(runtime)->syncLogs();
  print(std::string("KifoNetworkStatus: ") + (isOnline ? "ONLINE" : "OFFLINE"));
}

/// Reports a push token that differs from the one last reported.
void reportToken(Runtime& runtime, TokenProviderType provider, PreferencesKey key,
                 const std::string& token) {
  if (PreferencesManager::token(key) == token) return;
  KifoEventManager::sendTokenChangeEvent(provider);
  runtime.consent.unlessWithheld([&] { PreferencesManager::setToken(key, token); });
}

void checkTokens(Runtime& runtime) {
  const auto identity = runtime.session.identity();
  if (!runtime.session.isStarted || identity->apnsToken.empty() || identity->pushToken.empty()) {
    return;
  }
  reportToken(runtime, TokenProviderType::apns, PreferencesKey::apnsToken, identity->apnsToken);
  reportToken(runtime, TokenProviderType::firebase, PreferencesKey::pushToken, identity->pushToken);
}

void setActor(Runtime& runtime, const std::string& newActorId) {
  Session& session = runtime.session;
  print("actorId is being updated");
  if (PreferencesManager::actorId() != newActorId) {
    print("Prefactor is not equal new actor id");
    KifoEventManager::sendChangeActorEvent(session.identity()->actorId, newActorId);
  } else {
    print("Prefactor is equal new actor id");
  }
  session.updateIdentity([&](Session::Identity& identity) { identity.actorId = newActorId; });
  runtime.consent.unlessWithheld([&] { PreferencesManager::setActorId(newActorId); });
}

/// The host's choice, else the user of before, else a new one, which makes this an installation.
void chooseActor(Runtime& runtime, const std::string& configured) {
  const std::string stored = PreferencesManager::actorId();
  if (!stored.empty()) return setActor(runtime, configured.empty() ? stored : configured);
  runtime.session.isInstall = true;
  print("Local actor id is empty. If Configuration id is empty, a new Actor id will be created");
  setActor(runtime, configured.empty() ? newIdentifier() : configured);
}

void chooseActorShortForm(Runtime& runtime, const std::string& given) {
  if (!given.empty()) {
    print("actorId is available and id.count > 0");
    return setActor(runtime, given);
  }
  const std::string stored = PreferencesManager::actorId();
  print(stored.empty() ? "Prefactor id count <= 0" : "Prefactor id count > 0");
  setActor(runtime, stored.empty() ? newIdentifier() : stored);
}

void prepareStore(Runtime& runtime) {
  DataManager(runtime.store()).createTable();
  runtime.store()->findCounters();
}

/// What both forms end with: the time-out, the first query, the network.
void startUp(const std::shared_ptr<Runtime>& runtime, std::function<void(bool)> fetched) {
  runtime->session.requestTimeout = PreferencesManager::requestTimeout();
  fetchInAppCommunication(runtime, std::move(fetched));
  // Held weakly: the runtime owns the network manager, which keeps these.
  const std::weak_ptr<Runtime> weak = runtime;
  const auto changed = [weak](bool isOnline) {
    if (const auto held = weak.lock()) networkStatusChanged(held, isOnline);
  };
  const auto read = [weak](bool isOnline) {
    if (const auto held = weak.lock()) networkStatusRead(held->session, isOnline);
  };
  runtime->consent.unlessWithheld([&] { runtime->network->startMonitoring(changed, read); });
}

/// The authorization that the configuration gives, or that its token service has; false without
/// both.
bool authorize(const std::shared_ptr<Runtime>& runtime, const KifoInitConfig& configuration) {
  if (configuration.authorization) {
    runtime->session.updateIdentity([&](Session::Identity& identity) {
      identity.authorization = *configuration.authorization;
    });
    return true;
  }
  if (!configuration.tokenService) return false;
  runtime->session.setTokenService(configuration.tokenService);
  TokenFetch::run(runtime);
  return true;
}

void copySwitches(Session& session, const KifoInitConfig& configuration) {
  session.sendApplicationLifeCycleEventStatus = configuration.sendApplicationLifeCycleEventEnabled;
  session.sendActivityLifeCycleEventStatus = configuration.sendActivityLifeCycleEventStatus;
  session.isWifiStatusRequired = configuration.isWifiStatusRequired;
  session.isDiskCapacityRequired = configuration.isDiskCapacityRequired;
  session.isBatteryStatusRequired = configuration.isBatteryStatusRequired;
  session.isLocationRequired = configuration.isLocationRequired;
}

/// Runs when the first answer is there: the host first, then the start-up events from the main
/// queue.
std::function<void(bool)> startUpCompletion(const std::shared_ptr<Runtime>& runtime,
                                            std::optional<std::string> configuredActor,
                                            Kifo::OnSuccess onSuccess) {
  return [runtime, configuredActor = std::move(configuredActor),
          onSuccess = std::move(onSuccess)](bool success) {
    // The consent may have been revoked meanwhile: this runtime has ended then.
    if (!success || runtime->consent.isWithheld()) return;
    callHost(Kifo::LOG_TAG, onSuccess);
    Platform::current()->mainQueue->post([runtime, configuredActor] {
      if (runtime->consent.isWithheld()) return;
      if (runtime->session.isInstall) KifoEventManager::sendInstallEvent(configuredActor);
      KifoEventManager::sendInitializeEvent();
    });
  };
}

/// What both forms do once they may: docs/privacy.md says when.
void begin(const std::shared_ptr<Runtime>& runtime, const KifoInitConfig& configuration,
           const Kifo::OnSuccess& onSuccess) {
  Session& session = runtime->session;
  session.isInstall = false;
  session.initializeStatus = InitializeStatusType::INITIALIZING;
  print("Kifo is being initialized");
  startWatchingIfAsked();
  session.updateIdentity([&](Session::Identity& identity) {
    identity.apiUri = configuration.apiUri;
    identity.listenerUri = configuration.listenerUri;
  });
  copySwitches(session, configuration);
  if (!authorize(runtime, configuration) || !configuration.bundle.bundleIdentifier) {
    session.initializeStatus = InitializeStatusType::INITIALIZE_FAILED;
    return;
  }
  // The consent may have been revoked during the wait for a token.
  if (runtime->consent.isWithheld()) return;
  session.updateIdentity([&](Session::Identity& identity) {
    identity.localOrigin = *configuration.bundle.bundleIdentifier;
    identity.applicationName = configuration.applicationName;
  });
  session.offlineCachingDisabled = configuration.offlineCachingDisabled;
  runtime->resend->enable(configuration.resendsWhenServerReturns);
  refreshNotificationPermissionStatus(runtime);
  prepareStore(*runtime);
  chooseActor(*runtime, configuration.actorId.value_or(""));
  startUp(runtime, startUpCompletion(runtime, configuration.actorId, onSuccess));
  session.isStarted = true;
  checkTokens(*runtime);
}

void beginShortForm(const std::shared_ptr<Runtime>& runtime, const Session::Identity& given,
                    bool offlineCachingDisabled) {
  print("Kifo is being initialized");
  startWatchingIfAsked();
  runtime->session.updateIdentity([&](Session::Identity& identity) {
    identity.apiUri = given.apiUri;
    identity.listenerUri = given.listenerUri;
    identity.authorization = given.authorization;
    identity.localOrigin = given.localOrigin;
    identity.applicationName = given.applicationName;
  });
  runtime->session.offlineCachingDisabled = offlineCachingDisabled;
  prepareStore(*runtime);
  chooseActorShortForm(*runtime, given.actorId);
  startUp(runtime, {});
}

void sendLifeCycleEvent(void (*sendEvent)()) {
  if (Kifo::sendApplicationLifeCycleEventStatus() == SendLifeCycleEventStatus::DISABLED) {
    return print("send application lifecycle events disabled!");
  }
  sendEvent();
}

std::string hexadecimal(const std::vector<std::uint8_t>& bytes) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string text;
  for (const std::uint8_t byte : bytes) {
    text += digits[byte >> 4];
    text += digits[byte & 15];
  }
  return text;
}

}  // namespace

const Kifo& Kifo::sharedInstance() {
  static constexpr Kifo instance;
  return instance;
}

void Kifo::initialize(const KifoInitConfig& configuration, OnSuccess onSuccess) {
  if (isInitialized() && !configuration.forceInitialize) return print("already initialized!");
  startWithConsent(configuration.requiresConsent,
                   [configuration, onSuccess = std::move(onSuccess)](const auto& runtime) {
                     begin(runtime, configuration, onSuccess);
                   });
}

void Kifo::initialize(const std::string& apiUri, const std::string& listenerUri,
                      const std::string& authorization, const std::string& localOrigin,
                      const std::optional<std::string>& actorId, const std::string& applicationName,
                      bool offlineCachingDisabled) {
  const Session::Identity given{.apiUri = apiUri,
                                .listenerUri = listenerUri,
                                .authorization = authorization,
                                .localOrigin = localOrigin,
                                .actorId = actorId.value_or(""),
                                .applicationName = applicationName,
                                .pushToken = {},
                                .apnsToken = {}};
  startWithConsent(/*needsConsent=*/false, [given, offlineCachingDisabled](const auto& runtime) {
    beginShortForm(runtime, given, offlineCachingDisabled);
  });
}

bool Kifo::isInitialized() {
  return getInitializeStatusType() == InitializeStatusType::INITIALIZED;
}

InitializeStatusType Kifo::getInitializeStatusType() {
  return Runtime::current()->session.initializeStatus;
}

void Kifo::giveConsent() {
  kifo::giveConsent();
}
void Kifo::revokeConsent() {
  kifo::revokeConsent();
}
ConsentStatus Kifo::consent() {
  return consentChoice();
}

void Kifo::updateActorId(const std::string& newActorId) {
  const auto runtime = Runtime::current();
  if (runtime->consent.drops("updateActorId")) return;
  setActor(*runtime, newActorId);
}

void Kifo::setPushToken(const std::string& token) {
  const auto runtime = Runtime::current();
  if (runtime->consent.drops("setPushToken")) return;
  runtime->session.updateIdentity([&](Session::Identity& identity) { identity.pushToken = token; });
  print("Push token set complete");
  checkTokens(*runtime);
}

void Kifo::setApnsToken(const std::vector<std::uint8_t>& deviceToken) {
  const auto runtime = Runtime::current();
  if (runtime->consent.drops("setApnsToken")) return;
  runtime->session.updateIdentity(
      [&](Session::Identity& identity) { identity.apnsToken = hexadecimal(deviceToken); });
  print("Kifo apns token set complete");
  checkTokens(*runtime);
}

void Kifo::setAuthorizationToken(const std::string& token) {
  if (token.empty()) return print("Authorization token cannot be empty");
  const auto runtime = Runtime::current();
  if (runtime->consent.drops("setAuthorizationToken")) return;
  runtime->session.updateIdentity(
      [&](Session::Identity& identity) { identity.authorization = token; });
  print("Authorization token set complete");
}

void Kifo::didFinishLaunchingWithOptions() {
  print("didFinishLaunchingWithOptions");
}

void Kifo::applicationDidReceiveRemoteNotification(const UserInfo&) {
  print("applicationDidReceiveRemoteNotification");
}

void Kifo::applicationDidBecomeActive() {
  print("applicationDidBecomeActive");
  sendLifeCycleEvent(&KifoEventManager::sendAppForegroundEvent);
}

void Kifo::applicationWillResignActive() {
  print("applicationWillResignActive");
  sendLifeCycleEvent(&KifoEventManager::sendAppBackgroundEvent);
}

SendEventStatus Kifo::sendEventStatus() {
  return Runtime::current()->session.sendEventStatus;
}
void Kifo::setSendEventStatus(SendEventStatus status) {
  Runtime::current()->session.sendEventStatus = status;
}

SendLifeCycleEventStatus Kifo::sendApplicationLifeCycleEventStatus() {
  return Runtime::current()->session.sendApplicationLifeCycleEventStatus;
}
void Kifo::setSendApplicationLifeCycleEventStatus(SendLifeCycleEventStatus status) {
  Runtime::current()->session.sendApplicationLifeCycleEventStatus = status;
}

SendLifeCycleEventStatus Kifo::sendActivityLifeCycleEventStatus() {
  return Runtime::current()->session.sendActivityLifeCycleEventStatus;
}
void Kifo::setSendActivityLifeCycleEventStatus(SendLifeCycleEventStatus status) {
  Runtime::current()->session.sendActivityLifeCycleEventStatus = status;
}

bool Kifo::isWifiStatusRequired() {
  return Runtime::current()->session.isWifiStatusRequired;
}
void Kifo::setIsWifiStatusRequired(bool isRequired) {
  Runtime::current()->session.isWifiStatusRequired = isRequired;
}

bool Kifo::isDiskCapacityRequired() {
  return Runtime::current()->session.isDiskCapacityRequired;
}
void Kifo::setIsDiskCapacityRequired(bool isRequired) {
  Runtime::current()->session.isDiskCapacityRequired = isRequired;
}

bool Kifo::isBatteryStatusRequired() {
  return Runtime::current()->session.isBatteryStatusRequired;
}
void Kifo::setIsBatteryStatusRequired(bool isRequired) {
  Runtime::current()->session.isBatteryStatusRequired = isRequired;
}

bool Kifo::isLocationRequired() {
  return Runtime::current()->session.isLocationRequired;
}
void Kifo::setIsLocationRequired(bool isRequired) {
  Runtime::current()->session.isLocationRequired = isRequired;
}

void Kifo::setPopupGate(PopupDecider gate) {
  Runtime::current()->popupGate->setDecider(std::move(gate));
}
void Kifo::setPopupsPaused(bool isPaused) {
  Runtime::current()->popupGate->setPaused(isPaused);
}
bool Kifo::popupsPaused() {
  return Runtime::current()->popupGate->isPaused();
}
void Kifo::popupsMayShow() {
  if (const auto runtime = Runtime::existing()) runtime->popupGate->askAgain();
}

std::shared_ptr<TokenServiceProtocol> Kifo::tokenService() {
  return Runtime::current()->session.tokenService();
}
void Kifo::setTokenService(std::shared_ptr<TokenServiceProtocol> service) {
  Runtime::current()->session.setTokenService(std::move(service));
}

std::string Kifo::apiUri() {
  return Runtime::current()->session.identity()->apiUri;
}
std::string Kifo::listenerUri() {
  return Runtime::current()->session.identity()->listenerUri;
}
std::string Kifo::authorization() {
  return Runtime::current()->session.identity()->authorization;
}
std::string Kifo::localOrigin() {
  return Runtime::current()->session.identity()->localOrigin;
}
std::string Kifo::actorId() {
  return Runtime::current()->session.identity()->actorId;
}
std::string Kifo::applicationName() {
  return Runtime::current()->session.identity()->applicationName;
}
std::string Kifo::pushToken() {
  return Runtime::current()->session.identity()->pushToken;
}
std::string Kifo::apnsToken() {
  return Runtime::current()->session.identity()->apnsToken;
}
bool Kifo::offlineCachingDisabled() {
  return Runtime::current()->session.offlineCachingDisabled;
}
KifoNetworkStatus Kifo::networkStatus() {
  return Runtime::current()->session.networkStatus;
}
KifoNotificationPermissionStatusType Kifo::notificationPermissionStatus() {
  return Runtime::current()->session.notificationPermissionStatus;
}
bool Kifo::isInstall() {
  return Runtime::current()->session.isInstall;
}
bool Kifo::isStarted() {
  return Runtime::current()->session.isStarted;
}
std::optional<double> Kifo::requestTimeout() {
  const double seconds = Runtime::current()->session.requestTimeout;
  return seconds > 0.0 ? std::optional(seconds) : std::nullopt;
}

Statistics Kifo::statistics() {
  const auto runtime = Runtime::existing();
  return runtime ? runtime->counters->read() : Statistics();
}

void Kifo::enableWatching() {
  startWatching();
}

bool Kifo::waitUntilIdle(double bound) {
  const auto runtime = Runtime::existing();
  return !runtime || kifo::waitUntilIdle(*runtime, bound);
}

bool Kifo::shutdown(double bound) {
  return shutDownRuntime(bound);
}

}  // namespace kifo
