#include <gtest/gtest.h>

#include <QTest>
#include <cstdint>

#include "Kifo_iOS_Common_Kit/inapp/views/CustomSlider.h"
#include "Kifo_iOS_Common_Kit/inapp/views/DashedLabel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupLabel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupPanel.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

TEST(CustomSlider, ItsTrackBeginsAtTheMiddleLine) {
  EXPECT_EQ(CustomSlider::trackRect({0, 0, 300, 40}), QRectF(0, 20, 300, 10));
  EXPECT_EQ(CustomSlider::trackRect({5, 6, 100, 30}), QRectF(5, 21, 100, 10));
}

TEST(CustomSlider, SurvivesRangesThatNoScoreHas) {
  CustomSlider slider(PopupTheme::of({}, {}, nullptr), nullptr);
  slider.resize(200, 30);
  const std::pair<std::int64_t, std::int64_t> ranges[] = {
      {0, 0}, {10, 3}, {INT64_MIN, INT64_MAX}, {INT64_MAX, INT64_MIN}, {-5, -1}};
  for (const auto& [lowest, highest] : ranges) {
    slider.setScores(lowest, highest);
    EXPECT_EQ(slider.position(), static_cast<float>(slider.minimum()));
    for (const int x : {0, 100, 199}) QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(x, 20));
    EXPECT_EQ(slider.position(), static_cast<float>(slider.maximum()));
    slider.grab();
  }
}

TEST(CustomSlider, AKeyAfterADragLandsOnAWholeScore) {
  CustomSlider slider(PopupTheme::of({}, {}, nullptr), nullptr);
  slider.resize(220, 30);
  slider.setScores(0, 10);
  QTest::mouseClick(&slider, Qt::LeftButton, {}, QPoint(85, 20));
  EXPECT_NEAR(slider.position(), 3.75, 0.2);
  QTest::keyClick(&slider, Qt::Key_Right);
  EXPECT_EQ(slider.position(), 4.f);
}

TEST(DashedLabel, StrokesItsBoundsInItsTint) {
  DashedLabel label(nullptr);
  label.resize(200, 50);
  label.setTintColor(Qt::blue);
  EXPECT_EQ(label.shapeLayer().lineDashPattern, (QList<double>{6, 4}));
  EXPECT_EQ(label.shapeLayer().lineJoin, Qt::BevelJoin);
  const QImage image = label.grab().toImage();
  EXPECT_EQ(image.pixelColor(2, 0), QColor(Qt::blue));
  EXPECT_EQ(label.shapeLayer().path.boundingRect(), QRectF(0, 0, 200, 50));
  EXPECT_NE(image.pixelColor(8, 0), QColor(Qt::blue)) << "between two dashes";
}

TEST(PopupLabel, ShowsMarkupAndFollowsNone) {
  PopupLabel label(nullptr);
  label.setLabel("<b>bold</b> <img src=\"file:///etc/passwd\">");
  EXPECT_EQ(label.textFormat(), Qt::PlainText);
  EXPECT_EQ(label.text(), "<b>bold</b> <img src=\"file:///etc/passwd\">");
}

TEST(LegibleColour, ReplacesOnlyWhatThePolicyCallsIllegible) {
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
               {QColor("#777777"), QColor("#777777"), ContrastPolicy::legible, false},
               {QColor("#ff0000"), QColor("#ee0000"), ContrastPolicy::legible, false},
               {QColor("#0a5cd8"), Qt::white, ContrastPolicy::strong, true}};
  for (const auto& [text, behind, policy, kept] : cases) {
    const QColor painted = legibleOn(text, behind, policy);
    EXPECT_EQ(painted == text, kept) << text.name().toStdString();
    EXPECT_TRUE(kept || contrastRatio(painted, behind) >= 4.5) << text.name().toStdString();
  }
}

TEST(LegibleColour, KeepsTheHueWhereItCan) {
  const QColor yellow = legibleOn(QColor("#fff9c4"), Qt::white, ContrastPolicy::legible);
  EXPECT_NEAR(yellow.hslHue(), QColor("#fff9c4").hslHue(), 8);
}

using ContrastTest = PopupTest;

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
  delete popup;
  options.contrast = ContrastPolicy::off;
  present();
  EXPECT_EQ(elements().popupTitle->textColor(), QColor(Qt::white));
}

TEST_F(ContrastTest, ScoreLabelsAreWhiteOnDarkAndBlackOnLight) {
  const struct {
    const char* background;
    QColor text;
  } cases[] = {
      {"000080", Qt::white}, {"FFFF00", Qt::black}, {"7F7F7F", Qt::white}, {"808080", Qt::black}};
  for (const auto& each : cases) {
    campaign("SCORE");
    item->bgColor = each.background;
    request->preferences.backgroundColor = colorFromHex(each.background);
    present();
    EXPECT_EQ(elements().scoreValueLabel->textColor(), each.text) << each.background;
    EXPECT_EQ(elements().sliderMinLabel->textColor(), each.text);
    EXPECT_EQ(elements().sliderMaksLabel->textColor(), each.text);
    dismiss();
  }
}

TEST_F(ContrastTest, HostileColoursAreBlackOrClampedAndNeverCrash) {
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
