#include "Kifo_iOS_Common_Kit/core/Kifo.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/core/runtime/StartUp.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Watching.h"
#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupGate.h"

namespace kifo {
namespace {

void print(std::string_view message) {
  Console::print(Kifo::LOG_TAG, message);
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
                     startUp(runtime, configuration, onSuccess);
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
    startUpShortForm(runtime, given, offlineCachingDisabled);
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
