#include <cstdint>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/DashedLabel.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

class CustomSliderTest : public ::testing::Test {
 protected:
  CustomSliderTest() { slider.resize(220, 30); }

  CustomSlider slider{PopupTheme::of({}, {}, nullptr), nullptr};
};

TEST_F(CustomSliderTest, SurvivesRangesThatNoScoreHas) {
  const std::pair<std::int64_t, std::int64_t> ranges[] = {
      {0, 0}, {10, 3}, {INT64_MIN, INT64_MAX}, {INT64_MAX, INT64_MIN}, {-5, -1}};
  for (const auto& [lowest, highest] : ranges) {
    slider.setScores(lowest, highest);
    EXPECT_EQ(slider.position(), static_cast<float>(slider.minimum()));
    for (const int x : {0, 100, 219}) QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(x, 20));
    EXPECT_EQ(slider.position(), static_cast<float>(slider.maximum()));
    slider.grab();
  }
}

TEST_F(CustomSliderTest, AKeyAfterADragLandsOnAWholeScore) {
  slider.setScores(0, 10);
  QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(85, 20));
  EXPECT_NEAR(slider.position(), 3.75, 0.2);
  QTest::keyClick(&slider, Qt::Key_Right);
  EXPECT_EQ(slider.position(), 4.f);
}

TEST(DashedLabelTest, StrokesItsBoundsInItsTint) {
  DashedLabel label(nullptr);
  label.resize(200, 50);
  label.setTintColor(Qt::blue);
  const QImage image = label.grab().toImage();
  EXPECT_EQ(image.pixelColor(2, 0), QColor(Qt::blue));
  EXPECT_NE(image.pixelColor(8, 0), QColor(Qt::blue)) << "between two dashes";
  EXPECT_EQ(image.pixelColor(0, 48), QColor(Qt::blue));
}

TEST(PopupLabelTest, ShowsMarkupAndFollowsNone) {
  PopupLabel label(nullptr);
  label.setLabel("<b>bold</b> <img src=\"file:///etc/passwd\">");
  EXPECT_EQ(label.textFormat(), Qt::PlainText);
  EXPECT_EQ(label.text(), "<b>bold</b> <img src=\"file:///etc/passwd\">");
}

using ContrastTest = PopupTest;

TEST_F(ContrastTest, OnlyWhatThePolicyCallsIllegibleIsReplacedAndKeepsItsHueWhereItCan) {
  const struct {
    QColor text;
    QColor behind;
    ContrastPolicy policy;
    bool kept;
  } cases[] = {{Qt::white, Qt::white, ContrastPolicy::legible, false},
               {Qt::white, Qt::white, ContrastPolicy::off, true},
               {QColor(0, 0, 0, 10), Qt::white, ContrastPolicy::legible, false},
               {QColor("#999999"), Qt::white, ContrastPolicy::legible, true},
               {QColor("#999999"), Qt::white, ContrastPolicy::strong, false},
               {QColor("#777777"), QColor("#777777"), ContrastPolicy::legible, false}};
  for (const auto& [text, behind, policy, kept] : cases) {
    const QColor painted = legibleOn(text, behind, policy);
    EXPECT_EQ(painted == text, kept) << text.name().toStdString();
    EXPECT_TRUE(kept || contrastRatio(painted, behind) >= 4.5) << text.name().toStdString();
  }
  const QColor yellow("#fff9c4");
  EXPECT_NEAR(legibleOn(yellow, Qt::white, ContrastPolicy::legible).hslHue(), yellow.hslHue(), 8);
}

TEST_F(ContrastTest, NoTextOfACampaignWithoutColoursIsInvisible) {
  campaign("POPUP");
  PopupPreferences& p = request->preferences;
  p.titleColor = p.detailTextColor = p.questionColor = p.backgroundColor = Color::white();
  p.questionText = "Question";
  item->bgColor.reset();
  submitButton();
  p.submitButton->color = p.submitButton->textColor = "FFFFFF";
  present();
  for (const auto* label :
       {elements().popupTitle, elements().popupDescription, elements().popupQuestion}) {
    EXPECT_GE(contrastRatio(label->textColor(), Qt::white), 4.5);
  }
  EXPECT_GE(contrastRatio(elements().submitButton->captionColor(), Qt::white), 4.5);
  dismiss();
  options.contrast = ContrastPolicy::off;
  present();
  EXPECT_EQ(elements().popupTitle->textColor(), QColor(Qt::white));
}

TEST_F(ContrastTest, ScoreLabelsAreWhiteOnDarkAndBlackOnLight) {
  const std::pair<const char*, QColor> cases[] = {
      {"000080", Qt::white}, {"FFFF00", Qt::black}, {"7F7F7F", Qt::white}, {"808080", Qt::black}};
  for (const auto& [background, text] : cases) {
    campaign("SCORE");
    item->bgColor = background;
    request->preferences.backgroundColor = colorFromHex(background);
    present();
    EXPECT_EQ(elements().scoreValueLabel->textColor(), text) << background;
    EXPECT_EQ(elements().sliderMinLabel->textColor(), text);
    EXPECT_EQ(elements().sliderMaksLabel->textColor(), text);
    dismiss();
  }
}

TEST_F(ContrastTest, HostileColoursCrashNothing) {
  for (const char* color :
       {"", "#", "GGGGGG", "12345", "ffffffffffffffffffff", "00000000", "\xff\xfe"}) {
    campaign("SURVEY");
    item->bgColor = color;
    choices(2);
    submitButton();
    request->preferences.submitButton->color = request->preferences.submitButton->textColor = color;
    request->preferences.choices[0]->color = request->preferences.choices[0]->textColor = color;
    item->coupon = Coupon{{"C", color, color, color},
                          {{"", color, color, {}}, {"", color, color, {}}},
                          {color, color}};
    item->defaultFreeText = DefaultFreeText{color, color};
    present();
    popup->grab();
    dismiss();
  }
}

}  // namespace
}  // namespace kifo::testing
