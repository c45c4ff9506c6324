// Every field of every sample campaign dropped, of another type, blown up and nested, on its way
// from the server's answer to the pixels of both toolkits.
#include "tests/support/SdkTest.h"
#include "tests/views/Campaigns.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

using Json = nlohmann::json;

enum class Mutation { drop, retype, blowUp, nest };
constexpr std::array kMutations{Mutation::drop, Mutation::retype, Mutation::blowUp, Mutation::nest};

/// KIFO_MUTATIONS: how many mutants are left out between two. 0 takes all some 3,000 of them.
std::size_t leftOut() {
  return qEnvironmentVariableIsSet("KIFO_MUTATIONS")
             ? static_cast<std::size_t>(qEnvironmentVariableIntValue("KIFO_MUTATIONS"))
             : 30;
}

void collectPlaces(const Json& node, const Json::json_pointer& place,
                   std::vector<Json::json_pointer>& places) {
  if (!place.empty()) places.push_back(place);
  if (!node.is_structured()) return;
  for (const auto& [key, value] : node.items()) {
    collectPlaces(value,
                  node.is_array() ? place / static_cast<std::size_t>(std::stoul(key)) : place / key,
                  places);
  }
}

Json blownUp(const Json& value) {
  if (value.is_string()) {
    std::string text = value.get<std::string>() + "W\xF0\x9F\x98\x80\n";
    while (text.size() < 50'000) text += text;
    return text;
  }
  if (value.is_number()) return 1e300;
  if (value.is_boolean()) return nullptr;
  if (value.is_array()) return Json(500, value.empty() ? Json("text") : value.front());
  Json members = value;
  for (int number = 0; number < 500; ++number) members["member" + std::to_string(number)] = number;
  return members;
}

Json nested(Json value) {
  for (int depth = 0; depth < 200; ++depth)
    value = depth % 2 == 0 ? Json{value} : Json{{"a", value}};
  return value;
}

void mutate(Json& answer, const Json::json_pointer& place, Mutation mutation) {
  Json& value = answer[place];
  switch (mutation) {
    case Mutation::drop:
      if (Json& parent = answer[place.parent_pointer()]; parent.is_object()) {
        parent.erase(place.back());
      } else {
        parent.erase(std::stoul(place.back()));
      }
      break;
    case Mutation::retype:
      value = value.is_string() ? Json(-7) : value.is_structured() ? Json("text") : Json("7x");
      break;
    case Mutation::blowUp:
      value = blownUp(value);
      break;
    case Mutation::nest:
      value = nested(value);
      break;
  }
}

class MutatedCampaignTest : public SdkTest {
 protected:
  MutatedCampaignTest() {
    options_.reducedMotion = true;
    for (const auto& kind : PopupToolkit::all()) toolkits_.push_back(kind.make());
  }

  void settle() {
    fake.runUntilIdle();
    for (int i = 0; i < 3; ++i) {
      QCoreApplication::processEvents();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
  }

  /// Lays the popup out, paints it with and without a keyboard, and closes it.
  void show(PopupToolkit& toolkit, const FakePopupPresenter::Requests& requests) {
    for (const auto& request : requests) {
      toolkit.present(request, options_);
      settle();
      EXPECT_FALSE(toolkit.picture().isNull());
      if (!toolkit.state()) continue;
      toolkit.keyboard(QRectF(0, 500, 414, 300));
      settle();
      EXPECT_FALSE(toolkit.picture().isNull());
      toolkit.dismiss();
      settle();
      EXPECT_EQ(toolkit.state(), nullptr) << "a popup that stays";
    }
  }

  /// What the popup manager makes of the answer when `event` happens, in both toolkits.
  void play(const Json& answer, const std::string& event) {
    restartProcess();
    fake.userDefaults->removeAll();
    start(answer.dump());
    KifoEventManager::sendEvent(screen_, event, std::nullopt, {}, [](const auto&) {});
    fake.runUntilIdle();
    fake.advance(1.0);
    const auto requests = fake.popups->take();
    shown_ += requests.size();
    for (const auto& toolkit : toolkits_) show(*toolkit, requests);
    ImageDecoders::waitForDone();
    settle();
  }

  const std::shared_ptr<HomeScreen> screen_ = std::make_shared<HomeScreen>();
  std::vector<std::unique_ptr<PopupToolkit>> toolkits_;
  PopUpOptions options_;
  std::size_t shown_ = 0;
};

TEST_F(MutatedCampaignTest, AnyShapeOfACampaignIsRefusedOrShownInBothToolkits) {
  std::size_t mutants = 0;
  std::size_t played = 0;
  for (const auto& [name, original] : sampleAnswers()) {
    const std::string event = original["model"][0].value("triggeringEventName", "");
    std::vector<Json::json_pointer> places;
    collectPlaces(original, Json::json_pointer(), places);
    for (const auto& place : places) {
      for (const Mutation mutation : kMutations) {
        if (mutants++ % (leftOut() + 1) != 0) continue;
        SCOPED_TRACE(name + place.to_string() + " " + std::to_string(static_cast<int>(mutation)));
        RecordProperty("last", place.to_string());
        Json answer = original;
        mutate(answer, place, mutation);
        play(answer, event);
        ++played;
      }
    }
  }
  RecordProperty("played", static_cast<int>(played));
  EXPECT_GT(played, 50U);
  EXPECT_GT(shown_, played / 4) << "most mutants are still popups";
}

}  // namespace
}  // namespace kifo::testing
