#include "Kifo_iOS_Common_Kit/notifications/NotificationManager.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

using ::testing::Field;

constexpr auto URL = "https://images/push.png";
constexpr auto CAMPAIGN = R"({
  "uuid": "U", "code": "C", "actorId": "A", "pushToken": "P", "scenario": "S",
  "action": {"link": "body"},
  "buttons": [{"id": "b1", "text": "One", "action": {"link": "one"}},
              {"id": "b2", "text": "Two", "action": {"link": "two"}},
              {"id": "b2", "text": "Twin", "action": {"link": "twin"}},
              {"id": "b3"}, {"text": "no id"}]})";

/// Answers images before `send` returns, for the extension waits for them on its own thread, and
/// leaves everything else to the fake.
class ImageTransport final : public HttpTransport {
 public:
  explicit ImageTransport(std::shared_ptr<HttpTransport> next) : next_(std::move(next)) {}

  void send(Make make, Done done) override {
    const HttpRequest request = make();
    if (request.url == URL) {
      done(image);
    } else {
      next_->send([request] { return request; }, std::move(done));
    }
  }
  void networkChanged() override {}
  void stop() override {}

  HttpAnswer image{std::nullopt, 200, "GIF89a"};

 private:
  const std::shared_ptr<HttpTransport> next_;
};

class NotificationManagerTest : public testing::FakesTest {
 protected:
  NotificationManagerTest() {
    testing::installWith(fake_, [&](auto& platform) { platform.http = transport_; });
    auto& session = Runtime::current()->session;
    session.updateIdentity([](auto& identity) { identity.listenerUri = "https://listener"; });
  }

  /// What `didReceive` hands to its content handler, one after another.
  std::vector<std::shared_ptr<const NotificationContent>> receive(UserInfo userInfo) {
    std::vector<std::shared_ptr<const NotificationContent>> handled;
    fake_.console->clear();
    const auto own = std::make_shared<NotificationContent>(contentOfPush(std::move(userInfo)));
    NotificationManager::didReceive({"id", own},
                                    [&](auto content) { handled.push_back(std::move(content)); });
    EXPECT_EQ(own->categoryIdentifier, "") << "the extension's own content stays as it is";
    EXPECT_THAT(own->attachments, IsEmpty());
    return handled;
  }

  /// The bodies of the events that were sent under `name`.
  std::vector<Value> events(const std::string& name) {
    fake_.runUntilIdle();
    return fake_.http->events(name);
  }

  std::vector<std::string> lines() { return fake_.console->lines(); }

  std::shared_ptr<ImageTransport> transport_ = std::make_shared<ImageTransport>(fake_.http);
};

TEST_F(NotificationManagerTest, APushWithEverythingIsReportedAndGetsItsButtonsAndItsImage) {
  auto handled = receive({{"data", CAMPAIGN}, {"image", URL}, {"title", "Sale"}});
  ASSERT_EQ(handled.size(), 1U);
  EXPECT_EQ(handled[0]->title, "Sale");
  EXPECT_EQ(handled[0]->categoryIdentifier, "KifoNotificationCategory");
  ASSERT_THAT(handled[0]->attachments,
              ElementsAre(Field(&NotificationAttachment::identifier, "image.jpg")));
  const std::string path = handled[0]->attachments[0].path;
  EXPECT_EQ((std::ostringstream() << std::ifstream(path).rdbuf()).str(), "GIF89a");
  handled.clear();
  EXPECT_FALSE(std::filesystem::exists(path)) << "its file goes with its content";

  EXPECT_THAT(
      fake_.notifications->categories.get(),
      ElementsAre(NotificationCategory{"KifoNotificationCategory",
                                       {{"b1", "One", 4}, {"b2", "Two", 4}, {"b2", "Twin", 4}}}));
  const auto received = events("push_notification_received");
  ASSERT_EQ(received.size(), 1U);
  EXPECT_EQ(received[0]["communication_name"], "U");
  EXPECT_EQ(received[0]["scenario"], "S");
  EXPECT_EQ(received[0]["code"], "C");
}

