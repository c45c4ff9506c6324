#include "Kifo_iOS_Common_Kit/inapp/PopupGate.h"

#include <map>
#include <stdexcept>
#include <thread>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupManager.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupQueue.h"
#include "tests/support/HostDoubles.h"

namespace kifo {
namespace {

class PopupGateTest : public testing::FakesTest {
 protected:
  /// A campaign that may be shown twice becomes due over `screen`.
  void due(const std::string& uuid, const std::shared_ptr<ViewController>& screen,
           const nlohmann::json& more = nlohmann::json::object()) {
    nlohmann::json json{{"type", "OPEN_ENDED"}, {"uuid", uuid}, {"maxShowCount", 2}};
    json.merge_patch(more);
    manager_.showNotificationOpenEndedPopUpWindow(screen, "Home",
                                                  decode<AppCommunicationItem>(json.dump()), {});
  }
  void due(const std::string& uuid) { due(uuid, screen_); }

  /// What was shown since the last call.
  std::vector<std::string> shown() {
    fake_.runUntilIdle();
    std::vector<std::string> uuids;
    for (const auto& request : fake_.popups->take()) {
      uuids.push_back(*request->preferences.appCommunicationItem->uuid);
    }
    return uuids;
  }

  [[nodiscard]] std::vector<std::string> opened() const {
    std::vector<std::string> uuids;
    for (const Report& opening : reporter_->openings) uuids.push_back(*opening.item->uuid);
    return uuids;
  }

  /// What became of the campaigns, as "uuid: outcome: reason".
  std::vector<std::string> decisions() {
    std::vector<std::string> lines;
    for (const auto& decision : fake_.inspector->ofKind("campaign")) {
      std::map<std::string, std::string> parts(decision.particulars.begin(),
                                               decision.particulars.end());
      lines.push_back(parts["uuid"] + ": " + parts["outcome"] + ": " + parts["reason"]);
    }
    return lines;
  }

  void expectNothingSpent() {
    EXPECT_THAT(fake_.userDefaults->values(), IsEmpty());
    EXPECT_THAT(reporter_->openings, IsEmpty());
  }

