#include "platform/qt/DesktopNotificationCentre.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QBuffer>
#include <QImage>
#include <QtTest>
#include <algorithm>
#include <filesystem>
#include <memory>
#include <thread>
#include <variant>

#include <gmock/gmock.h>

#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/notifications/AttachmentFile.h"
#include "platform/qt/desktop/DesktopNotificationMessage.h"
#include "testing/FakePlatform.h"
#include "testing/PrivateBus.h"
#include "tests/desktop/ScriptedNotificationService.h"

namespace kifo {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using ::testing::SizeIs;

constexpr auto CAMPAIGN = R"({"uuid": "U", "code": "C", "action": {"link": "body"},
    "buttons": [{"id": "buy", "text": "Buy <now>", "action": {"link": "shop"}},
                {"id": "default", "text": "Later"}]})";

enum Reason : uint { expired = 1, dismissed = 2, closedByCall = 3, undefined = 4 };

/// A socket that takes every connection and closes it: no bus, but one that counts who looks.
class HangingUp {
 public:
  explicit HangingUp(const std::string& path) {
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    bind(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    listen(socket_, 64);
    thread_ = std::thread([this] {
      for (int end = accept(socket_, nullptr, nullptr); end >= 0;
           end = accept(socket_, nullptr, nullptr)) {
        ++connections;
        close(end);
      }
    });
  }
  ~HangingUp() {
    shutdown(socket_, SHUT_RDWR);
    thread_.join();
    close(socket_);
  }

  std::atomic<int> connections = 0;

 private:
  const int socket_ = socket(AF_UNIX, SOCK_STREAM, 0);
  std::thread thread_;
};

class DesktopNotificationCentreTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { bus_ = std::make_unique<testing::PrivateBus>(); }
  static void TearDownTestSuite() { bus_.reset(); }

  void SetUp() override {
    if (!bus_->problem().empty()) GTEST_SKIP() << bus_->problem();
    Runtime::current()->session.updateIdentity(
        [](auto& identity) { identity.listenerUri = "http://listener"; });
    options_.applicationName = "Shop";
    options_.busAddress = bus_->address();
    options_.pictureGrace = 3600.0;
    options_.dismissalGrace = 0.0;
    options_.retryInterval = 0.0;
    service_ = makeService();
  }

  std::unique_ptr<ScriptedNotificationService> makeService() {
    return std::make_unique<ScriptedNotificationService>(QString::fromStdString(bus_->address()));
  }

  void makeCentre() {
    centre_ = std::make_shared<DesktopNotificationCentre>(
        options_, [this](auto action, const std::string& token) {
          clicks_.emplace_back(action ? action->link.value_or("") : "none", token);
        });
    Platform platform = fake_.platform();
    platform.notifications = centre_;
    Platform::install(std::move(platform));
  }

  /// A centre whose service is there and has told what it can do.
  void start() {
    makeCentre();
    service_->appear();
    ASSERT_TRUE(waitForStatus(2));
  }

