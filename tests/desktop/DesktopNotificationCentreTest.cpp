#include "platform/qt/DesktopNotificationCentre.h"

#include <QBuffer>
#include <QImage>
#include <filesystem>
#include <variant>

#include "Kifo_iOS_Common_Kit/notifications/AttachmentFile.h"
#include "platform/qt/desktop/DesktopNotificationMessage.h"
#include "tests/desktop/DesktopNotificationFixture.h"

namespace kifo {
namespace {

// ---- The permission

TEST_F(DesktopNotificationCentreTest,
       ThePermissionIsDeniedWithoutABusOrAServiceAndNotDeterminedUntilOneAnswers) {
  options_.busAddress = "unix:path=/nonexistent/bus";
  makeCentre();
  EXPECT_TRUE(waitForStatus(1));
  options_.busAddress = bus_->address();
  makeCentre();
  EXPECT_TRUE(waitForStatus(1));
  service_->appear();
  EXPECT_TRUE(waitForStatus(2));
  service_->silent = true;
  makeCentre();
  ASSERT_TRUE(waitFor([&] { return service_->unanswered("GetCapabilities") == 1; }));
  EXPECT_EQ(status(), 0);
  service_->speak();
  EXPECT_TRUE(waitForStatus(2));
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
  show(std::string(300, 'x'));
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 2; }));
  EXPECT_EQ(service_->shown().at(1).summary, QString(256, 'x') + QChar(0x2026));
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

  showUnderWayAndWaiting();
  EXPECT_EQ(status(), 2) << "a silent service holds nothing up";
  centre_->close("waiting");
  centre_->close("under way");
  // Behind the two closes: once it is reported, they have been handed over.
  centre_->deliver({{"data", kCampaign}, {"title", "behind"}}, "behind");
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
  ASSERT_TRUE(waitFor([&] { return events("push_notification_received").size() == 81; }));
  show("no picture");
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
  deliverWithPicture("earlier", "d");
  waitForPicturesUnderWay(3);
  deliverWithPicture("later", "d");
  waitForPicturesUnderWay(4);
  centre_->close("a");
  show("b");
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 1; }));
  answerPictures();
  deliverWithPicture("c", "c");  // whose picture comes after all of them
  waitForPicturesUnderWay(1);
  answerPictures();
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() > 2; }));
  settle();
  EXPECT_THAT(titles(), ElementsAre("b", "later", "c", "settle1"));
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

  deliverWithPicture("gone", "c");
  waitForPicturesUnderWay(1);
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 6; }));
  service_->beforeAnswer = [&](const auto& shown) { service_->close(shown.replaces, dismissed); };
  answerPictures();
  const uint id = service_->shown().at(5).id;
  EXPECT_TRUE(waitFor([&] { return service_->closeCalls().back() == id; }));
}

// ---- Clicks and dismissals

TEST_F(DesktopNotificationCentreTest, AButtonIsAClickWithItsActionAndTheTokenOfItsWindow) {
  start();
  const uint id = showCampaign();
  service_->giveToken(id, "token");
  service_->invokeAction(id, "kifo-0");
  ASSERT_TRUE(waitFor([&] { return !clicks_.empty(); }));
  EXPECT_THAT(clicks_, ElementsAre(Pair("shop", "token")));
  EXPECT_TRUE(waitFor([&] { return service_->closeCalls() == std::vector<uint>{id}; }));
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

TEST_F(DesktopNotificationCentreTest, SignalsThatComeBeforeTheNumberIsKnownCount) {
  service_->beforeAnswer = [&](const auto& shown) { service_->invokeAction(shown.id, "kifo-0"); };
  start();
  showCampaign();
  EXPECT_TRUE(waitFor([&] { return clicks_.size() == 1; }));
}

TEST_F(DesktopNotificationCentreTest, SignalsOfOtherSendersOrWithoutTheirArgumentsAreIgnored) {
  start();
  const uint id = showCampaign();
  const auto other = makeService();  // on the bus, without the name
  other->invokeAction(id, "default");
  service_->emitSignal("NotificationClosed", {id});
  service_->emitSignal("NotificationClosed", {});
  service_->emitSignal("ActionInvoked", {"text", id});
  settle();
  service_->invokeAction(id, "kifo-0");
  ASSERT_TRUE(waitFor([&] { return !clicks_.empty(); }));
  EXPECT_THAT(clicks_, ElementsAre(Pair("shop", "")));
  EXPECT_THAT(events("push_notification_dismissed"), IsEmpty());
}

// ---- The ledger

TEST(DesktopNotificationLedger, AClickWithinTheGraceTakesADismissalBack) {
  DesktopNotificationLedger ledger;
  ledger.shown(1, {"push", std::make_shared<NotificationContent>(), {}});
  const auto entry = ledger.closed(1, dismissed);
  ASSERT_TRUE(entry);
  EXPECT_TRUE(DesktopNotificationLedger::settle(*entry));
  EXPECT_TRUE(ledger.actionInvoked(1, "default"));
  EXPECT_FALSE(DesktopNotificationLedger::settle(*entry));
}

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
  for (std::uint32_t id = 100; id <= 164; ++id) {
    ledger.shown(id, {std::to_string(id), content, {}});
    ledger.closed(id, expired);
  }
  EXPECT_EQ(ledger.idOf("new"), 2U);
  EXPECT_TRUE(ledger.actionInvoked(2, "default"));
}

}  // namespace
}  // namespace kifo
