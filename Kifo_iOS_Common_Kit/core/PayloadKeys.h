#pragma once

/// The keys of event payloads and of stored preferences, and the values that never change. Each is
/// part of the wire or storage format to the letter.
namespace kifo {

class Constants {
 public:
  static constexpr auto PUSH_TOKEN = "push_token";
  static constexpr auto APNS_TOKEN = "apns_token";
  static constexpr auto ACTOR_ID = "actorId";
  static constexpr auto DEVICE_ID = "device_id";
  static constexpr auto REQUEST_ID = "requestId";
  static constexpr auto CHANNEL = "channel";
  static constexpr auto SYNC = "sync";
  static constexpr auto DEVICE_OS = "device_os";
  static constexpr auto DEVICE_OS_VERSION = "device_os_version";
  static constexpr auto PHONE_BRAND = "phone_brand";
  static constexpr auto PHONE_MODEL = "phone_model";
  static constexpr auto SDK_VERSION = "sdk_version";
  static constexpr auto SCENARIO = "scenario";
  static constexpr auto TIME_ZONE = "time_zone";
  static constexpr auto TIMESTAMP = "timestamp";
  static constexpr auto NAME = "name";
  static constexpr auto PAGE_NAME = "page_name";
  static constexpr auto ANONYMOUS = "anonymous";
  static constexpr auto FREE_DISK = "free_disk";
  static constexpr auto TOTAL_DISK = "total_disk";
  static constexpr auto BATTERY = "battery";
  static constexpr auto NETWORK_STATUS = "network_status";
  static constexpr auto LATITUDE = "latitude";
  static constexpr auto LONGITUDE = "longitude";
  static constexpr auto UUID = "uuid";
  static constexpr auto CODE = "code";
  static constexpr auto TYPE = "type";
  static constexpr auto ERROR_TYPE = "type";
  static constexpr auto RESPONSE_TYPE = "responseType";
  static constexpr auto RESPONSE_ID = "responseId";
  static constexpr auto STATUS = "status";
  static constexpr auto DEFAULT_FREE_TEXT = "defaultFreeText";
  static constexpr auto SLIDER_VALUE = "sliderValue";
  static constexpr auto NEW_ACTOR_ID = "newActorId";
  static constexpr auto MESSAGE = "message";
  static constexpr auto TOKEN_PROVIDER = "token_provider";
  static constexpr auto RESPONSE_TEXT = "responseText";
  static constexpr auto SURVEY_QUESTION = "survey_question";
  static constexpr auto APPLICATION_NAME = "application_name";
  static constexpr auto PUSH_NOTIFICATION_PERMISSION_STATUS = "push_notification_permission_status";
  static constexpr auto COMMUNICATION_NAME = "communication_name";

  static constexpr auto MAKER = "Apple";
  static constexpr auto OPERATING_SYSTEM = "ios";
  static constexpr auto MOBILE = "MOBILE";
  static constexpr auto SYNC_MARK = "a";
  static constexpr auto ALL = "ALL";
};

/// The keys of the values that outlive the process, beside those of `PreferencesKey`.
class TokenConstant {
 public:
  static constexpr auto ACTOR_ID = "kifo_actorId";
  static constexpr auto TIMEOUT = "kifo_timeout";
};

}  // namespace kifo