  int status() {
    int known = -1;
    centre_->getNotificationSettings([&](int status) { known = status; });
    return known;
  }
  bool waitForStatus(int expected) {
    return QTest::qWaitFor([&] { return status() == expected; }, 20000);
  }
  static bool waitFor(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, 20000);
  }
  /// Waits until everything that the service has sent so far has been received: the answer to a
  /// later call comes after it.
  void settle() {
    const std::string identifier = "settle" + std::to_string(++settled_);
    const std::size_t before = service_->shown().size();
    show(identifier);
    ASSERT_TRUE(waitFor([&] { return service_->shown().size() > before; }));
    centre_->close(identifier);
    const uint id = service_->shown().back().id;
    ASSERT_TRUE(waitFor([&] { return std::ranges::count(service_->closeCalls(), id) == 1; }));
  }

  void show(const std::string& identifier, NotificationContent content = {}) {
    if (content.title.empty()) content.title = identifier;
    centre_->show({identifier, std::make_shared<NotificationContent>(std::move(content))});
  }
  /// Shows the campaign's push and hands back the service's number.
  uint showCampaign(const std::string& identifier = "push") {
    const std::size_t before = service_->shown().size();
    centre_->deliver({{"data", CAMPAIGN}, {"title", "Sale"}, {"body", "All <b>half</b> & less"}},
                     identifier);
    EXPECT_TRUE(waitFor([&] { return service_->shown().size() > before; }));
    return service_->shown().empty() ? 0 : service_->shown().back().id;
  }
  std::vector<std::string> titles() const {
    std::vector<std::string> all;
    for (const auto& shown : service_->shown()) all.push_back(shown.summary.toStdString());
    return all;
  }

  std::vector<Value> events(const std::string& name) {
    fake_.runUntilIdle();
    return fake_.http->events(name);
  }

  void deliverWithPicture(const std::string& title, const std::string& identifier) {
    centre_->deliver(
        {{"data", CAMPAIGN}, {"title", title}, {"image", "http://pictures/" + title + ".png"}},
        identifier);
  }
  /// The places, in the transport's requests, of the pictures that are being loaded.
  std::vector<std::size_t> picturesUnderWay() const {
    const auto requests = fake_.http->requests();
    auto open = fake_.http->open();
    std::erase_if(
        open, [&](std::size_t at) { return !requests[at].url.starts_with("http://pictures/"); });
    return open;
  }
  void waitForPicturesUnderWay(std::size_t count) {
    ASSERT_TRUE(waitFor([&] { return picturesUnderWay().size() == count; }));
  }
  void answerPictures() {
    for (const std::size_t at : picturesUnderWay()) fake_.http->answer(at, 200, "GIF89a");
  }

  static std::unique_ptr<testing::PrivateBus> bus_;

  testing::InstalledFakePlatform fake_;
  DesktopNotificationCentre::Options options_;
  std::unique_ptr<ScriptedNotificationService> service_;
  std::vector<std::pair<std::string, std::string>> clicks_;
  std::shared_ptr<DesktopNotificationCentre> centre_;
  int settled_ = 0;
};

std::unique_ptr<testing::PrivateBus> DesktopNotificationCentreTest::bus_;

// ---- The permission

TEST_F(DesktopNotificationCentreTest,
       ThePermissionIsNotDeterminedUntilTheServiceAnswersAndThenAuthorized) {
  service_->silent = true;
  service_->appear();
  makeCentre();
  ASSERT_TRUE(waitFor([&] { return service_->unanswered("GetCapabilities") == 1; }));
  EXPECT_EQ(status(), 0);
  service_->speak();
  EXPECT_TRUE(waitForStatus(2));
}

TEST_F(DesktopNotificationCentreTest, WithoutAServiceThePermissionIsDeniedUntilOneStarts) {
  makeCentre();
  EXPECT_TRUE(waitForStatus(1));
  service_->appear();
  EXPECT_TRUE(waitForStatus(2));
}

TEST_F(DesktopNotificationCentreTest, WithoutABusThePermissionIsDenied) {
  options_.busAddress = "unix:path=/nonexistent/bus";
  makeCentre();
  EXPECT_TRUE(waitForStatus(1));
}

TEST_F(DesktopNotificationCentreTest,
       ADesktopThatInhibitsNotificationsDeniesThePermissionForThatTime) {
  service_->inhibited = true;
  makeCentre();
  service_->appear();
  ASSERT_TRUE(waitForStatus(1));
  service_->inhibited = false;
  EXPECT_TRUE(waitForStatus(2));
}

// ---- What is shown

TEST_F(DesktopNotificationCentreTest, APushIsShownWithItsTextsAndItsButtons) {
  service_->capabilities << QStringLiteral("body-markup");
  start();
  showCampaign();
  const auto& shown = service_->shown().at(0);
  EXPECT_EQ(shown.application, "Shop");
  EXPECT_EQ(shown.summary, "Sale");
  EXPECT_EQ(shown.body, "All &lt;b&gt;half&lt;/b&gt; &amp; less");
  EXPECT_EQ(shown.actions,
            QStringList({"default", "Open", "kifo-0", "Buy <now>", "kifo-1", "Later"}));
}

TEST_F(DesktopNotificationCentreTest, AServiceGetsOnlyWhatItsCapabilitiesAllow) {
  service_->capabilities = QStringList{QStringLiteral("body")};
  start();
  showCampaign();
  EXPECT_EQ(service_->shown().at(0).body, "All <b>half</b> & less");
  EXPECT_THAT(service_->shown().at(0).actions, IsEmpty());

  service_->vanish();
  service_ = makeService();
  service_->capabilities = QStringList();
  service_->appear();  // which is asked anew what it can do, and shows what the last one showed
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 1; }));
  EXPECT_EQ(service_->shown().at(0).summary, "Sale: All <b>half</b> & less");
  EXPECT_EQ(service_->shown().at(0).body, "");
}

