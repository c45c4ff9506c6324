#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"

#include "Kifo_iOS_Common_Kit/core/runtime/Session.h"
#include "tests/support/SdkTest.h"

namespace kifo {
namespace {

constexpr auto kCampaigns = R"({
  "configuration": {"stopAllEvents": false, "offlineQueueSize": 10},
  "blockedEvents": [{"name": "login"}, {}, {"name": "blocked"}],
  "model": [
    {"type": "POPUP", "uuid": "first", "maxShowCount": 5, "triggeringEventName": "tap", "buttons": []},
    {"type": "POPUP", "uuid": "other", "maxShowCount": 5, "triggeringEventName": "Tap", "buttons": []},
    {"type": "POPUP", "uuid": "expired", "maxShowCount": 5, "triggeringEventName": "tap", "buttons": [], "expireDate": 1000},
    {"type": "popup", "uuid": "unknown", "maxShowCount": 5, "triggeringEventName": "tap", "buttons": []},
    {"type": "POPUP", "uuid": "second", "maxShowCount": 5, "triggeringEventName": "tap", "buttons": [], "expireDate": 4102444800},
    {"type": "POPUP", "uuid": "of a blocked one", "maxShowCount": 5, "triggeringEventName": "blocked", "buttons": [], "expireDate": 4102444800000}]})";

class EventManagerTest : public SdkTest {
 protected:
  std::size_t lines(const std::string& message) const {
    return fake.console->count("Kifo KifoEventManager: " + message);
  }
  Lines shown() const {
    Lines uuids;
    for (const auto& request : fake.popups->requests()) {
      uuids.push_back(request->preferences.appCommunicationItem->uuid.value());
    }
    return uuids;
  }
  void tap(std::shared_ptr<ViewController> controller, const std::string& name = "tap") {
    KifoEventManager::sendEvent(std::move(controller), name, std::nullopt);
  }

  std::shared_ptr<HomeScreen> screen = std::make_shared<HomeScreen>();
};

TEST_F(EventManagerTest, TheGateAdvisesAndHoldsNothingBack) {
  start(R"({"configuration":{"stopAllEvents":true}})");
  Kifo::setSendEventStatus(SendEventStatus::DISABLED);
  fake.console->clear();
  KifoEventManager::sendAppForegroundEvent();
  fake.runUntilIdle();
  EXPECT_EQ(lines("all events stopped"), 1U);
  EXPECT_EQ(lines("send events stopped"), 1U);
  EXPECT_FALSE(lastEvent("app_foreground").is_null());
}

TEST_F(EventManagerTest, ABlockedEventIsDroppedWithoutATrace) {
  start(kCampaigns);
  setOnline(false);
  fake.console->clear();
  KifoEventManager::sendLoginEvent(screen, std::nullopt);
  fake.runUntilIdle();
  EXPECT_TRUE(fake.console->lines().empty());
  tap(screen, "blocked");
  fake.advance(1.0);
  EXPECT_EQ(shown(), Lines{"of a blocked one"}) << "it chooses its campaigns all the same";
  EXPECT_EQ(rows("select count(*) from KifoLog where PARAMETERS like '%\"blocked\"%'"), Lines{"0"});
}

TEST_F(EventManagerTest, CampaignsOfTheEventShowHalfASecondLaterInTheServersOrder) {
  start(kCampaigns);
  tap(screen);
  fake.runUntilIdle();
  fake.advance(0.49);
  EXPECT_TRUE(shown().empty());
  fake.advance(0.02);
  EXPECT_EQ(shown(), (Lines{"first", "second"}));
  EXPECT_EQ(lines("handlePopupAction: popup"), 1U);
  EXPECT_EQ(lines("couldn't get a actionType for popup"), 1U);
}

TEST_F(EventManagerTest, WithoutAScreenOrOverOneThatIsGoneAPopupIsNotShown) {
  start(kCampaigns);
  tap(nullptr);
  fake.advance(1.0);
  EXPECT_EQ(lines("controller is nil, couldn't call handlePopupAction"), 3U);
  tap(screen);
  fake.runUntilIdle();
  screen.reset();
  fake.advance(1.0);
  EXPECT_TRUE(shown().empty());
}

TEST_F(EventManagerTest, TheFormWithoutAScreenHandsTheCampaignToTheHost) {
  start(kCampaigns);
  Lines uuids;
  KifoEventManager::sendEvent("Tap", std::nullopt, {}, [&](const auto& item) {
    uuids.push_back(item->uuid.value());
    throw std::runtime_error("host");
  });
  fake.runUntilIdle();
  EXPECT_EQ(uuids, Lines{"other"});
}