TEST_F(NotificationManagerTest, APushWithoutAButtonThatCanBeOfferedRegistersAnEmptyCategory) {
  receive({{"data", CAMPAIGN}});
  for (const auto& [data, category] :
       {std::pair("{}", ""), std::pair(R"({"buttons": []})", ""),
        std::pair(R"({"buttons": [{"id": "b"}, {"text": "t"}]})", "KifoNotificationCategory")}) {
    const auto handled = receive({{"data", data}});
    EXPECT_EQ(handled.at(0)->categoryIdentifier, category) << data;
    EXPECT_THAT(fake_.notifications->categories.get(),
                ElementsAre(NotificationCategory{"KifoNotificationCategory", {}}));
  }
}

TEST_F(NotificationManagerTest, ACampaignThatCannotBeReadSendsNothingAndStillGetsItsImage) {
  for (const UserInfo& data : {UserInfo("[]"), UserInfo("{"), UserInfo(R"({"uuid": 7})"),
                               UserInfo(7), UserInfo(nullptr), UserInfo::map()}) {
    const auto handled = receive({{"data", data}, {"image", URL}});
    ASSERT_EQ(handled.size(), 1U) << jsonFromValue(data);
    EXPECT_EQ(handled[0]->attachments.size(), 1U) << jsonFromValue(data);
  }
  EXPECT_THAT(events("push_notification_received"), IsEmpty());
  EXPECT_THAT(fake_.notifications->categories.get(), IsEmpty());
}