TEST_F(DesktopNotificationCentreTest, AnImageGoesByItsPathThenAsPixelsThenNotAtAll) {
  QByteArray png;
  QBuffer buffer(&png);
  QImage image(700, 2, QImage::Format_RGB32);
  image.fill(Qt::red);
  image.save(&buffer, "PNG");
  NotificationContent content;
  const auto file = AttachmentFile::write(png.toStdString());
  content.attachments = {{"image.jpg", file->path(), file}};
  service_->refuse = [](const auto&) { return QStringLiteral("com.example.Error.Image"); };
  start();
  show("push", content);
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 3; }));
  EXPECT_EQ(service_->shown()[0].hints["image-path"].toString().toStdString(),
            "file://" + file->path());
  const auto pixels = qdbus_cast<NotificationImage>(service_->shown()[1].hints["image-data"]);
  EXPECT_EQ(pixels.width, 512);
  EXPECT_EQ(pixels.channels, 4);
  EXPECT_EQ(pixels.pixels.size(), pixels.height * pixels.bytesPerLine);
  EXPECT_EQ(pixels.pixels.left(4), QByteArray("\xff\0\0\xff", 4));
  EXPECT_THAT(service_->shown()[2].hints, IsEmpty());

  service_->refuse = nullptr;  // the push that nobody took is given up; the next one is shown
  show("next");
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 4; }));
  EXPECT_EQ(service_->shown()[3].summary, "next");
}

TEST_F(DesktopNotificationCentreTest, AnImagesFileLastsAsLongAsItsNotification) {
  NotificationContent content;
  auto file = AttachmentFile::write("pixels");
  const std::string path = file->path();
  content.attachments = {{"image.jpg", path, std::move(file)}};
  start();
  show("push", std::exchange(content, {}));
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 1; }));
  settle();
  EXPECT_TRUE(std::filesystem::exists(path));
  service_->close(1, expired);
  EXPECT_TRUE(waitFor([&] { return !std::filesystem::exists(path); }));
}

TEST_F(DesktopNotificationCentreTest, ALaterPushOfTheSameIdentifierReplacesTheEarlierOne) {
  start();
  const uint id = showCampaign("offer");
  showCampaign("offer");
  EXPECT_EQ(service_->shown().back().replaces, id);
  showCampaign("other");
  EXPECT_EQ(service_->shown().back().replaces, 0U);
}

TEST_F(DesktopNotificationCentreTest, APushThatTheHostClosesIsTakenOffOrNeverShown) {
  start();
  const uint id = showCampaign();
  centre_->close("push");
  ASSERT_TRUE(waitFor([&] { return service_->closeCalls() == std::vector<uint>{id}; }));

  service_->silent = true;
  show("under way");
  ASSERT_TRUE(waitFor([&] { return service_->unanswered() == 1; }));
  show("waiting");
  centre_->close("waiting");
  centre_->close("under way");
  // Behind the two closes: once it is reported, they have been handed over.
  centre_->deliver({{"data", CAMPAIGN}, {"title", "behind"}}, "behind");
  ASSERT_TRUE(waitFor([&] { return events("push_notification_received").size() == 2; }));
  service_->speak();
  ASSERT_TRUE(waitFor([&] { return service_->closeCalls().size() == 2; }));
  settle();
  EXPECT_THAT(titles(), ElementsAre("Sale", "under way", "behind", "settle1"));
}

// ---- Pictures that are slow

TEST_F(DesktopNotificationCentreTest, FourPicturesLoadAtATimeAndHoldNothingElseUp) {
  start();
  for (int index = 0; index < 81; ++index) deliverWithPicture(std::to_string(index), "");
  show("no picture");
  ASSERT_TRUE(waitFor([&] { return events("push_notification_received").size() == 81; }));
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 1; }));
  EXPECT_THAT(titles(), ElementsAre("no picture"));
  waitForPicturesUnderWay(4);
  ASSERT_TRUE(waitFor([&] {
    answerPictures();
    return service_->shown().size() == 82;
  }));
  for (const auto& shown : service_->shown()) {
    EXPECT_EQ(shown.hints.contains("image-path"), shown.summary != "no picture");
    EXPECT_EQ(shown.actions.size(), shown.summary == "no picture" ? 2 : 6) << "its own buttons";
  }
}

