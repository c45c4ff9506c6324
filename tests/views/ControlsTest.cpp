#include <cstdint>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/DashedLabel.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

class CustomSliderTest : public ::testing::Test {
 protected:
  CustomSliderTest() { slider.resize(220, 30); }

  CustomSlider slider{PopupTheme::of({}, {}, {}), nullptr};
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
  EXPECT_FALSE(slider.isTouched());
  QTest::mousePress(&slider, Qt::LeftButton, {}, QPoint(85, 20));
  EXPECT_TRUE(slider.isTouched());
  EXPECT_NEAR(slider.position(), 3.75, 0.2) << "the thumb follows the finger";
  QTest::keyClick(&slider, Qt::Key_Right);
  EXPECT_EQ(slider.position(), 4.f);
}

TEST(DashedLabelTest, StrokesItsBoundsInItsTint) {
  DashedLabel label(nullptr);
  label.resize(200, 50);
  label.setShape({Qt::transparent, Qt::blue, 4});
  const QImage image = label.grab().toImage();
  for (const int y : {0, 3}) {
    EXPECT_EQ(image.pixelColor(5, y), QColor(Qt::blue)) << "the whole thickness is seen";
    EXPECT_NE(image.pixelColor(10, y), QColor(Qt::blue)) << "between two dashes";
  }
}

TEST(TextLabelTest, ShowsMarkupAndFollowsNone) {
  TextLabel label(nullptr);
  label.setText("<b>bold</b> <img src=\"file:///etc/passwd\">");
  EXPECT_EQ(label.textFormat(), Qt::PlainText);
  EXPECT_EQ(label.text(), "<b>bold</b> <img src=\"file:///etc/passwd\">");
}

TEST(TextLabelTest, AnEndlessWordIsCutBeforeItIsLaidOut) {
  TextLabel label(nullptr);
  const auto heightOf = [&](int characters) {
    label.setText(QString(characters, 'x'));
    return label.heightForWidth(300);
  };
  EXPECT_LE(heightOf(300000), heightOf(5100));
}

TEST(TextLabelTest, AtItsNaturalWidthNoTextIsBroken) {
  const QStringList texts = {"عنوان التوصيل",   "رقم الطلب",        "الدفع عند الاستلام",
                             "المبلغ الإجمالي", "Delivery address", "כתובת למשלוח"};
  TextLabel label(nullptr);
  for (const QString& text : texts) {
    for (int pixels = 9; pixels <= 32; ++pixels) {
      QFont font = QApplication::font();
      font.setPixelSize(pixels);
      label.setFace(font, Qt::black, TextLabel::Alignment::leading);
      label.setText("x");
      const int line = label.heightForWidth(100);
      label.setText(text);
      EXPECT_LT(label.heightForWidth(label.naturalWidth()), 2 * line)
          << text.toStdString() << " at " << pixels;
    }
  }
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
    EXPECT_GE(contrastRatio(label->textColor(), Qt::white), 3.0);
  }
  EXPECT_GE(contrastRatio(elements().submitButton->captionColor(), Qt::white), 3.0);
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
