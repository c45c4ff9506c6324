#include "Kifo_iOS_Common_Kit/core/runtime/StartUp.h"

#include <optional>
#include <string_view>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/PermissionStatus.h"
#include "Kifo_iOS_Common_Kit/core/PreferencesManager.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Watching.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
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

/// On the reachability queue, so that it does not wait for a slow disk: decides whether the next
/// event is sent or only stored.
void networkStatusRead(Session& session, bool isOnline) {
  const auto status = isOnline ? KifoNetworkStatus::ONLINE : KifoNetworkStatus::OFFLINE;
  // Before anything is sent: connections from before the loss no longer work.
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
void fetchAndWatch(const std::shared_ptr<Runtime>& runtime, std::function<void(bool)> fetched) {
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
  // Without a token the status is INITIALIZE_FAILED, and the start goes on. Kept for compatibility.
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
                                            std::function<void()> onSuccess) {
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

}  // namespace

void setActor(Runtime& runtime, const std::string& newActorId) {
  Session& session = runtime.session;
  print("actorId is being updated");
  if (PreferencesManager::actorId() != newActorId) {
    print("Prefactor is not equal new actor id");
    // The first actor of an installation has an empty old id. Kept for compatibility.
    KifoEventManager::sendChangeActorEvent(session.identity()->actorId, newActorId);
  } else {
    print("Prefactor is equal new actor id");
  }
  session.updateIdentity([&](Session::Identity& identity) { identity.actorId = newActorId; });
  runtime.consent.unlessWithheld([&] { PreferencesManager::setActorId(newActorId); });
}

void checkTokens(Runtime& runtime) {
  const auto identity = runtime.session.identity();
  if (!runtime.session.isStarted || identity->apnsToken.empty() || identity->pushToken.empty()) {
    return;
  }
  reportToken(runtime, TokenProviderType::apns, PreferencesKey::apnsToken, identity->apnsToken);
  reportToken(runtime, TokenProviderType::firebase, PreferencesKey::pushToken, identity->pushToken);
}

void startUp(const std::shared_ptr<Runtime>& runtime, const KifoInitConfig& configuration,
             const std::function<void()>& onSuccess) {
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
  fetchAndWatch(runtime, startUpCompletion(runtime, configuration.actorId, onSuccess));
  session.isStarted = true;
  checkTokens(*runtime);
}

/// Neither checks nor changes the status, reports no installation and checks no tokens. Kept for
/// compatibility.
void startUpShortForm(const std::shared_ptr<Runtime>& runtime, const Session::Identity& given,
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
  fetchAndWatch(runtime, {});
}

}  // namespace kifo