TEST_F(DesktopNotificationCentreTest, APushIsClosedOrReplacedWhileItsPictureLoads) {
  start();
  deliverWithPicture("closed", "a");
  deliverWithPicture("replaced", "b");
  waitForPicturesUnderWay(2);
  centre_->close("a");
  show("b");
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 1; }));
  answerPictures();
  deliverWithPicture("c", "c");  // whose picture comes after both
  waitForPicturesUnderWay(1);
  answerPictures();
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() > 1; }));
  settle();
  EXPECT_THAT(titles(), ElementsAre("b", "c", "settle1"));
}

TEST_F(DesktopNotificationCentreTest, APushWhosePictureIsLateIsShownFirstAndGetsItThen) {
  options_.pictureGrace = 0.0;
  start();
  deliverWithPicture("late", "a");
  deliverWithPicture("dismissed", "b");
  waitForPicturesUnderWay(2);
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 2; }));
  EXPECT_THAT(service_->shown()[0].hints, IsEmpty());
  service_->close(2, dismissed);
  settle();
  answerPictures();
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 4; }));
  EXPECT_EQ(service_->shown()[3].replaces, service_->shown()[0].id);
  EXPECT_TRUE(service_->shown()[3].hints.contains("image-path"));
  settle();
  EXPECT_THAT(titles(), ElementsAre("late", "dismissed", "settle1", "late", "settle2"));
}

// ---- Clicks and dismissals

TEST_F(DesktopNotificationCentreTest, AButtonIsAClickWithItsActionAndTheTokenOfItsWindow) {
  start();
  const uint id = showCampaign();
  service_->giveToken(id, "token");
  service_->invokeAction(id, "kifo-0");
  ASSERT_TRUE(waitFor([&] { return !clicks_.empty(); }));
  EXPECT_THAT(clicks_, ElementsAre(Pair("shop", "token")));
  const auto clicked = events("push_notification_clicked");
  ASSERT_THAT(clicked, SizeIs(1));
  EXPECT_EQ(clicked[0]["responseId"], "buy");
  EXPECT_EQ(clicked[0]["responseType"], "BUTTON");
  EXPECT_THAT(events("push_notification_received"), SizeIs(1));
}

TEST_F(DesktopNotificationCentreTest, ATapOnTheBodyIsNotTheButtonWithTheIdentifierDefault) {
  start();
  service_->invokeAction(showCampaign(), "default");
  ASSERT_TRUE(waitFor([&] { return !clicks_.empty(); }));
  EXPECT_THAT(clicks_, ElementsAre(Pair("body", "")));
  EXPECT_EQ(events("push_notification_clicked").at(0)["responseType"], "SELF");
}

/// The signals that a service sends about one notification, in order, and what is to be reported.
struct SignalSequence {
  const char* name;
  std::vector<std::variant<Reason, const char*>> signals;  ///< Closed for a reason, or an action.
  std::size_t clicked;
  std::size_t dismissed;
};

class SignalSequences : public DesktopNotificationCentreTest,
                        public ::testing::WithParamInterface<SignalSequence> {};

TEST_P(SignalSequences, AreReportedAsClickDismissalOrNothing) {
  // The grace must not end before the click arrives, however slow the machine is.
  if (GetParam().clicked > 0) options_.dismissalGrace = 3600.0;
  start();
  const uint id = showCampaign();
  for (const auto& signal : GetParam().signals) {
    if (const auto* reason = std::get_if<Reason>(&signal)) {
      service_->close(id, *reason);
    } else {
      service_->invokeAction(id, std::get<const char*>(signal));
    }
  }
  settle();
  const auto reported = [&] { return events("push_notification_dismissed").size(); };
  EXPECT_TRUE(waitFor([&] { return reported() >= GetParam().dismissed; }));
  QCoreApplication::processEvents();
  EXPECT_EQ(reported(), GetParam().dismissed);
  EXPECT_EQ(clicks_.size(), GetParam().clicked);
  EXPECT_EQ(events("push_notification_clicked").size(), GetParam().clicked);
}

INSTANTIATE_TEST_SUITE_P(
    DesktopNotifications, SignalSequences,
    ::testing::Values(SignalSequence{"expired", {expired}, 0, 0},
                      SignalSequence{"dismissed", {dismissed}, 0, 1},
                      SignalSequence{"closedByCall", {closedByCall}, 0, 0},
                      SignalSequence{"undefinedReason", {undefined}, 0, 0},
                      SignalSequence{"unknownReason", {Reason(77)}, 0, 0},
                      SignalSequence{"clickedAndClosed", {"kifo-0", dismissed}, 1, 0},
                      SignalSequence{"closedAndClicked", {dismissed, "kifo-0"}, 1, 0},
                      SignalSequence{"expiredAndClickedFromTheHistory", {expired, "default"}, 1, 0},
                      SignalSequence{"clickedTwice", {"kifo-0", "kifo-0", "default"}, 1, 0},
                      SignalSequence{"dismissedTwice", {dismissed, dismissed}, 0, 1},
                      SignalSequence{"unknownAction", {"inline-reply"}, 0, 0}),
    [](const auto& sequence) { return sequence.param.name; });

