// One popup without a toolkit: what it knows, what choosing does, and what it answers.
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"

#include "Kifo_iOS_Common_Kit/inapp/popup/FreeTextRule.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupHeights.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupPalette.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/ShownText.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

class PopupStateTest : public ::testing::Test {
 protected:
  PopupStateTest() { request.preferences.appCommunicationItem = item; }

  PopupState state(const std::string& type, double width = 390) {
    item->type = request.preferences.type = type;
    return PopupState::of(request, width);
  }
  static PopupState::Buttons options(int count) {
    PopupState::Buttons all;
    for (int i = 1; i <= count; ++i) {
      all.push_back(std::make_shared<AppCommunicationItemButton>());
      all.back()->id = "c" + std::to_string(i);
    }
    return all;
  }

  std::shared_ptr<AppCommunicationItem> item = std::make_shared<AppCommunicationItem>();
  PopupRequest request;
};

TEST_F(PopupStateTest, HeightsFollowFromTheKindAndFromWhatTheCampaignHas) {
  PopupPreferences& p = request.preferences;
  p.submitButton = std::make_shared<AppCommunicationItemButton>();
  p.detailText = "text";
  p.buttons = options(2);
  EXPECT_EQ(PopupHeights::of(state("POPUP")).totalHeight, 395);
  item->coupon = Coupon{};
  EXPECT_EQ(PopupHeights::of(state("POPUP")).totalHeight, 395 + 106);
  item->coupon.reset();
  p.buttons = options(5);
  EXPECT_EQ(state("POPUP").tableViewHeigth, 260) << "not capped";
  p.choices = options(3);
  EXPECT_EQ(state("SURVEY").tableViewHeigth, 160);
  p.choices = options(4);
  EXPECT_EQ(PopupHeights::of(state("SURVEY")).listHeightFor(500), 200) << "capped";
  EXPECT_EQ(state("SCORE").popupType, PopupType::emoji);
  EXPECT_EQ(state("SCORE").tableViewHeigth, 200);
  p.detailText.reset();
  p.questionText = "question";
  EXPECT_EQ(PopupHeights::of(state("EMOJI")).totalHeight, 348);
  p.images = {"https://p.example/1"};
  EXPECT_EQ(state("EMOJI").imageViewHeight, 164);
  EXPECT_EQ(state("EMOJI", 414).imageViewHeight, 172);
  EXPECT_FALSE(PopupHeights::of(state("EMOJI")).isImageListAvailable);
  EXPECT_EQ(PopupHeights().openFieldHeight(/*hasQuestion=*/true), 100);
  EXPECT_EQ(PopupHeights().openFieldHeight(/*hasQuestion=*/false), 48);
}

TEST_F(PopupStateTest, FreeTextTiedToChoicesOpensAndClosesWithThemAndForgets) {
  request.preferences.choices = options(2);
  request.preferences.choices[1]->freeTextQuestionCheckBox = true;
  for (const std::optional<bool> always : {std::optional<bool>(), std::optional(false)}) {
    item->defaultFreeTextCheckBox = always;
    PopupState popup = state("SURVEY");
    EXPECT_TRUE(popup.mayAskForFreeText());
    EXPECT_TRUE(popup.waitsForChoice());
    popup.select(popup.choices[1]);
    EXPECT_EQ(popup.isFreeTextOpen, always.has_value());
    popup.freeText = "because";
    popup.select(popup.choices[0]);
    EXPECT_FALSE(popup.isFreeTextOpen);
    EXPECT_EQ(popup.freeText, always ? "" : "because");
    EXPECT_FALSE(popup.waitsForChoice());
    EXPECT_EQ(popup.chosenRow(), 0);
  }
}

TEST_F(PopupStateTest, OfTwoChoicesWithOneIdTheFirstIsMarkedAndTheChosenOneSent) {
  request.preferences.choices = options(3);
  request.preferences.choices[2]->id = "c1";
  request.preferences.choices[2]->text = "third";
  PopupState popup = state("SURVEY");
  popup.select(popup.choices[2]);
  EXPECT_EQ(popup.chosenRow(), 0);
  ASSERT_EQ(popup.answers().size(), 1u);
  EXPECT_EQ(popup.answers()[0].choiseField->text, "third");
}

TEST_F(PopupStateTest, TheCarouselGoesRoundAndAScoreStartsAtItsLowest) {
  request.preferences.images = {"a", "b", "c"};
  item->minScore = 3;
  PopupState popup = state("SCORE");
  EXPECT_EQ(popup.score(), 3);
  for (const int page : {1, 2, 0, 1}) {
    popup.currentIndex = popup.nextPage();
    EXPECT_EQ(popup.currentIndex, page);
  }
}

