#pragma once

#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/TokenServiceProtocol.h"
#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"

namespace kifo {

/// The host application as the system names it.
struct Bundle {
  /// Such as "com.example.shop"; without it initialisation fails.
  std::optional<std::string> bundleIdentifier;
};

/// What `Kifo::initialize` wants to know. All fields may be set after construction too:
///
///     kifo::KifoInitConfig configuration;
///     configuration.bundle = {"com.example.shop"};
///     configuration.apiUri = "https://api.example.com/inapp";
///     configuration.listenerUri = "https://listen.example.com/events";
///     configuration.authorization = token;
///
/// **Threading:** a plain value; externally synchronised.
class KifoInitConfig {
 public:
  KifoInitConfig() = default;
  KifoInitConfig(Bundle bundle_, std::string apiUri_, std::string listenerUri_,
                 std::optional<std::string> authorization_,
                 std::shared_ptr<TokenServiceProtocol> tokenService_, std::string applicationName_,
                 std::optional<std::string> actorId_, bool offlineCachingDisabled_,
                 SendLifeCycleEventStatus sendApplicationLifeCycleEventEnabled_,
                 SendLifeCycleEventStatus sendActivityLifeCycleEventStatus_,
                 bool isWifiStatusRequired_, bool isDiskCapacityRequired_,
                 bool isBatteryStatusRequired_, bool isLocationRequired_, bool forceInitialize_)
      : bundle(std::move(bundle_)),
        apiUri(std::move(apiUri_)),
        listenerUri(std::move(listenerUri_)),
        authorization(std::move(authorization_)),
        tokenService(std::move(tokenService_)),
        actorId(std::move(actorId_)),
        applicationName(std::move(applicationName_)),
        offlineCachingDisabled(offlineCachingDisabled_),
        sendApplicationLifeCycleEventEnabled(sendApplicationLifeCycleEventEnabled_),
        sendActivityLifeCycleEventStatus(sendActivityLifeCycleEventStatus_),
        isWifiStatusRequired(isWifiStatusRequired_),
        isDiskCapacityRequired(isDiskCapacityRequired_),
        isBatteryStatusRequired(isBatteryStatusRequired_),
        isLocationRequired(isLocationRequired_),
        forceInitialize(forceInitialize_) {}

  Bundle bundle;            ///< Its identifier becomes the header "LocalOrigin".
  std::string apiUri;       ///< Whole address of the in-app query.
  std::string listenerUri;  ///< Whole address to which events are posted.
  std::optional<std::string> authorization;
  std::shared_ptr<TokenServiceProtocol> tokenService;  ///< Asked when `authorization` is none.
  std::optional<std::string> actorId;                  ///< None or empty: the stored or a new one.
  std::string applicationName;
  bool offlineCachingDisabled = false;  ///< True: stored requests are not sent again.
  SendLifeCycleEventStatus sendApplicationLifeCycleEventEnabled = SendLifeCycleEventStatus::ENABLED;
  SendLifeCycleEventStatus sendActivityLifeCycleEventStatus = SendLifeCycleEventStatus::ENABLED;
  bool isWifiStatusRequired = false;     ///< Adds "network_status" to every event.
  bool isDiskCapacityRequired = false;   ///< Adds "free_disk" and "total_disk".
  bool isBatteryStatusRequired = false;  ///< Adds "battery".
  bool isLocationRequired = false;       ///< Adds "longitude" and "latitude" when they are known.
  bool forceInitialize = false;          ///< Initialises again even when already initialised.

  /// Until `Kifo::giveConsent` nothing leaves the process, nothing is written, no identifier is
  /// made or read and the network is not watched; calls of the host are dropped. docs/privacy.md
  /// says more.
  bool requiresConsent = false;

  /// Stored requests are sent again not only when the network returns, but also when a server that
  /// was away answers: once a fresh request is answered with 200, and, while nothing is sent, by
  /// trying one stored request after 30 seconds, then at doubling intervals up to 10 minutes.
  bool resendsWhenServerReturns = false;
};

}  // namespace kifo