TEST_F(DesktopNotificationCentreTest, ACloseWithoutAReasonIsNoDismissal) {
  start();
  const uint id = showCampaign();
  service_->emitSignal("NotificationClosed", {id});
  service_->emitSignal("NotificationClosed", {});
  service_->emitSignal("ActionInvoked", {"text", id});
  settle();
  QCoreApplication::processEvents();
  EXPECT_THAT(events("push_notification_dismissed"), IsEmpty());
  EXPECT_THAT(clicks_, IsEmpty());
}

TEST_F(DesktopNotificationCentreTest, SignalsThatComeBeforeTheNumberIsKnownCount) {
  service_->beforeAnswer = [&](const auto& shown) { service_->invokeAction(shown.id, "kifo-0"); };
  start();
  showCampaign();
  EXPECT_TRUE(waitFor([&] { return clicks_.size() == 1; }));
}

TEST_F(DesktopNotificationCentreTest, SignalsOfOtherSendersAreIgnored) {
  start();
  const uint id = showCampaign();
  const auto other = makeService();  // on the bus, without the name
  other->invokeAction(id, "default");
  service_->invokeAction(id, "kifo-0");
  ASSERT_TRUE(waitFor([&] { return !clicks_.empty(); }));
  EXPECT_THAT(clicks_, ElementsAre(Pair("shop", "")));
}

// ---- Services and buses that start and end

TEST_F(DesktopNotificationCentreTest, WhatCameBeforeTheServiceIsShownInOrderOnceItStarts) {
  makeCentre();
  for (const char* title : {"one", "two", "three"}) show(title);
  show("two");  // again
  ASSERT_TRUE(waitForStatus(1));
  service_->appear();
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 3; }));
  EXPECT_THAT(titles(), ElementsAre("one", "three", "two"));
}

TEST_F(DesktopNotificationCentreTest, OnlySoManyWaitAndTheOldestGoFirst) {
  makeCentre();
  for (int index = 0; index < 40; ++index) show(std::to_string(index));
  ASSERT_TRUE(waitForStatus(1));
  service_->appear();
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 32; }));
  EXPECT_EQ(service_->shown().front().summary, "8");
  EXPECT_EQ(fake_.console->count("Kifo DesktopNotificationCentre: too many notifications wait for "
                                 "the desktop: the oldest was dropped"),
            8U);
  const auto dropped = fake_.inspector->ofKind("notification");
  ASSERT_THAT(dropped, SizeIs(8));
  EXPECT_THAT(dropped[0].particulars,
              ElementsAre(Pair("identifier", "0"), Pair("outcome", "not shown"),
                          Pair("reason", "too many wait for a notification service")));

  service_->silent = true;  // it is there, so nothing is dropped
  for (int index = 0; index < 40; ++index) show("more" + std::to_string(index));
  ASSERT_TRUE(waitFor([&] { return service_->unanswered() == 1; }));
  service_->speak();
  EXPECT_TRUE(waitFor([&] { return service_->shown().size() == 72; }));
}

TEST_F(DesktopNotificationCentreTest, ABusThatStartsLateIsFoundByThePushThatWaits) {
  const testing::TemporaryDirectory directory;
  options_.busAddress = "unix:path=" + directory.file("bus");
  makeCentre();
  show("early");
  ASSERT_TRUE(waitForStatus(1));
  const std::string address = bus_->address();
  const auto path = address.substr(0, address.find(',')).substr(std::string("unix:path=").size());
  std::filesystem::create_symlink(path, directory.file("bus"));
  service_->appear();
  EXPECT_TRUE(waitFor([&] { return service_->shown().size() == 1; }));
}

