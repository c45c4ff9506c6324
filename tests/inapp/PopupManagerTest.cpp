#include "Kifo_iOS_Common_Kit/inapp/PopupManager.h"

#include <stdexcept>

#include "Kifo_iOS_Common_Kit/inapp/PopupType.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"
#include "tests/support/HostDoubles.h"

namespace kifo {
namespace {

std::shared_ptr<AppCommunicationItem> itemFrom(const nlohmann::json& json) {
  const auto item = decode<AppCommunicationItem>(json.dump());
  if (!item) throw std::invalid_argument("no campaign: " + json.dump());
  return item;
}

/// A campaign of a kind, which may be shown twice, with `more` over it.
nlohmann::json campaign(std::string_view type, const nlohmann::json& more = {}) {
  nlohmann::json json{{"type", type}, {"uuid", "u"}, {"maxShowCount", 2}};
  if (!more.is_null()) json.merge_patch(more);
  return json;
}

nlohmann::json options(int count) {
  auto list = nlohmann::json::array();
  for (int index = 0; index < count; ++index) {
    list.push_back({{"id", std::to_string(index)}, {"show", true}});
  }
  return list;
}

std::vector<std::string> ids(const std::vector<std::shared_ptr<AppCommunicationItemButton>>& list) {
  std::vector<std::string> all;
  for (const auto& button : list) all.push_back(button->id.value_or("none"));
  return all;
}

class PopupManagerTest : public testing::FakesTest {
 protected:
  using Show = void (PopupManager::*)(std::shared_ptr<ViewController>, std::optional<std::string>,
                                      std::shared_ptr<AppCommunicationItem>, PopupManager::Handler);

  /// Shows `item` as what its type says, and returns the lines but for the operation's name.
  Lines show(const std::shared_ptr<AppCommunicationItem>& item,
             PopupManager::Handler handler = {}) {
    static constexpr std::array<Show, 5> operations{
        &PopupManager::showNotificationPopUpWindow,
        &PopupManager::showNotificationSurveyPopUpRadioGroupWindow,
        &PopupManager::showNotificationEmojiPopUpWindow,
        &PopupManager::showNotificationScorePopUpWindow,
        &PopupManager::showNotificationOpenEndedPopUpWindow};
    const auto kind = static_cast<std::size_t>(*popupType(*item->type));
    fake_.console->clear();
    (manager_.*operations[kind])(screen_, "Home", item, std::move(handler));
    Lines lines = fake_.console->take();
    EXPECT_EQ(lines.at(0), "Kifo PopupManager: " + std::string(kNames[kind]));
    lines.erase(lines.begin());
    return lines;
  }
  Lines show(const nlohmann::json& json, PopupManager::Handler handler = {}) {
    return show(itemFrom(json), std::move(handler));
  }

  /// Shows `json`, which must pass, and returns what was presented.
  std::shared_ptr<const PopupRequest> presented(const nlohmann::json& json,
                                                PopupManager::Handler handler = {}) {
    show(json, std::move(handler));
    const auto requests = fake_.popups->take();
    if (requests.size() != 1) throw std::logic_error("not presented: " + json.dump());
    fake_.console->clear();
    return requests.at(0);
  }

  static constexpr std::array kNames{
      "showNotificationPopUpWindow", "showNotificationSurveyPopUpRadioGroupWindow",
      "showNotificationEmojiPopUpWindow", "showNotificationScorePopUpWindow",
      "showNotificationOpenEndedPopUpWindow"};