TEST(FreeTextRuleTest, CountsBytesAndSaysHowMuchOfAPasteFits) {
  using Kind = FreeTextRule::Verdict::Kind;
  EXPECT_EQ(FreeTextRule::shouldChange("", " ").kind, Kind::refuse);
  EXPECT_EQ(FreeTextRule::shouldChange("a", "").kind, Kind::accept) << "a deletion";
  EXPECT_EQ(FreeTextRule::shouldChange("ab", std::string(147, 'x')).kind, Kind::accept);
  const auto verdict = FreeTextRule::shouldChange("ab", std::string(148, 'x'));
  EXPECT_EQ(verdict.kind, Kind::cut);
  EXPECT_EQ(verdict.free, 148u);
  EXPECT_EQ(FreeTextRule::count("é"), "2/150");
}

TEST(ShownTextTest, EndsWhereNobodyReadsOnAndHasNoControlCharacters) {
  EXPECT_EQ(shownText("a\x01"
                      "b\tc\nd\x7f\xC2\x85"
                      "e"),
            "ab\tc\nde");
  std::string endless;
  for (int i = 0; i < 300000; ++i) endless += "ü";
  EXPECT_EQ(shownText(endless).size(), 2 * kMostShown + std::string("…").size());
  EXPECT_EQ(shownText("\xff\xfe truncated \xe2\x80"), "\xff\xfe truncated \xe2\x80");
}

TEST(PopupPaletteTest, TextThatCannotBeReadIsChangedAsLittleAsNeededAndKeepsItsHue) {
  struct Case {
    const char* text;
    const char* behind;
    TextRole role;
    ContrastPolicy policy;
    double least;  ///< 0: kept as it is.
  };
  const Case cases[] = {{"FFFFFF", "FFFFFF", TextRole::description, ContrastPolicy::legible, 4.5},
                        {"FFFFFF", "FFFFFF", TextRole::description, ContrastPolicy::off, 0},
                        {"0A000000", "FFFFFF", TextRole::title, ContrastPolicy::legible, 3.0},
                        {"FFFFFF", "F2C14E", TextRole::button, ContrastPolicy::legible, 3.0},
                        {"FFFFFF", "22B573", TextRole::option, ContrastPolicy::legible, 4.5},
                        {"808080", "FFFFFF", TextRole::title, ContrastPolicy::legible, 0},
                        {"808080", "FFFFFF", TextRole::title, ContrastPolicy::strong, 4.5},
                        {"777777", "777777", TextRole::title, ContrastPolicy::legible, 3.0}};
  for (const auto& [text, behind, role, policy, least] : cases) {
    PopupPalette palette;
    palette.contrast = policy;
    const Color wanted = colorFromHex(text);
    const Color painted = palette.text(role, wanted, colorFromHex(behind));
    EXPECT_EQ(painted == wanted, least == 0) << text;
    if (least == 0) continue;
    EXPECT_GE(contrastRatio(painted, colorFromHex(behind)), least) << text;
    EXPECT_LE(contrastRatio(painted, colorFromHex(behind)), least * 1.2) << text;
  }
  const Color yellow = colorFromHex("FFF9C4");
  const Color painted = PopupPalette().text(TextRole::title, yellow, Color::white());
  EXPECT_GT(painted.red, painted.blue + 0.05) << "still yellowish";
}

constexpr Color channels(double red, double green, double blue, double alpha = 255) {
  return {red / 255.0, green / 255.0, blue / 255.0, alpha / 255.0};
}

constexpr Color kBlack = channels(0, 0, 0);
constexpr Color kRed = channels(255, 0, 0);

TEST(ColorText, StandsForTheColorThatItsLengthAndItsLeadingDigitsSay) {
  const std::pair<const char*, Color> readings[] = {
      // Six digits are red, green and blue.
      {"#FF0000", kRed},
      {"FF0000", kRed},
      {"  ff0000\t", kRed},
      {"#12aB5f", channels(0x12, 0xAB, 0x5F)},
      // Three are doubled.
      {"F00", kRed},
      {"#F80", channels(0xFF, 0x88, 0)},
      // Eight begin with alpha.
      {"80FF0000", channels(255, 0, 0, 128)},
      {"FF0000FF", channels(0, 0, 255)},
      {"00000000", channels(0, 0, 0, 0)},
      // The length is that of the text, the number only that of its leading digits.
      {"GGGGGG", kBlack},
      {"0xFF00", kBlack},
      {"FF-000", channels(0, 0, 0xFF)},
      {"F0G", channels(0, 0xFF, 0)},
      {"FF zzzzz", channels(0, 0, 0xFF, 0)},
      // Any other length is opaque black.
      {"", kBlack},
      {"###", kBlack},
      {"12AB5", kBlack},
      {"FF00000", kBlack},
      {"FFFFFFFFFFFFFFFFFFFFFFFF", kBlack},
      // Characters beyond ASCII count once, and marks among them are trimmed.
      {"\u00A0FF0000\u200B", kRed},
      {"\u201CF00\u201D", kRed},
      {"\u00E9FF000", kBlack},
      {"FF\u00E9\u00E9\u00E9\u00E9", channels(0, 0, 0xFF)},
      {"\xFF\xC3", kBlack},
      {"F00\xE2\x80", kRed}};
  for (const auto& [text, color] : readings) EXPECT_EQ(colorFromHex(text), color) << text;
}

}  // namespace
}  // namespace kifo
