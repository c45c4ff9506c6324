#pragma once

/// The keys of event payloads and of stored preferences, and the values that never change. Each is
/// part of the wire or storage format to the letter. A key's comment says which events carry it and
/// what it tells: the table in docs/privacy.md is made of them.
///
/// The keys mix three styles. Kept for compatibility.
namespace kifo {

class Constants {
 public:
  static constexpr auto PUSH_TOKEN =
      "push_token";  ///< every event: the push token, "" until it is set
  static constexpr auto APNS_TOKEN =
      "apns_token";  ///< every event: the device token, "" until it is set
  static constexpr auto ACTOR_ID = "actorId";  ///< every event: the user, as the host names them
  static constexpr auto DEVICE_ID =
      "device_id";  ///< every event: this program's own id on this device
  static constexpr auto REQUEST_ID = "requestId";  ///< every event: a random id of this payload
  static constexpr auto CHANNEL = "channel";       ///< every event: constant
  static constexpr auto SYNC = "sync";             ///< every event: constant
  static constexpr auto DEVICE_OS = "device_os";   ///< every event: constant
  static constexpr auto DEVICE_OS_VERSION =
      "device_os_version";                            ///< every event: the system's version
  static constexpr auto PHONE_BRAND = "phone_brand";  ///< every event: constant
  static constexpr auto PHONE_MODEL = "phone_model";  ///< every event: the device's model
  static constexpr auto SDK_VERSION = "sdk_version";  ///< every event: the SDK's version
  static constexpr auto SCENARIO = "scenario";        ///< every event: "ALL", or the push's own
  static constexpr auto TIME_ZONE = "time_zone";      ///< every event: such as "Europe/Berlin"
  static constexpr auto TIMESTAMP = "timestamp";      ///< every event: when it happened, in ms
  static constexpr auto NAME = "name";                ///< every event: the event's name
  static constexpr auto PAGE_NAME = "page_name";      ///< pages, answers: the screen's name
  static constexpr auto ANONYMOUS = "anonymous";      ///< install: whether the host named no user
  static constexpr auto FREE_DISK = "free_disk";      ///< if asked for: free space of the disk
  static constexpr auto TOTAL_DISK = "total_disk";    ///< if asked for: size of the disk
  static constexpr auto BATTERY = "battery";          ///< if asked for: the battery's level
  static constexpr auto NETWORK_STATUS =
      "network_status";                                  ///< if asked for: Wi-Fi or mobile network
  static constexpr auto LATITUDE = "latitude";           ///< if asked for: the device's position
  static constexpr auto LONGITUDE = "longitude";         ///< if asked for: the device's position
  static constexpr auto UUID = "uuid";                   ///< campaigns: the campaign's id
  static constexpr auto CODE = "code";                   ///< campaigns, pushes: the campaign's code
  static constexpr auto TYPE = "type";                   ///< campaigns, pushes: the campaign's kind
  static constexpr auto ERROR_TYPE = "type";             ///< application errors: the error's domain
  static constexpr auto RESPONSE_TYPE = "responseType";  ///< answers, pushes: what was pressed
  static constexpr auto RESPONSE_ID = "responseId";      ///< answers, pushes: which one was pressed
  static constexpr auto STATUS = "status";               ///< pushes: the permission to show them
  static constexpr auto DEFAULT_FREE_TEXT = "defaultFreeText";  ///< answers: what the user wrote
  static constexpr auto SLIDER_VALUE = "sliderValue";  ///< answers: the score that the user gave
  static constexpr auto NEW_ACTOR_ID = "newActorId";   ///< change of user: the new user
  static constexpr auto MESSAGE = "message";           ///< application errors: the error's text
  static constexpr auto TOKEN_PROVIDER =
      "token_provider";  ///< change of a token: "apns" or "firebase"
  static constexpr auto RESPONSE_TEXT = "responseText";       ///< answers, pushes: the chosen text
  static constexpr auto SURVEY_QUESTION = "survey_question";  ///< campaigns: the question
  static constexpr auto APPLICATION_NAME = "application_name";  ///< every event: the host's name
  static constexpr auto PUSH_NOTIFICATION_PERMISSION_STATUS =
      "push_notification_permission_status";  ///< every event: may pushes be shown
  static constexpr auto COMMUNICATION_NAME = "communication_name";  ///< pushes: the campaign's id

  // The same on every system and for every event. Kept for compatibility.
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
