#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <shared_mutex>
#include <string>

#include "Kifo_iOS_Common_Kit/core/TokenServiceProtocol.h"
#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

struct AppCommunication;

/// What every room of the SDK knows about the running process: who the user is, where the server
/// is, what it last said. `Kifo` shows most of it to the host under its own names.
///
/// **Threading:** thread-safe. Switches are atomics; strings live in one immutable `Identity` that
/// is replaced whole, so that a reader sees all of one moment or all of another.
class KIFO_EXPORT Session {
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

  /// The one session of the process. Never destroyed.
  static Session& shared();

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

  /// Puts every value back to its first one. For shutdown and for tests.
  void reset();

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
  std::atomic<double> requestTimeout = 0.0;  ///< Seconds; 0 until initialisation has read it.

 private:
  Session();

  mutable std::shared_mutex mutex_;  ///< Every event reads: readers keep no reader waiting.
  // Guarded by mutex_.
  std::shared_ptr<const Identity> identity_;
  std::shared_ptr<const AppCommunication> appCommunication_;
  std::shared_ptr<TokenServiceProtocol> tokenService_;
};

}  // namespace kifo
