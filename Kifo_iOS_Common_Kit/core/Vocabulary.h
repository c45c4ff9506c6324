#pragma once

#include <optional>
#include <string_view>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

/// The string-backed enumerations whose raw strings travel in payloads, preference keys and console
/// lines. Every raw string is part of the wire or storage format, its odd spelling included.
///
///     rawValue(KifoEventType::PAGE_IN)                    // "page_in"
///     fromRawValue<KifoEventType>("page_in")              // PAGE_IN; none for any other text
///
/// **Threading:** immutable.
namespace kifo {

/// The state of the SDK's initialisation.
enum class InitializeStatusType {
  INITIALIZING,
  INITIALIZED,
  NOT_INITIALIZED,
  INITIALIZE_FAILED,
  TOKEN_FAILED,
};

/// The name on the wire of every event that the SDK sends by itself.
enum class KifoEventType {
  PAGE_IN,
  PAGE_OUT,
  APP_BACKGROUND,
  APP_FOREGROUND,
  ACTOR_CHANGE,
  PUSH_NOTIFICATION_RECEIVED,
  PUSH_NOTIFICATION_CLICKED,
  PUSH_NOTIFICATION_DENIED,
  PUSH_NOTIFICATION_DISMISSED,
  INSTALL,
  APPLICATION_ERROR,
  INAPPOPENED,
  TOKENCHANGE,
  INAPPMESSAGERESPONSE,
  INITIALIZE,
  LOGIN,
};

/// The event names that count as lifecycle log kinds.
enum class KifoLogType { PAGE_IN, PAGE_OUT, APP_BACKGROUND, APP_FOREGROUND, ACTOR_CHANGE };

/// The user's permission for notifications, as payloads report it.
enum class KifoNotificationPermissionStatusType {
  DENIED,
  NOT_DETERMINED,
  AUTHORIZED,
  PROVISIONAL,
  EPHEMERAL,
  UNKNOWN,
};

/// How the device is connected.
enum class KifoNetworkCapability { WIFI, CELLULAR, NONE };

enum class KifoNetworkStatus { ONLINE, OFFLINE };

/// The advisory master switch for events: a console line is all that it changes.
enum class SendEventStatus { ENABLED, DISABLED };

/// The switch for application and for page lifecycle events.
enum class SendLifeCycleEventStatus { ENABLED, DISABLED };

/// The keys under which push tokens are kept.
enum class PreferencesKey { apnsToken, pushToken };

/// The push service that a token belongs to.
enum class TokenProviderType { apns, firebase };

/// The kind of link that an action carries.
enum class KifoActionType { deep, url };

KIFO_EXPORT std::string_view rawValue(InitializeStatusType value);
KIFO_EXPORT std::string_view rawValue(KifoEventType value);
KIFO_EXPORT std::string_view rawValue(KifoLogType value);
KIFO_EXPORT std::string_view rawValue(KifoNotificationPermissionStatusType value);
KIFO_EXPORT std::string_view rawValue(KifoNetworkCapability value);
KIFO_EXPORT std::string_view rawValue(KifoNetworkStatus value);
KIFO_EXPORT std::string_view rawValue(SendEventStatus value);
KIFO_EXPORT std::string_view rawValue(SendLifeCycleEventStatus value);
KIFO_EXPORT std::string_view rawValue(PreferencesKey value);
KIFO_EXPORT std::string_view rawValue(TokenProviderType value);
KIFO_EXPORT std::string_view rawValue(KifoActionType value);

/// The case whose raw string is exactly `text`; none for any other text. Case counts.
template <class Enumeration>
KIFO_EXPORT std::optional<Enumeration> fromRawValue(std::string_view text);

}  // namespace kifo
