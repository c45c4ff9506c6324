// Services and buses that start and end, and a centre that ends before them.
#include <filesystem>

#include "tests/desktop/DesktopNotificationFixture.h"

namespace kifo {
namespace {

using DesktopNotificationRestartTest = DesktopNotificationCentreTest;

TEST_F(DesktopNotificationRestartTest, WhatCameBeforeTheServiceIsShownInOrderOnceItStarts) {
  makeCentre();
  for (const char* title : {"one", "two", "three"}) show(title);
  show("two");  // again
  ASSERT_TRUE(waitForStatus(1));
  service_->appear();
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 3; }));
  EXPECT_THAT(titles(), ElementsAre("one", "three", "two"));
}

TEST_F(DesktopNotificationRestartTest, OnlySoManyWaitAndTheOldestGoFirst) {
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

TEST_F(DesktopNotificationRestartTest, ABusThatStartsLateIsLookedForOnceInAnInterval) {
  const std::string address = bus_->address();
  const testing::TemporaryDirectory directory;
  options_.busAddress = "unix:path=" + directory.file("bus");
  DesktopNotificationCentre eager(options_, nullptr);
  eager.show({"early", std::make_shared<NotificationContent>()});
  options_.retryInterval = 3600.0;
  makeCentre();
  ASSERT_TRUE(waitForStatus(1));
  const auto path = address.substr(0, address.find(',')).substr(std::string("unix:path=").size());
  std::filesystem::create_symlink(path, directory.file("bus"));
  service_->appear();
  for (int index = 0; index < 33; ++index) show(std::to_string(index));
  ASSERT_TRUE(waitFor([&] { return !fake_.inspector->ofKind("notification").empty(); }))
      << "all of them were looked at, and one is too many";
  ASSERT_TRUE(waitFor([&] { return !service_->shown().empty(); })) << "the push that waited";
  EXPECT_THAT(titles(), ElementsAre("Shop")) << "of the other centre";
  EXPECT_EQ(status(), 1);
}

TEST_F(DesktopNotificationRestartTest, ARestartInTheMiddleLosesAndDoublesNothing) {
  start();
  showCampaign("shown");
  show("gone");
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 2; }));
  service_->close(2, expired);
  settle();
  showUnderWayAndWaiting();
  const auto earlier = std::exchange(service_, makeService());
  earlier->releaseName();

  service_->silent = true;
  service_->appear();
  ASSERT_TRUE(waitFor([&] { return service_->unanswered("GetCapabilities") >= 1; }));
  EXPECT_EQ(status(), 2) << "a question that failed leaves the permission as it was";
  service_->speak();
  ASSERT_TRUE(waitFor([&] { return service_->shown().size() == 3; }));
  earlier->vanish();  // The call that it never answered fails only now.
  settle();
  settle();
  EXPECT_THAT(titles(), ElementsAre("Sale", "under way", "waiting", "settle2", "settle3"));
  service_->invokeAction(1, "kifo-0");  // the new service's number for the push that was shown
  EXPECT_TRUE(waitFor([&] { return clicks_.size() == 1; }));
}

TEST_F(DesktopNotificationRestartTest, APushThatEndsEveryServiceIsGivenUp) {
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

// ---- The end

TEST_F(DesktopNotificationRestartTest, ACentreMayBeDestroyedWithCallsAndPushesUnderWay) {
  start();
  showUnderWayAndWaiting();
  Platform::install(fake_.platform());
  centre_.reset();
  service_->speak();
  QTest::qWait(0);
  EXPECT_THAT(clicks_, IsEmpty());
}

TEST_F(DesktopNotificationRestartTest, ACentreMayBeDestroyedInItsOwnClick) {
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
