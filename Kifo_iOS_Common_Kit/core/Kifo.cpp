#include "Kifo_iOS_Common_Kit/core/Kifo.h"

#include <algorithm>
#include <array>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/KifoShutDown.h"
#include "Kifo_iOS_Common_Kit/core/PermissionStatus.h"
#include "Kifo_iOS_Common_Kit/core/PreferencesManager.h"
#include "Kifo_iOS_Common_Kit/core/Session.h"
#include "Kifo_iOS_Common_Kit/core/TokenFetch.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/network/InAppFetch.h"
#include "Kifo_iOS_Common_Kit/network/NetworkManager.h"
#include "Kifo_iOS_Common_Kit/network/ServiceClient.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "Kifo_iOS_Common_Kit/storage/DataManager.h"

namespace kifo {
namespace {

void print(std::string_view message) {
  static const std::string& tag = *new std::string(logTag("Kifo"));
  Console::print(tag, message);
}

Session& session() {
  return Session::shared();
}

std::string newIdentifier() {
  return Platform::current()->identifiers->uuid();
}

/// On the reachability queue: an event of the next moment is stored, or sent, whatever the disk has
/// the main queue do.
void networkStatusRead(bool isOnline) {
  const auto status = isOnline ? KifoNetworkStatus::ONLINE : KifoNetworkStatus::OFFLINE;
  // Before anything is sent: connections from before the loss lead nowhere.
  if (isOnline && session().networkStatus != status) Platform::current()->http->networkChanged();
  session().networkStatus = status;
}

/// On the main queue, where what is stored can be re-sent.
void networkStatusChanged(bool isOnline) {
  if (isOnline) ServiceClient::make()->syncLogs();
  print(std::string("KifoNetworkStatus: ") + (isOnline ? "ONLINE" : "OFFLINE"));
}

/// Reports a push token that differs from the one last reported; true when it did.
bool reportToken(TokenProviderType provider, PreferencesKey key, const std::string& token) {
  if (PreferencesManager::token(key) == token) return false;
  KifoEventManager::sendTokenChangeEvent(provider);
  PreferencesManager::setToken(key, token);
  return true;
}

void checkTokens() {
  const auto identity = session().identity();
  if (!session().isStarted || identity->apnsToken.empty() || identity->pushToken.empty()) return;
  reportToken(TokenProviderType::apns, PreferencesKey::apnsToken, identity->apnsToken);
  reportToken(TokenProviderType::firebase, PreferencesKey::pushToken, identity->pushToken);
}

void setActor(const std::string& newActorId) {
  print("actorId is being updated");
  if (PreferencesManager::actorId() != newActorId) {
    print("Prefactor is not equal new actor id");
    KifoEventManager::sendChangeActorEvent(session().identity()->actorId, newActorId);
  } else {
    print("Prefactor is equal new actor id");
  }
  session().updateIdentity([&](Session::Identity& identity) { identity.actorId = newActorId; });
  PreferencesManager::setActorId(newActorId);
}

/// The host's choice, else the user of before, else a new one, which makes this an installation.
void chooseActor(const std::string& configured) {
  const std::string stored = PreferencesManager::actorId();
  if (!stored.empty()) return setActor(configured.empty() ? stored : configured);
  session().isInstall = true;
  print("Local actor id is empty. If Configuration id is empty, a new Actor id will be created");
  setActor(configured.empty() ? newIdentifier() : configured);
}

void chooseActorShortForm(const std::string& given) {
  if (!given.empty()) {
    print("actorId is available and id.count > 0");
    return setActor(given);
  }
  const std::string stored = PreferencesManager::actorId();
  print(stored.empty() ? "Prefactor id count <= 0" : "Prefactor id count > 0");
  setActor(stored.empty() ? newIdentifier() : stored);
}

/// What both forms end with: the time-out, the first query, the network.
void startUp(std::function<void(bool)> fetched) {
  session().requestTimeout = PreferencesManager::requestTimeout();
  fetchInAppCommunication(std::move(fetched));
  NetworkManager::shared().startMonitoring(networkStatusChanged, networkStatusRead);
}

/// The authorization that the configuration gives, or that its token service has; false without
/// both.
bool authorize(const KifoInitConfig& configuration) {
  if (configuration.authorization) {
    session().updateIdentity([&](Session::Identity& identity) {
      identity.authorization = *configuration.authorization;
    });
    return true;
  }
  if (!configuration.tokenService) return false;
  session().setTokenService(configuration.tokenService);
  fetchToken();
  return true;
}

void copySwitches(const KifoInitConfig& configuration) {
  Session& s = session();
  s.sendApplicationLifeCycleEventStatus = configuration.sendApplicationLifeCycleEventEnabled;
  s.sendActivityLifeCycleEventStatus = configuration.sendActivityLifeCycleEventStatus;
  s.isWifiStatusRequired = configuration.isWifiStatusRequired;
  s.isDiskCapacityRequired = configuration.isDiskCapacityRequired;
  s.isBatteryStatusRequired = configuration.isBatteryStatusRequired;
  s.isLocationRequired = configuration.isLocationRequired;
}

/// Runs when the first answer is there: the host first, then the start-up events from the main
/// queue.
std::function<void(bool)> startUpCompletion(std::optional<std::string> configuredActor,
                                            Kifo::OnSuccess onSuccess) {
  return [configuredActor = std::move(configuredActor),
          onSuccess = std::move(onSuccess)](bool success) {
    if (!success) return;
    callHost(logTag("Kifo"), onSuccess);
    Platform::current()->mainQueue->post([configuredActor] {
      if (session().isInstall) KifoEventManager::sendInstallEvent(configuredActor);
      KifoEventManager::sendInitializeEvent();
    });
  };
}

void sendLifeCycleEvent(void (*sendEvent)()) {
  if (session().sendApplicationLifeCycleEventStatus == SendLifeCycleEventStatus::DISABLED) {
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

void Kifo::initialize(const KifoInitConfig& configuration, OnSuccess onSuccess) {
  Session& s = session();
  if (s.initializeStatus == InitializeStatusType::INITIALIZED && !configuration.forceInitialize) {
    return print("already initialized!");
  }
  resumeAfterShutDown();
  s.isInstall = false;
  s.initializeStatus = InitializeStatusType::INITIALIZING;
  print("Kifo is being initialized");
  s.updateIdentity([&](Session::Identity& identity) {
    identity.apiUri = configuration.apiUri;
    identity.listenerUri = configuration.listenerUri;
  });
  copySwitches(configuration);
  if (!authorize(configuration) || !configuration.bundle.bundleIdentifier) {
    s.initializeStatus = InitializeStatusType::INITIALIZE_FAILED;
    return;
  }
  s.updateIdentity([&](Session::Identity& identity) {
    identity.localOrigin = *configuration.bundle.bundleIdentifier;
    identity.applicationName = configuration.applicationName;
  });
  s.offlineCachingDisabled = configuration.offlineCachingDisabled;
  refreshNotificationPermissionStatus();
  DataManager().createTable();
  chooseActor(configuration.actorId.value_or(""));
  startUp(startUpCompletion(configuration.actorId, std::move(onSuccess)));
  s.isStarted = true;
  checkTokens();
}

void Kifo::initialize(const std::string& apiUri, const std::string& listenerUri,
                      const std::string& authorization, const std::string& localOrigin,
                      const std::optional<std::string>& actorId, const std::string& applicationName,
                      bool offlineCachingDisabled) {
  resumeAfterShutDown();
  print("Kifo is being initialized");
  session().updateIdentity([&](Session::Identity& identity) {
    identity.apiUri = apiUri;
    identity.listenerUri = listenerUri;
    identity.authorization = authorization;
    identity.localOrigin = localOrigin;
    identity.applicationName = applicationName;
  });
  session().offlineCachingDisabled = offlineCachingDisabled;
  DataManager().createTable();
  chooseActorShortForm(actorId.value_or(""));
  startUp({});
}

bool Kifo::isInitialized() {
  return session().initializeStatus == InitializeStatusType::INITIALIZED;
}

InitializeStatusType Kifo::getInitializeStatusType() {
  return session().initializeStatus;
}

void Kifo::updateActorId(const std::string& newActorId) {
  setActor(newActorId);
}

void Kifo::setPushToken(const std::string& token) {
  session().updateIdentity([&](Session::Identity& identity) { identity.pushToken = token; });
  print("Push token set complete");
  checkTokens();
}

void Kifo::setApnsToken(const std::vector<std::uint8_t>& deviceToken) {
  session().updateIdentity(
      [&](Session::Identity& identity) { identity.apnsToken = hexadecimal(deviceToken); });
  print("Kifo apns token set complete");
  checkTokens();
}

void Kifo::setAuthorizationToken(const std::string& token) {
  if (token.empty()) return print("Authorization token cannot be empty");
  session().updateIdentity([&](Session::Identity& identity) { identity.authorization = token; });
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
  return session().sendEventStatus;
}
void Kifo::setSendEventStatus(SendEventStatus status) {
  session().sendEventStatus = status;
}

SendLifeCycleEventStatus Kifo::sendApplicationLifeCycleEventStatus() {
  return session().sendApplicationLifeCycleEventStatus;
}
void Kifo::setSendApplicationLifeCycleEventStatus(SendLifeCycleEventStatus status) {
  session().sendApplicationLifeCycleEventStatus = status;
}

SendLifeCycleEventStatus Kifo::sendActivityLifeCycleEventStatus() {
  return session().sendActivityLifeCycleEventStatus;
}
void Kifo::setSendActivityLifeCycleEventStatus(SendLifeCycleEventStatus status) {
  session().sendActivityLifeCycleEventStatus = status;
}

std::string Kifo::apiUri() {
  return session().identity()->apiUri;
}
std::string Kifo::listenerUri() {
  return session().identity()->listenerUri;
}
std::string Kifo::authorization() {
  return session().identity()->authorization;
}
std::string Kifo::localOrigin() {
  return session().identity()->localOrigin;
}
std::string Kifo::actorId() {
  return session().identity()->actorId;
}
std::string Kifo::applicationName() {
  return session().identity()->applicationName;
}
std::string Kifo::pushToken() {
  return session().identity()->pushToken;
}
std::string Kifo::apnsToken() {
  return session().identity()->apnsToken;
}
bool Kifo::offlineCachingDisabled() {
  return session().offlineCachingDisabled;
}
KifoNetworkStatus Kifo::networkStatus() {
  return session().networkStatus;
}
KifoNotificationPermissionStatusType Kifo::notificationPermissionStatus() {
  return session().notificationPermissionStatus;
}
bool Kifo::isInstall() {
  return session().isInstall;
}
bool Kifo::isStarted() {
  return session().isStarted;
}
std::optional<double> Kifo::requestTimeout() {
  const double seconds = session().requestTimeout;
  return seconds > 0.0 ? std::optional(seconds) : std::nullopt;
}

bool Kifo::shutdown(double bound) {
  return shutDown(bound);
}

}  // namespace kifo
