// What each kind of event looks like on the wire.

#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"
#include "tests/support/SdkTest.h"

namespace kifo {
namespace {

using nlohmann::json;

class EventPayloadTest : public SdkTest {
 protected:
  EventPayloadTest() {
    fake.device->readings.update([](auto& now) { now.machine = "iPhone13,2"; });
    start();
  }

  /// What the last event of a name carries beside the keys that every event has.
  json own(const std::string& name) {
    fake.runUntilIdle();
    json event = lastEvent(name);
    for (const char* key :
         {"push_token", "apns_token", "actorId", "device_id", "requestId", "channel", "sync",
          "device_os", "phone_brand", "phone_model", "device_os_version", "sdk_version", "scenario",
          "time_zone", "timestamp", "application_name", "push_notification_permission_status"}) {
      EXPECT_EQ(event.erase(key), 1U) << key;
    }
    return event;
  }

  json answer(const std::string& type, InAppAnswer answer,
              std::shared_ptr<ViewController> controller = nullptr) {
    auto item =
        decode<AppCommunicationItem>(std::string_view(R"({"uuid":"u","question":{"text":"q"}})"));
    if (!type.empty()) item->type = type;
    KifoEventManager::reporter()->answered(item, std::move(answer), controller, std::nullopt);
    json keys = own("InAppMessageResponse");
    for (const char* key : {"name", "uuid", "survey_question", "type"}) keys.erase(key);
    return keys;
  }

  static std::shared_ptr<AppCommunicationItemButton> button(const char* text) {
    return decode<AppCommunicationItemButton>(std::string_view(text));
  }

