#include "Kifo_iOS_Common_Kit/core/Session.h"

#include <mutex>
#include <utility>

namespace kifo {

Session::Session() : identity_(std::make_shared<const Identity>()) {}

Session& Session::shared() {
  static Session& only = *new Session;
  return only;
}

std::shared_ptr<const Session::Identity> Session::identity() const {
  const std::shared_lock lock(mutex_);
  return identity_;
}

void Session::updateIdentity(const std::function<void(Identity&)>& change) {
  std::shared_ptr<const Identity> previous;  // destroyed after the lock is let go
  const std::lock_guard lock(mutex_);
  auto next = std::make_shared<Identity>(*identity_);
  change(*next);
  previous = std::exchange(identity_, std::move(next));
}

std::shared_ptr<const AppCommunication> Session::appCommunication() const {
  const std::shared_lock lock(mutex_);
  return appCommunication_;
}

void Session::setAppCommunication(std::shared_ptr<const AppCommunication> answer) {
  // The old answer may be the last holder of a large tree: it goes after the lock.
  const std::lock_guard lock(mutex_);
  appCommunication_.swap(answer);
}

std::shared_ptr<TokenServiceProtocol> Session::tokenService() const {
  const std::shared_lock lock(mutex_);
  return tokenService_;
}

void Session::setTokenService(std::shared_ptr<TokenServiceProtocol> service) {
  const std::lock_guard lock(mutex_);
  tokenService_.swap(service);
}

std::string Session::withoutCommas(std::string text) {
  std::erase(text, ',');
  return text;
}

void Session::reset() {
  updateIdentity([](Identity& identity) { identity = {}; });
  setAppCommunication(nullptr);
  setTokenService(nullptr);
  initializeStatus = InitializeStatusType::NOT_INITIALIZED;
  networkStatus = KifoNetworkStatus::ONLINE;
  notificationPermissionStatus = KifoNotificationPermissionStatusType::UNKNOWN;
  sendEventStatus = SendEventStatus::ENABLED;
  sendApplicationLifeCycleEventStatus = SendLifeCycleEventStatus::ENABLED;
  sendActivityLifeCycleEventStatus = SendLifeCycleEventStatus::ENABLED;
  offlineCachingDisabled = false;
  isInstall = false;
  isStarted = false;
  isWifiStatusRequired = false;
  isDiskCapacityRequired = false;
  isBatteryStatusRequired = false;
  isLocationRequired = false;
  requestTimeout = 0.0;
}

}  // namespace kifo
