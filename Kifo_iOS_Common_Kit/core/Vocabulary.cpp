#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"

#include <array>

namespace kifo {
namespace {

using namespace std::string_view_literals;

/// Raw strings by ordinal, in declaration order.
template <class Enumeration>
constexpr auto rawValues = nullptr;

template <>
constexpr auto rawValues<InitializeStatusType> =
    std::array{"INITIALIZING"sv, "INITIALIZED"sv, "NOT_INITIALIZED"sv, "INITIALIZE_FAILED"sv,
               "TOKEN_FAILED"sv};

template <>
constexpr auto rawValues<KifoEventType> = std::array{
    "page_in"sv,
    "page_out"sv,
    "app_background"sv,
    "app_foreground"sv,
    "actor_change"sv,
    "push_notification_received"sv,
    "push_notification_clicked"sv,
    "push_notificition_denied"sv,  // misspelled; kept for compatibility
    "push_notification_dismissed"sv,
    "install"sv,
    "application_error"sv,
    "in_app_opened"sv,
    "push_token_change"sv,
    "InAppMessageResponse"sv,
    "sdk_initialize"sv,
    "login"sv,
};

template <>
constexpr auto rawValues<KifoLogType> =
    std::array{"page_in"sv, "page_out"sv, "app_background"sv, "app_foreground"sv, "actor_change"sv};

template <>
constexpr auto rawValues<KifoNotificationPermissionStatusType> = std::array{
    "DENIED"sv, "NOT_DETERMINED"sv, "AUTHORIZED"sv, "PROVISIONAL"sv, "EPHEMERAL"sv, "UNKNOWN"sv};

template <>
constexpr auto rawValues<KifoNetworkCapability> = std::array{"wifi"sv, "cellular"sv, "none"sv};

template <>
constexpr auto rawValues<KifoNetworkStatus> = std::array{"online"sv, "offline"sv};

template <>
constexpr auto rawValues<SendEventStatus> = std::array{"ENABLED"sv, "DISABLED"sv};

template <>
constexpr auto rawValues<SendLifeCycleEventStatus> = std::array{"ENABLED"sv, "DISABLED"sv};

template <>
constexpr auto rawValues<PreferencesKey> = std::array{"APNS_TOKEN"sv, "PUSH_TOKEN"sv};

template <>
constexpr auto rawValues<TokenProviderType> = std::array{"apns"sv, "firebase"sv};

template <>
constexpr auto rawValues<KifoActionType> = std::array{"deep"sv, "url"sv};

template <class Enumeration>
std::optional<Enumeration> find(std::string_view text) {
  const auto& values = rawValues<Enumeration>;
  for (std::size_t ordinal = 0; ordinal < values.size(); ++ordinal) {
    if (values[ordinal] == text) return static_cast<Enumeration>(ordinal);
  }
  return std::nullopt;
}

template <class Enumeration>
std::string_view raw(Enumeration value) {
  return rawValues<Enumeration>[static_cast<std::size_t>(value)];
}

}  // namespace

#define KIFO_RAW_STRINGS(Enumeration)                                                       \
  std::string_view rawValue(Enumeration value) {                                            \
    return raw(value);                                                                      \
  }                                                                                         \
  template <>                                                                               \
  KIFO_EXPORT std::optional<Enumeration> fromRawValue<Enumeration>(std::string_view text) { \
    return find<Enumeration>(text);                                                         \
  }

KIFO_RAW_STRINGS(InitializeStatusType)
KIFO_RAW_STRINGS(KifoEventType)
KIFO_RAW_STRINGS(KifoLogType)
KIFO_RAW_STRINGS(KifoNotificationPermissionStatusType)
KIFO_RAW_STRINGS(KifoNetworkCapability)
KIFO_RAW_STRINGS(KifoNetworkStatus)
KIFO_RAW_STRINGS(SendEventStatus)
KIFO_RAW_STRINGS(SendLifeCycleEventStatus)
KIFO_RAW_STRINGS(PreferencesKey)
KIFO_RAW_STRINGS(TokenProviderType)
KIFO_RAW_STRINGS(KifoActionType)

#undef KIFO_RAW_STRINGS

}  // namespace kifo