TEST_F(EventManagerTest, WhileAPageQueriesOnlyTheLastEventsPopupWaitsForTheAnswer) {
  start(kCampaigns);
  answerNothing();
  screen->viewDidAppear(false);
  fake.runUntilIdle();
  tap(screen, "tap");
  tap(screen, "Tap");
  fake.advance(1.0);
  EXPECT_TRUE(shown().empty());
  EXPECT_EQ(std::ranges::count(eventNames(), "tap"), 1) << "the event itself went out at once";
  for (const auto index : fake.http->open()) fake.http->answer(index, 200, kCampaigns);
  fake.advance(1.0);
  EXPECT_EQ(shown(), Lines{"other"});
  tap(screen, "Tap");
  fake.advance(1.0);
  EXPECT_EQ(shown().size(), 2U) << "nothing waits any more";
  screen->viewDidAppear(false);
  fake.runUntilIdle();
  for (const auto index : fake.http->open()) fake.http->answer(index, 200, kCampaigns);
  fake.advance(1.0);
  EXPECT_EQ(shown().size(), 2U) << "what was deferred comes once";
}

TEST_F(EventManagerTest, ACampaignThatIsNotShownIsSaidToTheInspector) {
  start(kCampaigns);
  answerNothing();
  screen->viewDidAppear(false);
  fake.runUntilIdle();
  tap(screen, "Tap");
  screen.reset();
  for (const auto index : fake.http->open()) fake.http->answer(index, 200, kCampaigns);
  fake.advance(1.0);
  EXPECT_TRUE(std::ranges::any_of(fake.inspector->ofKind("campaign"), [](const auto& decision) {
    return std::ranges::count(decision.particulars,
                              std::pair<std::string, std::string>("outcome", "screen gone")) > 0;
  }));
  KifoEventManager::handlePopupAction(screen, std::nullopt, nullptr, false, {});
  EXPECT_EQ(lines("couldn't get a actionType for popup"), 1U) << "no item is no crash";
}

TEST_F(EventManagerTest, AnAnswerNamesItsPageAlsoWhenTheScreenIsGone) {
  start(kCampaigns);
  tap(screen, "Tap");
  fake.advance(1.0);
  ASSERT_EQ(fake.popups->requests().size(), 1U);
  screen.reset();
  const auto request = fake.popups->requests().at(0);
  const auto& preferences = request->preferences;
  EXPECT_TRUE(preferences.controller.expired()) << "a popup keeps no screen alive";
  request->reporter->answered(preferences.appCommunicationItem, {}, preferences.controller.lock(),
                              preferences.pageName);
  EXPECT_EQ(lastEvent("InAppMessageResponse")["page_name"], "HomeScreen");
}

TEST_F(EventManagerTest, AFailedQueryDoesNotHoldPopupsBackForGood) {
  start(kCampaigns);
  setOnline(false);
  screen->viewDidAppear(false);
  fake.runUntilIdle();
  EXPECT_TRUE(Kifo::isInitialized()) << "a query that cannot go out is no failure";
  answerNothing();
  setOnline(true);
  screen->viewDidAppear(false);
  tap(screen, "Tap");
  fake.runUntilIdle();
  for (const auto index : fake.http->open()) fake.http->fail(index);
  fake.advance(1.0);
  EXPECT_EQ(shown(), Lines{"other"});
}

TEST_F(EventManagerTest, ScreensReportThemselvesUnlessTheSwitchIsOff) {
  start(kCampaigns);
  screen->viewDidAppear(false);
  screen->viewWillDisappear(false);
  fake.runUntilIdle();
  EXPECT_EQ(lastEvent("page_in")["page_name"], "HomeScreen");
  EXPECT_EQ(lastEvent("page_out")["page_name"], "HomeScreen");
  Kifo::setSendActivityLifeCycleEventStatus(SendLifeCycleEventStatus::DISABLED);
  const auto before = fake.http->count();
  screen->viewDidAppear(false);
  screen->viewWillDisappear(false);
  fake.runUntilIdle();
  EXPECT_EQ(fake.http->count(), before);
  EXPECT_EQ(
      fake.console->count("Kifo KifoViewController: send activity lifecycle events disabled!"), 2U);
  Kifo::applicationDidBecomeActive();
  fake.runUntilIdle();
  EXPECT_FALSE(lastEvent("app_foreground").is_null()) << "the other family has a switch of its own";
}

}  // namespace
}  // namespace kifo