  std::shared_ptr<RecordingReporter> reporter_ = std::make_shared<RecordingReporter>();
  std::shared_ptr<HomeScreen> screen_ = std::make_shared<HomeScreen>();
  PopupManager manager_{reporter_};
};

TEST_F(PopupGateTest, WhilePopupsArePausedNoneShowsAndThenEachValidCampaignShowsOnceInItsOrder) {
  fake_.clock->setMillisecondsSince1970(1'000'000'000'000);
  fake_.popups->hold();
  due("before");
  Kifo::setPopupsPaused(true);
  int asked = 0;
  Kifo::setPopupGate([&](const PopupInfo&) { return ++asked, PopupDecision::show; });
  fake_.popups->release();
  auto closing = std::make_shared<HomeScreen>();
  const auto other = std::make_shared<HomeScreen>();
  due("a", closing);
  due("b");
  due("a", other);
  due("b");
  due("expires", screen_, {{"expireDate", 1'000'000'001'000}});
  due("spent", screen_, {{"maxShowCount", 1}});
  EXPECT_THAT(shown(), IsEmpty());
  EXPECT_EQ(asked, 0) << "there is nothing to ask the host";
  expectNothingSpent();
  fake_.clock->setMillisecondsSince1970(1'000'000'002'000);
  fake_.userDefaults->setValue("spent", std::int64_t{0});
  closing.reset();
  Kifo::setPopupsPaused(false);
  EXPECT_THAT(shown(), ElementsAre("before", "b", "a")) << "the first screen of \"a\" is gone";
  Kifo::setPopupsPaused(true);
  Kifo::setPopupsPaused(false);
  EXPECT_THAT(shown(), IsEmpty());
}

TEST_F(PopupGateTest, TheGateIsToldOfThePopupAndItsAnswerHolds) {
  std::vector<PopupInfo> asked;
  std::map<std::string, PopupDecision> answers{
      {"a", PopupDecision::later}, {"b", PopupDecision::never}, {"c", PopupDecision::show}};
  Kifo::setPopupGate([&](const PopupInfo& popup) {
    asked.push_back(popup);
    return answers.at(popup.campaign);
  });
  due("a", screen_,
      {{"name", "Spring"},
       {"header", {{"text", "title"}}},
       {"text", {{"text", "text"}}},
       {"question", {{"text", "question"}}}});
  due("b");
  EXPECT_THAT(shown(), IsEmpty());
  expectNothingSpent();
  due("c");
  EXPECT_THAT(shown(), ElementsAre("c"));
  ASSERT_EQ(asked.size(), 3u);
  const PopupInfo& told = asked.front();
  EXPECT_THAT((std::vector{told.campaign, told.name, told.type, told.screen, told.title, told.text,
                           told.question}),
              ElementsAre("a", "Spring", "OPEN_ENDED", "HomeScreen", "title", "text", "question"));
  EXPECT_THAT(decisions(),
              ElementsAre("a: later: the host's gate", "b: never: the host's gate", "c: shown: "));
  answers["a"] = PopupDecision::show;
  Kifo::popupsMayShow();
  EXPECT_THAT(shown(), ElementsAre("a"));
}

TEST_F(PopupGateTest, LaterIsAskedAgainWhenAScreenAppearsOrTheGateOrTheSwitchChanges) {
  const auto later = [](const PopupInfo&) { return PopupDecision::later; };
  const auto asksAgain = [&](const char* uuid, const std::function<void()>& occasion) {
    int asked = 0;
    Kifo::setPopupGate(later);
    due(uuid);
    fake_.runUntilIdle();
    Kifo::setPopupGate([&](const PopupInfo&) { return ++asked, PopupDecision::later; });
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_EQ(std::exchange(asked, 0), 1) << "another gate";
    occasion();
    EXPECT_THAT(shown(), IsEmpty());
    EXPECT_EQ(asked, 1);
    Kifo::setPopupGate({});
    EXPECT_THAT(shown(), ElementsAre(uuid));
  };
  asksAgain("screen", [&] { screen_->viewDidAppear(false); });
  asksAgain("page", [&] { KifoEventManager::sendPageInEvent(nullptr, "Page"); });
  asksAgain("switch", [&] {
    Kifo::setPopupsPaused(true);
    Kifo::setPopupsPaused(false);
  });
}

TEST_F(PopupGateTest, AGateMayThrowPauseReplaceItselfOrEndTheSdk) {
  Kifo::setPopupGate([](const PopupInfo&) -> PopupDecision { throw std::runtime_error("oops"); });
  due("a");
  EXPECT_THAT(shown(), IsEmpty());
  EXPECT_EQ(fake_.console->count("Kifo PopupGate: a host callback threw: oops"), 1u);
  Kifo::setPopupGate([](const PopupInfo&) {
    Kifo::setPopupsPaused(true);
    return PopupDecision::show;
  });
  EXPECT_THAT(shown(), IsEmpty());
  expectNothingSpent();
  int asked = 0;
  Kifo::setPopupGate([&](const PopupInfo&) {
    ++asked;
    Kifo::popupsMayShow();
    return PopupDecision::later;
  });
  Kifo::setPopupsPaused(false);
  EXPECT_THAT(shown(), IsEmpty());
  EXPECT_EQ(asked, 1) << "a gate that asks for itself is not asked without end";
  // Another thread lets popups show while the gate still says later.
  Kifo::setPopupGate([&](const PopupInfo&) {
    std::thread([] { Kifo::popupsMayShow(); }).join();
    return ++asked == 2 ? PopupDecision::later : PopupDecision::never;
  });
  EXPECT_THAT(shown(), IsEmpty());
  EXPECT_EQ(asked, 3);
  Kifo::setPopupGate([&, held = std::make_shared<int>(1)](const PopupInfo&) {
    Kifo::setPopupGate({});
    return *held == 1 ? PopupDecision::show : PopupDecision::never;
  });
  due("a");
  EXPECT_THAT(shown(), ElementsAre("a"));
  Kifo::setPopupGate([](const PopupInfo&) {
    Kifo::shutdown(0.0);
    return PopupDecision::show;
  });
  due("b");
  EXPECT_THAT(fake_.popups->take(), IsEmpty());
  EXPECT_THAT(opened(), ElementsAre("a"));
}

// The queue that presenters keep for each window
// ---------------------------------------------------

TEST_F(PopupGateTest, APopupThatTheGateHeldBackKeepsItsPlaceInThePresentersQueue) {
  PopupQueue queue("Kifo TestPresenter:");
  fake_.popups->hold();
  Kifo::setPopupsPaused(true);
  due("first");
  Kifo::setPopupGate([](const PopupInfo&) { return PopupDecision::show; });
  // A second popup is due, and waits behind one that is shown, when the first is let go.
  Kifo::setPopupsPaused(false);
  due("second");
  fake_.runUntilIdle();
  due("third");
  const auto requests = fake_.popups->takeHeld();
  ASSERT_EQ(requests.size(), 3u);
  for (const auto& request : requests) queue.enqueue(request);
  for (const char* uuid : {"first", "second", "third"}) {
    const auto next = queue.takeNext([] { return true; });
    ASSERT_TRUE(next);
    EXPECT_EQ(next->preferences.appCommunicationItem->uuid, uuid);
  }
  EXPECT_THAT(opened(), ElementsAre("first", "second", "third"));
}

TEST_F(PopupGateTest, AGateThatClosesTheWindowOrTheScreenLeavesTheCampaignUnspent) {
  PopupQueue queue("Kifo TestPresenter:");
  bool canShow = true;
  const auto asks = [&] { return canShow; };
  fake_.popups->hold();
  due("a");
  for (const auto& request : fake_.popups->takeHeld()) queue.enqueue(request);
  Kifo::setPopupGate([&](const PopupInfo&) {
    canShow = false;
    EXPECT_EQ(queue.takeNext([] { return true; }), nullptr) << "asked inside the gate";
    return PopupDecision::show;
  });
  EXPECT_EQ(queue.takeNext(asks), nullptr);
  expectNothingSpent();
  canShow = true;
  Kifo::setPopupGate([&](const PopupInfo&) {
    screen_.reset();
    return PopupDecision::show;
  });
  EXPECT_EQ(queue.takeNext(asks), nullptr);
  expectNothingSpent();
  EXPECT_EQ(fake_.console->count("Kifo TestPresenter: the popup is not shown: its screen is gone"),
            1u);
  EXPECT_THAT(queue.takeWaiting(), IsEmpty());
}

}  // namespace
}  // namespace kifo