TEST_F(NotificationManagerTest, APushNested100000LevelsDeepIsShownAndReported) {
  const std::string deep = std::string(100'000, '[') + std::string(100'000, ']');
  const UserInfo userInfo{{"extra", valueFromJson(deep).value()},
                          {"data", "{\"uuid\": \"U\", \"extra\": " + deep + "}"}};
  const auto handled = receive(userInfo);
  ASSERT_EQ(handled.size(), 1U);
  EXPECT_TRUE(handled[0]->userInfo == userInfo);
  KifoEventManager::sendPushNotificationDismissedEvent(userInfo);
  EXPECT_EQ(events("push_notification_received").size(), 1U);
  EXPECT_EQ(events("push_notification_dismissed").size(), 1U);
}

TEST_F(NotificationManagerTest, AnImageThatIsNoUrlShowsThePushAsItIsWithoutAWord) {
  for (const UserInfo& image : {UserInfo(""), UserInfo("not a url"), UserInfo(7)}) {
    const auto handled = receive({{"image", image}});
    ASSERT_EQ(handled.size(), 1U) << jsonFromValue(image);
    EXPECT_THAT(handled[0]->attachments, IsEmpty());
    EXPECT_THAT(lines(), ElementsAre("Kifo NotificationManager: notification received",
                                     StartsWith("Kifo NotificationManager: bestAttemptContent: ")));
  }
}

TEST_F(NotificationManagerTest, AnImageThatCannotBeLoadedIsSaidWithoutTheTagAfterThePushIsShown) {
  transport_->image = {std::nullopt, 404, "no such page"};
  std::vector<std::string> seen;
  NotificationManager::didReceive(
      {"id", std::make_shared<NotificationContent>(contentOfPush({{"image", URL}}))},
      [&](auto content) {
        seen = lines();
        EXPECT_THAT(content->attachments, IsEmpty());
      });
  EXPECT_EQ(seen.size(), 2U);
  EXPECT_EQ(lines().back(), "Unable to load data: HTTP status 404");
}

TEST_F(NotificationManagerTest, AnImageThatCannotBeSavedShowsThePushWithoutIt) {
  Platform platform = *Platform::current();
  platform.temporaryDirectory = "/dev/null/below";
  Platform::install(platform);
  const auto handled = receive({{"image", URL}});
  ASSERT_EQ(handled.size(), 1U);
  EXPECT_THAT(handled[0]->attachments, IsEmpty());
  EXPECT_THAT(lines().back(), StartsWith("Kifo NotificationManager: error "));
}

TEST_F(NotificationManagerTest, ARequestWithoutContentIsTheOneThatIsNotHandedOn) {
  bool handled = false;
  NotificationManager::didReceive({}, [&](auto) { handled = true; });
  EXPECT_FALSE(handled);
  EXPECT_THAT(lines(),
              ElementsAre("Kifo NotificationManager: notification received",
                          "Kifo NotificationManager: bestAttemptContent couldn't be assigned"));
}

TEST_F(NotificationManagerTest, AContentHandlerThatThrowsIsRunOnceAndHarmsNothing) {
  int runs = 0;
  NotificationManager::didReceive({"id", std::make_shared<NotificationContent>()}, [&](auto) {
    ++runs;
    throw std::runtime_error("host");
  });
  EXPECT_EQ(runs, 1);
}

struct Tap {
  const char* name;
  std::string actionIdentifier;
  const char* link;  ///< What the host is handed.
  Value responseType, responseId, responseText;
};

class Taps : public NotificationManagerTest, public ::testing::WithParamInterface<Tap> {};

TEST_P(Taps, AreReportedOnceAndHandedToTheHost) {
  std::vector<std::string> links;
  NotificationManager::handleNotification(
      {{"data", CAMPAIGN}}, {GetParam().actionIdentifier},
      [&](auto action) { links.push_back(action->link.value()); });
  EXPECT_THAT(links, ElementsAre(GetParam().link));
  const auto clicked = events("push_notification_clicked");
  ASSERT_EQ(clicked.size(), 1U);
  EXPECT_EQ(clicked[0]["responseType"], GetParam().responseType);
  EXPECT_EQ(clicked[0]["responseId"], GetParam().responseId);
  EXPECT_EQ(clicked[0]["responseText"], GetParam().responseText);
  EXPECT_EQ(clicked[0]["communication_name"], "U");
}

INSTANTIATE_TEST_SUITE_P(
    NotificationManager, Taps,
    ::testing::Values(
        Tap{"Body", NotificationResponse::defaultActionIdentifier, "body", "SELF", "", {}},
        Tap{"Button", "b1", "one", "BUTTON", "b1", "One"},
        Tap{"FirstOfTwo", "b2", "two", "BUTTON", "b2", "Two"},
        Tap{"Unknown", "B1", "body", "SELF", "", {}}),
    [](const auto& tap) { return tap.param.name; });

TEST_F(NotificationManagerTest, ATapWithNothingToOpenIsHandedOnAndOneWithoutACampaignEndsSilently) {
  for (const UserInfo& userInfo :
       {UserInfo{{"data", "[1]"}}, UserInfo{{"data", "no json"}},
        UserInfo{{"data", {{"uuid", "U"}}}}, UserInfo::map(), UserInfo()}) {
    NotificationManager::handleNotification(userInfo, {"b1"}, [](auto) { FAIL(); });
  }
  EXPECT_THAT(lines(), IsEmpty());
  EXPECT_THAT(events("push_notification_clicked"), IsEmpty());
  int calls = 0;
  NotificationManager::handleNotification(
      {{"data", "{}"}}, {"b"}, [&](auto action) { calls += action == nullptr ? 1 : 100; });
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(events("push_notification_clicked").size(), 1U);
}

TEST_F(NotificationManagerTest, ThePermissionFollowsTheCentresAnswerAndStaysUntilThere) {
  using Status = KifoNotificationPermissionStatusType;
  auto& status = Runtime::current()->session.notificationPermissionStatus;
  fake_.notifications->status.set(std::nullopt);
  NotificationManager::refreshNotificationPermissionStatusType();
  EXPECT_EQ(status, Status::UNKNOWN);
  const Status expected[] = {Status::NOT_DETERMINED, Status::DENIED,    Status::AUTHORIZED,
                             Status::PROVISIONAL,    Status::EPHEMERAL, Status::UNKNOWN};
  for (int value = 0; value < 6; ++value) {
    fake_.notifications->status.set(value == 5 ? 7 : value);
    NotificationManager::refreshNotificationPermissionStatusType();
    EXPECT_EQ(status, expected[value]) << value;
  }
}

}  // namespace
}  // namespace kifo