TEST_F(DesktopNotificationCentreTest, ABusThatIsMissingIsLookedForOnceInAnInterval) {
  const testing::TemporaryDirectory directory;
  HangingUp bus(directory.file("bus"));
  options_.busAddress = "unix:path=" + directory.file("bus");
  options_.retryInterval = 3600.0;
  makeCentre();
  ASSERT_TRUE(waitForStatus(1));
  for (int index = 0; index < 20; ++index) {
    show(std::to_string(index));
    EXPECT_EQ(status(), 1);
  }
  const auto other = std::make_shared<DesktopNotificationCentre>(options_, nullptr);
  EXPECT_TRUE(waitFor([&] { return bus.connections >= 2; })) << "the other centre's look";
  QCoreApplication::processEvents();
  EXPECT_EQ(bus.connections, 2);
}

TEST_F(DesktopNotificationCentreTest, ASilentServiceIsAskedOnceAndBlocksNothing) {
  start();
  service_->silent = true;
  show("one");
  ASSERT_TRUE(waitFor([&] { return service_->unanswered() == 1; }));
  show("two");
  EXPECT_EQ(status(), 2);
  service_->speak();
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 2; }));
  settle();
  EXPECT_THAT(titles(), ElementsAre("one", "two", "settle1"));
}

TEST_F(DesktopNotificationCentreTest, ARestartInTheMiddleLosesAndDoublesNothing) {
  start();
  showCampaign("shown");
  show("gone");
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 2; }));
  service_->close(2, expired);
  settle();
  service_->silent = true;
  show("under way");
  ASSERT_TRUE(waitFor([&] { return service_->unanswered() == 1; }));
  show("waiting");
  service_->vanish();

  service_ = makeService();
  service_->silent = true;
  service_->appear();
  ASSERT_TRUE(waitFor([&] { return service_->unanswered("GetCapabilities") >= 1; }));
  EXPECT_EQ(status(), 2) << "a question that failed leaves the permission as it was";
  service_->speak();
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 3; }));
  settle();
  EXPECT_THAT(titles(), ElementsAre("Sale", "under way", "waiting", "settle2"));
  service_->invokeAction(1, "kifo-0");  // the new service's number for the push that was shown
  EXPECT_TRUE(waitFor([&] { return clicks_.size() == 1; }));
}

TEST_F(DesktopNotificationCentreTest, APushThatEndsEveryServiceIsGivenUp) {
  start();
  show("poison");
  for (int restart = 0; restart < 5; ++restart) {
    ASSERT_TRUE(waitFor([&] { return !service_->shown().empty(); }));
    service_ = makeService();
    service_->appear();
  }
  settle();
  EXPECT_THAT(titles(), ElementsAre("settle1"));
}

// ---- The ledger

TEST(DesktopNotificationLedger, WhatWasClosedIsRememberedForAWhileAndItsNumberMayBeGivenAgain) {
  const auto content = std::make_shared<NotificationContent>();
  DesktopNotificationLedger ledger;
  for (std::uint32_t id = 1; id <= 65; ++id) {
    ledger.shown(id, {std::to_string(id), content, {}});
    ledger.closed(id, expired);
  }
  EXPECT_FALSE(ledger.actionInvoked(1, "default"));
  EXPECT_TRUE(ledger.actionInvoked(2, "default"));
  ledger.shown(2, {"new", content, {}});
  EXPECT_EQ(ledger.idOf("new"), 2U);
  EXPECT_TRUE(ledger.actionInvoked(2, "default"));
}

// ---- The end

TEST_F(DesktopNotificationCentreTest, ACentreMayBeDestroyedWithCallsAndPushesUnderWay) {
  start();
  service_->silent = true;
  show("under way");
  ASSERT_TRUE(waitFor([&] { return service_->unanswered() == 1; }));
  show("waiting");
  Platform::install(fake_.platform());
  centre_.reset();
  service_->speak();
  QTest::qWait(0);
  EXPECT_THAT(clicks_, IsEmpty());
}

TEST_F(DesktopNotificationCentreTest, ACentreMayBeDestroyedInItsOwnClick) {
  start();
  auto owner = std::make_shared<std::shared_ptr<DesktopNotificationCentre>>();
  bool clicked = false;
  *owner = std::make_shared<DesktopNotificationCentre>(options_, [&, owner](auto, const auto&) {
    owner->reset();
    clicked = true;
  });
  const std::size_t before = service_->shown().size();
  (*owner)->show({"push", std::make_shared<NotificationContent>(
                              contentOfPush({{"data", "{}"}, {"title", "T"}}))});
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() > before; }));
  service_->invokeAction(service_->shown().back().id, "default");
  EXPECT_TRUE(waitFor([&] { return clicked; }));
}

}  // namespace
}  // namespace kifo
