#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/core/TokenServiceProtocol.h"
#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {

struct AppCommunication;

/// What every module knows about the session: who the user is, where the server is, what it last
/// said. `Kifo` shows most of it to the host under its own names.
///
/// **Threading:** thread-safe. Switches are atomics; strings live in one immutable `Identity` that
/// is replaced whole, so that a reader sees all of one moment or all of another.
class Session {
 public:
  struct Identity {
    std::string apiUri;
    std::string listenerUri;
    std::string authorization;
    std::string localOrigin;
    std::string actorId;
    std::string applicationName;
    std::string pushToken;
    std::string apnsToken;
  };

  Session();

  [[nodiscard]] std::shared_ptr<const Identity> identity() const;
  /// Changes a copy of the identity and puts it in force; changes of two threads never mix.
  void updateIdentity(const std::function<void(Identity&)>& change);

  /// The server's last in-app answer; null until the first has come.
  [[nodiscard]] std::shared_ptr<const AppCommunication> appCommunication() const;
  void setAppCommunication(std::shared_ptr<const AppCommunication> answer);

  [[nodiscard]] std::shared_ptr<TokenServiceProtocol> tokenService() const;
  void setTokenService(std::shared_ptr<TokenServiceProtocol> service);

  /// The actor id with every comma removed, as events carry it.
  [[nodiscard]] static std::string withoutCommas(std::string text);

  std::atomic<InitializeStatusType> initializeStatus = InitializeStatusType::NOT_INITIALIZED;
  std::atomic<KifoNetworkStatus> networkStatus = KifoNetworkStatus::ONLINE;
  std::atomic<KifoNotificationPermissionStatusType> notificationPermissionStatus =
      KifoNotificationPermissionStatusType::UNKNOWN;
  std::atomic<SendEventStatus> sendEventStatus = SendEventStatus::ENABLED;
  std::atomic<SendLifeCycleEventStatus> sendApplicationLifeCycleEventStatus =
      SendLifeCycleEventStatus::ENABLED;
  std::atomic<SendLifeCycleEventStatus> sendActivityLifeCycleEventStatus =
      SendLifeCycleEventStatus::ENABLED;
  std::atomic<bool> offlineCachingDisabled = false;
  std::atomic<bool> isInstall = false;
  std::atomic<bool> isStarted = false;
  std::atomic<bool> isWifiStatusRequired = false;
  std::atomic<bool> isDiskCapacityRequired = false;
  std::atomic<bool> isBatteryStatusRequired = false;
  std::atomic<bool> isLocationRequired = false;
  std::atomic<std::int8_t> unauthorizedCount = 0;  ///< 401 answers since the last 200.
  std::atomic<double> requestTimeout = 0.0;        ///< Seconds; 0 until initialisation has read it.

 private:
  mutable SharedMutex mutex_;  ///< Every event reads: readers keep no reader waiting.
  std::shared_ptr<const Identity> identity_ KIFO_GUARDED_BY(mutex_);
  std::shared_ptr<const AppCommunication> appCommunication_ KIFO_GUARDED_BY(mutex_);
  std::shared_ptr<TokenServiceProtocol> tokenService_ KIFO_GUARDED_BY(mutex_);
};

}  // namespace kifo
