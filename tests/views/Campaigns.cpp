#include "tests/views/Campaigns.h"

#include <filesystem>
#include <fstream>
#include <map>

#include "Kifo_iOS_Common_Kit/inapp/PopupManager.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

const std::map<std::string, decltype(&PopupManager::showNotificationPopUpWindow)> kShows = {
    {"POPUP", &PopupManager::showNotificationPopUpWindow},
    {"SURVEY", &PopupManager::showNotificationSurveyPopUpRadioGroupWindow},
    {"EMOJI", &PopupManager::showNotificationEmojiPopUpWindow},
    {"SCORE", &PopupManager::showNotificationScorePopUpWindow},
    {"OPEN_ENDED", &PopupManager::showNotificationOpenEndedPopUpWindow}};

}  // namespace

std::vector<std::pair<std::string, nlohmann::json>> sampleAnswers() {
  std::vector<std::pair<std::string, nlohmann::json>> answers;
  for (const auto& file : std::filesystem::directory_iterator(KIFO_CAMPAIGNS)) {
    if (file.path().extension() != ".json") continue;
    std::ifstream text(file.path());
    auto answer = nlohmann::json::parse(text);
    if (answer["model"].empty()) continue;  // the switches alone
    answers.emplace_back(file.path().stem(), std::move(answer));
  }
  return answers;
}

std::vector<Campaign> campaigns(const FakePlatform& fake) {
  static const auto screen = std::make_shared<HomeScreen>();
  PopupManager manager(std::make_shared<RecordingReporter>());
  std::vector<Campaign> all;
  for (const auto& [name, answer] : sampleAnswers()) {
    const auto item = decode<AppCommunicationItem>(answer["model"][0].dump());
    (manager.*kShows.at(*item->type))(screen, "home", item, {});
    const auto shown = fake.popups->take();
    EXPECT_EQ(shown.size(), 1u) << name;
    if (!shown.empty()) all.push_back({name, shown.front()});
  }
  return all;
}

}  // namespace kifo::testing