  std::shared_ptr<HomeScreen> screen = std::make_shared<HomeScreen>();
};

TEST_F(EventPayloadTest, EveryEventCarriesTheCommonKeys) {
  Kifo::updateActorId("a,b,");
  fake.clock->setMillisecondsSince1970(1700000000123);
  KifoEventManager::sendAppForegroundEvent();
  fake.runUntilIdle();
  json event = lastEvent("app_foreground");
  const std::string requestId = event["requestId"];
  EXPECT_EQ(requestId.size(), 36U) << requestId;
  event.erase("requestId");
  EXPECT_EQ(event,
            (json{{"push_token", ""},
                  {"apns_token", ""},
                  {"actorId", "ab"},
                  {"device_id", fake.device->vendorIdentifier().value_or("")},
                  {"channel", "MOBILE"},
                  {"sync", "a"},
                  {"device_os", "ios"},
                  {"phone_brand", "Apple"},
                  {"phone_model", "iPhone 12"},
                  {"device_os_version", fake.device->systemVersion()},
                  {"sdk_version", "1.2.10"},
                  {"scenario", "ALL"},
                  {"time_zone", fake.clock->timeZone()},
                  {"timestamp", 1700000000123},
                  {"application_name", "Shop"},
                  {"push_notification_permission_status",
                   rawValue(Runtime::current()->session.notificationPermissionStatus.load())},
                  {"name", "app_foreground"}}));
  EXPECT_EQ(fake.console->count("Kifo KifoEventManager: logEvent - requestId - " + requestId), 0U)
      << "the payload's identifier is not the request's";
}

TEST_F(EventPayloadTest, AnEventTellsOfItsOwnMomentHoweverLateItIsComposed) {
  Session& session = Runtime::current()->session;
  for (const bool isInspected : {true, false}) {  // without an inspector it is composed late
    Platform platform = fake.platform();
    if (!isInspected) platform.inspector = nullptr;
    Platform::install(platform);
    setOnline(false);
    fake.runUntilIdle();
    Kifo::updateActorId("then");
    session.isBatteryStatusRequired = true;
    fake.device->readings.update([](auto& now) { now.batteryLevel = 0.5F; });
    fake.clock->setTimeZone("Europe/Istanbul");
    fake.clock->setMillisecondsSince1970(1700000000123);
    const auto item = decode<AppCommunicationItem>(std::string_view(R"({"uuid":"then"})"));
    KifoEventManager::sendEvent("custom", std::nullopt, {{"host", 1}, {"actorId", "host's"}});
    KifoEventManager::reporter()->opened(item, nullptr, std::nullopt);
    item->uuid = "later";
    Kifo::updateActorId("later");
    session.isBatteryStatusRequired = false;
    fake.device->readings.update([](auto& now) { now.batteryLevel = 0.7F; });
    fake.clock->setTimeZone("Asia/Tokyo");
    fake.clock->setMillisecondsSince1970(1800000000000);
    fake.runUntilIdle();
    const auto stored = [this](const std::string& name) {
      const auto found = rows("select PARAMETERS from KifoLog where PARAMETERS like '%\"name\":\"" +
                              name + "\"%' order by ID desc limit 1");
      return found.empty() ? json() : json::parse(found[0]);
    };
    json opened = stored("in_app_opened");
    json custom = stored("custom");
    EXPECT_EQ(opened["uuid"], "then");
    EXPECT_EQ(custom["host"], 1);
    for (json& event : {std::ref(opened), std::ref(custom)}) {
      EXPECT_EQ(event["actorId"], "then");
      EXPECT_EQ(event["battery"], "50");
      EXPECT_EQ(event["timestamp"], 1700000000123);
      EXPECT_EQ(event["time_zone"], "Europe/Istanbul");
    }
  }
}

TEST_F(EventPayloadTest, DeviceKeysComeOnlyWithTheirSwitches) {
  Session& session = Runtime::current()->session;
  fake.device->readings.update([](auto& now) { now.batteryLevel = 0.555F; });
  fake.position->authorization = 4;
  fake.position->state = 0;
  fake.position->coordinate.set(Coordinate{41.0082, -28.0});
  KifoEventManager::sendAppForegroundEvent();
  EXPECT_EQ(own("app_foreground"), (json{{"name", "app_foreground"}}));
  session.isBatteryStatusRequired = session.isWifiStatusRequired = session.isDiskCapacityRequired =
      true;
  session.isLocationRequired = true;
  KifoEventManager::sendLoginEvent(nullptr, std::nullopt,
                                   {{"battery", "the host's"}, {"latitude", "the host's"}});
  json keys = own("login");
  EXPECT_EQ(keys["battery"], "55");
  EXPECT_EQ(keys["network_status"], "wifi");
  EXPECT_EQ(keys["latitude"], "41.0082");
  EXPECT_EQ(keys["longitude"], "-28.0");
  EXPECT_TRUE(keys.contains("free_disk") && keys.contains("total_disk"));
  fake.position->state = 2;
  fake.device->readings.update([](auto& now) { now.batteryLevel = -1.0F; });
  KifoEventManager::sendAppForegroundEvent();
  keys = own("app_foreground");
  EXPECT_FALSE(keys.contains("latitude") || keys.contains("longitude"));
  EXPECT_EQ(keys["battery"], "-100");
}

TEST_F(EventPayloadTest, TheSdksOwnEventsCarryTheirKeys) {
  EXPECT_EQ(own("install"), (json{{"name", "install"}, {"anonymous", false}}));
  EXPECT_EQ(own("sdk_initialize"), (json{{"name", "sdk_initialize"}}));
  KifoEventManager::sendInstallEvent("");
  EXPECT_EQ(own("install")["anonymous"], true);
  Kifo::updateActorId("new,id");
  EXPECT_EQ(own("actor_change"), (json{{"name", "actor_change"}, {"newActorId", "new,id"}}));
  EXPECT_EQ(lastEvent("actor_change")["actorId"], "actor");
  KifoEventManager::sendTokenChangeEvent(TokenProviderType::firebase);
  EXPECT_EQ(own("push_token_change"),
            (json{{"name", "push_token_change"}, {"token_provider", "firebase"}}));
  KifoEventManager::sendApplicationErrorEvent({"net", 7, "broken"});
  EXPECT_EQ(own("application_error"),
            (json{{"name", "application_error"}, {"message", "broken"}, {"type", "net"}}));
}

TEST_F(EventPayloadTest, APageIsNamedByTheCallerElseByTheScreenAndNotAtAllWithoutOne) {
  KifoEventManager::sendPageInEvent(screen, "Front");
  EXPECT_EQ(own("page_in"), (json{{"name", "page_in"}, {"page_name", "Front"}}));
  KifoEventManager::sendPageOutEvent(screen, std::nullopt);
  EXPECT_EQ(own("page_out"), (json{{"name", "page_out"}, {"page_name", "HomeScreen"}}));
  KifoEventManager::sendPageInEvent(nullptr, "Front");
  EXPECT_EQ(own("page_in"), (json{{"name", "page_in"}}));
}

TEST_F(EventPayloadTest, AHostsKeysGiveWayToTheSdks) {
  KifoEventManager::sendLoginEvent(
      screen, std::nullopt,
      {{"channel", "WEB"}, {"name", "x"}, {"mine", Value::list({1, nullptr})}, {"page_name", "y"}});
  EXPECT_EQ(lastEvent("login")["channel"], "MOBILE");
  EXPECT_EQ(own("login"),
            (json{{"name", "login"}, {"page_name", "HomeScreen"}, {"mine", {1, nullptr}}}));
}

TEST_F(EventPayloadTest, AnswersAreNamedByWhatWasAnswered) {
  const auto b = button(R"({"id":"a,b","text":"t"})");
  EXPECT_EQ(answer("POPUP", {}), (json{{"responseId", ""}, {"responseType", "REJECT"}}));
  EXPECT_EQ(answer("POPUP", {.body = std::make_shared<AppCommunicationItemAction>()}),
            (json{{"responseId", ""}, {"responseType", "BODY"}}));
  EXPECT_EQ(answer("POPUP", {.button = b}),
            (json{{"responseId", "ab"}, {"responseType", "BUTTON"}, {"responseText", "t"}}));
  EXPECT_EQ(answer("POPUP", {.button = button("{}")}), (json{{"responseType", "BUTTON"}}));
  EXPECT_EQ(answer("POPUP", {.choice = b}), json::object()) << "a combination that says nothing";
  EXPECT_EQ(answer("SURVEY", {.choice = b, .choiseField = ChoiseFieldModel{"ab", "t", "free"}}),
            (json{{"responseId", "ab"},
                  {"responseType", "CHOICE"},
                  {"responseText", "t"},
                  {"defaultFreeText", "free"}}));
  EXPECT_EQ(answer("", {.choice = b, .choiseField = ChoiseFieldModel{"ab", "t", std::nullopt}}),
            (json{{"responseId", "ab"}, {"responseType", "EMOJI"}}));
  EXPECT_EQ(answer("SCORE", {.scoreField = ScoreFieldModel{7, "why"}}, screen),
            (json{{"sliderValue", 7},
                  {"responseType", "SCORE"},
                  {"defaultFreeText", "why"},
                  {"page_name", "HomeScreen"}}));
  EXPECT_EQ(answer("OPEN_ENDED", {.openEndedField = OpenEndedFieldModel{"said"}}),
            (json{{"responseType", "OPEN_ENDED"}, {"defaultFreeText", "said"}}));
}

TEST_F(EventPayloadTest, AnOpenedCampaignCarriesItsIdentityAndLeavesOutWhatItLacks) {
  const auto item = decode<AppCommunicationItem>(
      std::string_view(R"({"uuid":"u","type":"SURVEY","name":"n","question":{"text":"q"}})"));
  KifoEventManager::reporter()->opened(item, nullptr, std::nullopt);
  EXPECT_EQ(
      own("in_app_opened"),
      (json{
          {"uuid", "u"}, {"type", "SURVEY"}, {"survey_question", "q"}, {"name", "in_app_opened"}}));
}

TEST_F(EventPayloadTest, PushEventsSayHowTheUserAnswered) {
  Kifo::setPushToken("the session's");
  KifoEventManager::sendPushNotificationReceivedEvent("pt", "who", "camp", "code", "S");
  EXPECT_EQ(lastEvent("push_notification_received")["scenario"], "S");
  EXPECT_EQ(lastEvent("push_notification_received")["actorId"], "who");
  EXPECT_EQ(lastEvent("push_notification_received")["push_token"], "the session's");
  json keys = own("push_notification_received");
  EXPECT_EQ(keys, (json{{"name", "push_notification_received"},
                        {"responseId", ""},
                        {"code", "code"},
                        {"communication_name", "camp"},
                        {"status", keys["status"]}}));
  Runtime::current()->session.notificationPermissionStatus =
      KifoNotificationPermissionStatusType::DENIED;
  KifoEventManager::sendPushNotificationReceivedEvent("pt", "who", "camp", "code", "S");
  const json both = lastEvent("push_notification_received");
  EXPECT_EQ(both["status"], "AUTHORIZED") << "the centre has answered before the event is composed";
  EXPECT_EQ(both["push_notification_permission_status"], "AUTHORIZED");
  KifoEventManager::sendPushNotificationClickedEvent("pt", "who", "camp", "code", "S", "b,1",
                                                     "Yes");
  keys = own("push_notification_clicked");
  EXPECT_EQ(keys["responseType"], "BUTTON");
  EXPECT_EQ(keys["responseId"], "b1");
  EXPECT_EQ(keys["responseText"], "Yes");
  KifoEventManager::sendPushNotificationClickedEvent("pt", "who", "camp", "code", "S", "b1", {});
  keys = own("push_notification_clicked");
  EXPECT_EQ(keys["responseType"], "BUTTON") << "also without a text";
  EXPECT_FALSE(keys.contains("responseText"));
  KifoEventManager::sendPushNotificationClickedEvent("pt", "who", "camp", "code", "S", {}, {});
  EXPECT_EQ(own("push_notification_clicked")["responseType"], "SELF");
  KifoEventManager::sendPushNotificationDismissedEvent(
      {{"data", R"({"uuid":"camp","type":"POPUP","code":"c"})"}});
  keys = own("push_notification_dismissed");
  EXPECT_EQ(keys["responseType"], "SELF");
  EXPECT_EQ(keys["type"], "POPUP");
  EXPECT_EQ(keys["communication_name"], "camp");
  for (const UserInfo& broken :
       {UserInfo(), UserInfo::list(), UserInfo{{"data", 5}}, UserInfo{{"data", "{"}}}) {
    KifoEventManager::sendPushNotificationDismissedEvent(broken);
    EXPECT_EQ(lastEvent("push_notification_dismissed")["scenario"], "ALL");
  }
}

TEST_F(EventPayloadTest, APermissionIsNamedByItsStatus) {
  KifoEventManager::sendNotificationPermissionStatusEvent({{"status", "DENIED"}});
  EXPECT_EQ(own("push_notificition_denied")["status"], "DENIED");
  KifoEventManager::sendNotificationPermissionStatusEvent({{"status", "PROVISIONAL"}});
  EXPECT_EQ(own("push_notification_permission_status")["status"], "PROVISIONAL");
  KifoEventManager::sendNotificationPermissionStatusEvent(UserInfo());
  EXPECT_EQ(own("push_notification_permission_status")["status"], "UNKNOWN");
}

}  // namespace
}  // namespace kifo