  std::shared_ptr<RecordingReporter> reporter_ = std::make_shared<RecordingReporter>();
  std::shared_ptr<ViewController> screen_ = std::make_shared<HomeScreen>();
  PopupManager manager_{reporter_};
};

TEST_F(PopupManagerTest, WhatThisDeviceHasStoredBeatsTheServersCount) {
  fake_.userDefaults->setValue("u", std::int64_t{0});
  show(campaign("OPEN_ENDED", {{"maxShowCount", 50}}));
  EXPECT_THAT(fake_.popups->take(), IsEmpty());
  fake_.userDefaults->setValue("u", std::int64_t{4});
  show(campaign("OPEN_ENDED", {{"maxShowCount", 0}}));
  EXPECT_EQ(fake_.popups->take().size(), 1u);
  EXPECT_EQ(fake_.userDefaults->integer("u"), 3);
}

TEST_F(PopupManagerTest, APopupThatWaitsHasNotBeenShown) {
  const auto item = itemFrom(campaign("SURVEY", {{"choices", options(21)}, {"maxShowCount", 1}}));
  fake_.popups->hold();
  EXPECT_THAT(show(item), IsEmpty());
  EXPECT_THAT(show(item), IsEmpty()) << "whether it may be shown is asked when its turn comes";
  EXPECT_THAT(fake_.userDefaults->values(), IsEmpty());
  EXPECT_THAT(reporter_->openings, IsEmpty());
  fake_.popups->release();
  EXPECT_EQ(fake_.popups->requests().size(), 1u);
  EXPECT_EQ(fake_.userDefaults->integer("u"), 0);
  EXPECT_THAT(fake_.console->take(),
              ElementsAre("Kifo PopupManager: choices.count > 20 -> choices count = 21",
                          "Kifo PopupManager: maxShowCount <= 0 -> maxShowCount = 0"));
  ASSERT_EQ(reporter_->openings.size(), 1u);
  const Report& opening = reporter_->openings.at(0);
  EXPECT_EQ(opening.item, item);
  EXPECT_EQ(opening.controller, screen_);
  EXPECT_EQ(opening.pageName, "Home");
}

struct Refusal {
  const char* why;
  nlohmann::json json;
  Lines lines;
};

std::ostream& operator<<(std::ostream& out, const Refusal& refusal) {
  return out << refusal.why;
}

class RefusedCampaign : public PopupManagerTest, public ::testing::WithParamInterface<Refusal> {};

TEST_P(RefusedCampaign, IsConsoleLinesAndNothingElse) {
  EXPECT_EQ(show(GetParam().json), GetParam().lines);
  EXPECT_THAT(fake_.popups->requests(), IsEmpty());
  EXPECT_THAT(fake_.userDefaults->values(), IsEmpty());
  EXPECT_THAT(reporter_->openings, IsEmpty());
  EXPECT_THAT(reporter_->answers, IsEmpty());
  ASSERT_EQ(fake_.inspector->ofKind("campaign").size(), 1u);
  EXPECT_THAT(fake_.inspector->ofKind("campaign").at(0).particulars[2], Pair("outcome", "refused"));
}

const Lines kNoIdentity{"Kifo PopupManager: uuid or maxShowCount couldn't be assigned"};
const Lines kNoRange{"Maximumscore or Minimumscore are not validation"};

Lines line(const std::string& message) {
  return {"Kifo PopupManager: " + message};
}

nlohmann::json score(const nlohmann::json& lowest, const nlohmann::json& highest) {
  return campaign("SCORE", {{"minScore", lowest}, {"maxScore", highest}});
}

INSTANTIATE_TEST_SUITE_P(
    Identity, RefusedCampaign,
    ::testing::Values(
        Refusal{"a plain popup without identity, silently",
                {{"type", "POPUP"}, {"buttons", options(1)}, {"maxShowCount", 1}},
                {}},
        Refusal{"a plain popup without a count, silently",
                {{"type", "POPUP"}, {"buttons", options(1)}, {"uuid", "u"}},
                {}},
        Refusal{"a survey", {{"type", "SURVEY"}, {"uuid", "u"}}, kNoIdentity},
        Refusal{"an emoji", {{"type", "EMOJI"}, {"maxShowCount", 1}}, kNoIdentity},
        Refusal{"a score, before its range", {{"type", "SCORE"}, {"uuid", "u"}}, kNoIdentity},
        Refusal{"an open-ended one", {{"type", "OPEN_ENDED"}}, kNoIdentity}));

INSTANTIATE_TEST_SUITE_P(
    ScoreRange, RefusedCampaign,
    ::testing::Values(Refusal{"equal bounds", score(5, 5), kNoRange},
                      Refusal{"below zero", score(-1, 10), kNoRange},
                      Refusal{"nothing to choose", score(0, 0), kNoRange},
                      Refusal{"too high", score(0, 100001), kNoRange},
                      Refusal{"no lowest", score(nullptr, 10), kNoRange},
                      Refusal{"no highest", score(0, nullptr), kNoRange},
                      Refusal{"hostile", score(INT64_MIN, INT64_MAX), kNoRange},
                      Refusal{"before the budget",
                              campaign("SCORE",
                                       {{"minScore", 5}, {"maxScore", 5}, {"maxShowCount", 0}}),
                              kNoRange}));

INSTANTIATE_TEST_SUITE_P(
    Budget, RefusedCampaign,
    ::testing::Values(Refusal{"none", campaign("OPEN_ENDED", {{"maxShowCount", 0}}),
                              line("maxShowCount <= 0 -> maxShowCount = 0")},
                      Refusal{"below none", campaign("OPEN_ENDED", {{"maxShowCount", -3}}),
                              line("maxShowCount <= 0 -> maxShowCount = -3")},
                      Refusal{
                          "hostile",
                          campaign("POPUP", {{"maxShowCount", INT64_MIN}, {"buttons", options(1)}}),
                          line("maxShowCount <= 0 -> maxShowCount = -9223372036854775808")},
                      Refusal{"before the list", campaign("SURVEY", {{"maxShowCount", 0}}),
                              line("maxShowCount <= 0 -> maxShowCount = 0")}));

INSTANTIATE_TEST_SUITE_P(
    List, RefusedCampaign,
    ::testing::Values(
        Refusal{"no buttons", campaign("POPUP"), line("buttons couldn't be assigned")},
        Refusal{"no choices", campaign("SURVEY"), line("choices couldn't be assigned")},
        Refusal{"one choice", campaign("SURVEY", {{"choices", options(1)}}),
                line("choices.count < 2 -> choices count = 1")},
        Refusal{"empty choices", campaign("SURVEY", {{"choices", options(0)}}),
                line("choices.count < 2 -> choices count = 0")},
        Refusal{"no emojis", campaign("EMOJI"), line("emojis couldn't be assigned")},
        Refusal{
            "only one emoji that may be shown",
            campaign("EMOJI",
                     {{"emojiList",
                       {{{"show", true}}, {{"show", false}}, {{"id", "x"}}, {{"show", false}}}}}),
            line("emojis.count < 2 -> emojis count = 1")}));

struct Acceptance {
  const char* why;
  nlohmann::json json;
  Lines lines;
  std::size_t buttons;
  std::size_t choices;
};

std::ostream& operator<<(std::ostream& out, const Acceptance& each) {
  return out << each.why;
}

class AcceptedCampaign : public PopupManagerTest,
                         public ::testing::WithParamInterface<Acceptance> {};

TEST_P(AcceptedCampaign, ShowsTheFirstOptionsAndLeavesTheCampaignAsItIs) {
  const auto item = itemFrom(GetParam().json);
  Lines lines = show(item);
  std::erase_if(lines, [](const std::string& each) {
    return each.find("appCommunicationItem: ") != each.npos;
  });
  EXPECT_EQ(lines, GetParam().lines);
  ASSERT_EQ(fake_.popups->requests().size(), 1u);
  const PopupPreferences& preferences = fake_.popups->requests().at(0)->preferences;
  EXPECT_EQ(ids(preferences.buttons),
            ids(*itemFrom({{"buttons", options(int(GetParam().buttons))}})->buttons));
  EXPECT_EQ(ids(preferences.choices),
            ids(*itemFrom({{"choices", options(int(GetParam().choices))}})->choices));
  EXPECT_EQ(nlohmann::json::parse(encode(*item)), GetParam().json);
  EXPECT_EQ(fake_.userDefaults->integer("u"), 1);
  Lines decisions;
  for (const auto& decision : fake_.inspector->ofKind("campaign")) {
    const auto& outcome = decision.particulars.at(2).second;
    decisions.push_back(outcome == "clamped" ? line(decision.particulars.at(3).second)[0]
                                             : outcome);
  }
  lines.push_back("shown");
  EXPECT_EQ(decisions, lines);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, AcceptedCampaign,
    ::testing::Values(
        Acceptance{"no buttons at all", campaign("POPUP", {{"buttons", options(0)}}), {}, 0, 0},
        Acceptance{"three buttons", campaign("POPUP", {{"buttons", options(3)}}), {}, 3, 0},
        Acceptance{"five buttons", campaign("POPUP", {{"buttons", options(5)}}),
                   line("buttons.count > 3 -> buttons count = 5"), 3, 0},
        Acceptance{"twenty choices",
                   campaign("SURVEY", {{"choices", options(20)}, {"buttons", options(5)}}),
                   {},
                   5,
                   20},
        Acceptance{"twenty-one choices", campaign("SURVEY", {{"choices", options(21)}}),
                   line("choices.count > 20 -> choices count = 21"), 0, 20},
        Acceptance{"four emojis",
                   campaign("EMOJI", {{"emojiList", options(4)}, {"buttons", options(1)}}),
                   line("emojis.count > 3 -> emojis count = 4"), 1, 3},
        Acceptance{
            "the widest score",
            campaign("SCORE", {{"minScore", 0}, {"maxScore", 100000}, {"buttons", options(2)}}),
            {},
            0,
            0},
        Acceptance{"the narrowest score", score(0, 1), {}, 0, 0},
        Acceptance{
            "an open-ended one", campaign("OPEN_ENDED", {{"choices", options(2)}}), {}, 0, 0}));

TEST_F(PopupManagerTest, AHiddenEmojiIsLeftOutBeforeTheFirstThreeAreTaken) {
  auto emojis = options(5);
  emojis[0]["show"] = false;
  emojis[2].erase("show");
  const auto request = presented(campaign("EMOJI", {{"emojiList", emojis}}));
  EXPECT_THAT(ids(request->preferences.choices), ElementsAre("1", "3", "4"));
}

TEST_F(PopupManagerTest, PreferencesCarryTheCampaignsWords) {
  const auto request = presented(campaign(
      "SURVEY",
      {{"choices", options(2)},
       {"header", {{"text", "title"}, {"color", "#F00"}}},
       {"text", {{"text", "detail"}, {"color", "oops"}}},
       {"question", {{"text", "why"}}},
       {"bgColor", "00FF00"},
       {"image", "http://one"},
       {"images", {{{"url", "http://a"}}, nlohmann::json::object(), {{"url", "http://b"}}}},
       {"submitButton", {{"text", "Send"}}}}));
  const PopupPreferences& preferences = request->preferences;
  EXPECT_EQ(preferences.type, "SURVEY");
  EXPECT_EQ(preferences.title, "title");
  EXPECT_EQ(preferences.titleColor, (Color{1, 0, 0, 1}));
  EXPECT_EQ(preferences.detailText, "detail");
  EXPECT_EQ(preferences.detailTextColor, (Color{0, 0, 0, 1}));
  EXPECT_EQ(preferences.questionText, "why");
  EXPECT_EQ(preferences.questionColor, Color::white());
  EXPECT_EQ(preferences.backgroundColor, (Color{0, 1, 0, 1}));
  EXPECT_EQ(preferences.image, "http://one");
  EXPECT_THAT(preferences.images, ElementsAre("http://a", "http://b"));
  EXPECT_EQ(preferences.submitButton, preferences.appCommunicationItem->submitButton);
  EXPECT_EQ(preferences.controller.lock(), screen_);
  EXPECT_EQ(preferences.pageName, "Home");
}

TEST_F(PopupManagerTest, ACampaignWithoutWordsIsWhiteThroughoutAndAPlainPopupHasNoSubmitButton) {
  const auto preferences =
      presented(campaign("POPUP", {{"buttons", options(0)}, {"submitButton", {{"text", "Send"}}}}))
          ->preferences;
  for (const auto& color : {preferences.titleColor, preferences.detailTextColor,
                            preferences.questionColor, preferences.backgroundColor}) {
    EXPECT_EQ(color, Color::white());
  }
  EXPECT_EQ(preferences.title, std::nullopt);
  EXPECT_EQ(preferences.submitButton, nullptr);
}

TEST_F(PopupManagerTest, APlainPopupsButtonGoesToTheHostAndThenToTheServer) {
  std::vector<std::size_t> answersBefore;
  const auto request = presented(campaign("POPUP", {{"buttons", options(1)}}),
                                 [&](auto) { answersBefore.push_back(reporter_->answers.size()); });
  const auto button = request->preferences.buttons.at(0);
  request->actionItem(button);
  EXPECT_THAT(answersBefore, ElementsAre(0u));
  ASSERT_EQ(reporter_->answers.size(), 1u);
  EXPECT_EQ(reporter_->answers[0].item, request->preferences.appCommunicationItem);
  EXPECT_EQ(reporter_->answers[0].answer.button, button);
  EXPECT_EQ(reporter_->answers[0].answer.choice, nullptr);
  EXPECT_EQ(reporter_->answers[0].answer.body, nullptr);
  EXPECT_EQ(reporter_->answers[0].controller, screen_);
  EXPECT_EQ(reporter_->answers[0].pageName, "Home");
  EXPECT_THAT(fake_.console->take(),
              ElementsAre(StartsWith("Kifo PopupManager: action occurred: ")));
}

TEST_F(PopupManagerTest, ATouchOfAPlainPopupsBodyAnswersWithItsAction) {
  std::shared_ptr<AppCommunicationItemButton> chosen;
  const auto request = presented(campaign("POPUP", {{"buttons", options(0)}}),
                                 [&](auto button) { chosen = button; });
  const auto touched = std::make_shared<AppCommunicationItemButton>();
  touched->action = std::make_shared<AppCommunicationItemAction>();
  request->actionBodyItem(touched);
  EXPECT_EQ(chosen, touched);
  ASSERT_EQ(reporter_->answers.size(), 1u);
  EXPECT_EQ(reporter_->answers[0].answer.body, touched->action);
  EXPECT_EQ(reporter_->answers[0].answer.button, nullptr);
}

TEST_F(PopupManagerTest, TheOtherKindsSendTheirButtonAsAChoiceAndTheirSubmissionToTheHost) {
  for (const auto& json : {campaign("SURVEY", {{"choices", options(2)}}),
                           campaign("EMOJI", {{"emojiList", options(2)}}), score(0, 10)}) {
    fake_.userDefaults->removeValue("u");
    std::shared_ptr<AppCommunicationItemButton> submitted;
    const auto request = presented(json, [&](auto button) { submitted = button; });
    const auto button = std::make_shared<AppCommunicationItemButton>();
    request->actionItem(button);
    EXPECT_EQ(submitted, nullptr);
    EXPECT_EQ(testing::last(reporter_->answers).answer.choice, button);
    EXPECT_EQ(testing::last(reporter_->answers).answer.button, nullptr);
    request->submitButtonItem(button);
    EXPECT_EQ(submitted, button);
    EXPECT_FALSE(request->actionBodyItem);
  }
  EXPECT_EQ(reporter_->answers.size(), 3u);
}

TEST_F(PopupManagerTest, AnOpenEndedPopupsActionAnswersWithNothing) {
  const auto request = presented(campaign("OPEN_ENDED"));
  request->actionItem(std::make_shared<AppCommunicationItemButton>());
  EXPECT_THAT(fake_.console->take(), ElementsAre("Kifo PopupManager: action occurred"));
  ASSERT_EQ(reporter_->answers.size(), 1u);
  EXPECT_EQ(reporter_->answers[0].answer.choice, nullptr);
  EXPECT_EQ(reporter_->answers[0].answer.button, nullptr);
}

TEST_F(PopupManagerTest, AHostThatThrowsIsSaidSoAndTheAnswerStillGoesOut) {
  const auto request = presented(campaign("POPUP", {{"buttons", options(1)}}),
                                 [](auto) { throw std::runtime_error("no such page"); });
  request->actionItem(request->preferences.buttons.at(0));
  EXPECT_EQ(reporter_->answers.size(), 1u);
  EXPECT_EQ(fake_.console->count("Kifo PopupManager: a host callback threw: no such page"), 1u);
}

TEST_F(PopupManagerTest, NoCampaignAtAllIsRefusedLikeOneWithoutIdentity) {
  manager_.showNotificationEmojiPopUpWindow(screen_, std::nullopt, nullptr, {});
  EXPECT_EQ(testing::last(fake_.console->lines()), kNoIdentity.at(0));
}

}  // namespace
}  // namespace kifo
