// The controls of the popups in Qt Widgets, and what only a window of widgets has.
#include <QMainWindow>
#include <QPushButton>
#include <QScrollBar>
#include <cstdint>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/CustomSlider.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/DashedLabel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindowView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupCarousel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupListView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupPanel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"
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
  QWheelEvent passing({50, 20}, {}, {}, {0, 120}, Qt::NoButton, {}, Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&slider, &passing);
  EXPECT_EQ(slider.position(), 4.f) << "the wheel scrolls what lies below";
  QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(85, 20));
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

class PopUpWindowTest : public PopupFixture {
 protected:
  PopUpWindowTest() : PopupFixture(PopupToolkit::widgets()) {}

  PopUpWindow* popup() { return qobject_cast<PopUpWindow*>(toolkit->popup()); }
  QWidget* host() { return popup()->parentWidget(); }
  const PopupElements& elements() { return popup()->popUpWindowView()->elements(); }
};

TEST_F(PopUpWindowTest, NoTextOfACampaignWithoutColoursIsInvisible) {
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

TEST_F(PopUpWindowTest, ScoreLabelsAreWhiteOnDarkAndBlackOnLight) {
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

TEST_F(PopUpWindowTest, WhatLiesAboveThePopupMayTakeTheFocus) {
  present("OPEN_ENDED");
  auto* onTop = new QPushButton(host());
  onTop->show();
  onTop->setFocus();
  EXPECT_EQ(QApplication::focusWidget(), onTop);
}

TEST_F(PopUpWindowTest, TheScrollIndicatorFlashesUntilTheListIsScrolled) {
  options.reducedMotion = false;
  options.durations.fade = {};
  options.durations.scrollIndicatorDelay = options.durations.scrollIndicatorInterval =
      std::chrono::milliseconds(1);
  campaign("SURVEY");
  choices(12);
  present();
  PopupListView* list = elements().buttonsTableview;
  EXPECT_TRUE(QTest::qWaitFor([&] { return list->indicator()->flashes() > 2; }, 5000));
  EXPECT_TRUE(QTest::qWaitFor([&] { return list->indicator()->strength() > 0; }, 5000));
  list->verticalScrollBar()->setValue(1);
  EXPECT_TRUE(popup()->popUpWindowView()->isEnableTimer()) << "one pixel does not count";
  list->verticalScrollBar()->setValue(2);
  EXPECT_FALSE(popup()->popUpWindowView()->isEnableTimer());
  EXPECT_EQ(popup()->popUpWindowView()->timerForShowScrollIndicator(), nullptr);
}

TEST_F(PopUpWindowTest, ThePageThatTheUserChoseStaysItsWholeTime) {
  campaign("POPUP");
  pictures(2);
  present();
  settle();
  popup()->timer()->stop();
  elements().popupImageViewList->setFocus();
  key(Qt::Key_Right);
  EXPECT_TRUE(popup()->timer()->isActive()) << "it starts anew";
}

TEST_F(PopUpWindowTest, PaintsNothingOfTheHostsStyleSheet) {
  campaign("SCORE");
  item->maxScore = 10;
  item->defaultFreeText = DefaultFreeText{};
  const auto draw = [this] {
    present();
    settle();
    const QImage all = popup()->grab().toImage();
    const QRectF panel = elements().popupView->geometry().adjusted(8, 8, -8, -8);
    dismiss();
    const double scale = all.devicePixelRatio();
    return all.copy(QRectF(panel.topLeft() * scale, panel.size() * scale).toRect());
  };
  const QImage plain = draw();
  QApplication::activeWindow()->setStyleSheet(
      "* { background: red; color: red; border: 3px solid red; padding: 9px; }");
  EXPECT_EQ(draw(), plain);
}

TEST_F(PopUpWindowTest, ACallbackMayDestroyTheHostByAClickOrByEnter) {
  campaign("POPUP");
  request->preferences.buttons = {option("b1", "Yes")};
  for (const bool byKeyboard : {false, true}) {
    toolkit = PopupToolkit::widgets();
    request->actionItem = [this](auto) { toolkit->destroyHost(); };
    present();
    QWidget* button = popup()->findChild<QWidget*>("titleLbl");
    if (byKeyboard) {
      QTest::keyClick(button, Qt::Key_Return);
    } else {
      QTest::mouseClick(button, Qt::LeftButton);
    }
    settle();
    EXPECT_TRUE(isGone());
  }
}

TEST_F(PopUpWindowTest, CanBeDismissedBeforeItIsPresented) {
  campaign("POPUP");
  int closings = 0;
  QPointer<PopUpWindow> early = new PopUpWindow(request, options);
  QObject::connect(early, &PopUpWindow::closed, [&] { ++closings; });
  early->dismissView();
  early->present();
  settle();
  EXPECT_TRUE(early.isNull());
  EXPECT_EQ(closings, 1);
}

TEST_F(PopUpWindowTest, AsAWindowOfItsOwnItClosesAsItsButtonDoes) {
  campaign("POPUP");
  QPointer<PopUpWindow> alone = new PopUpWindow(request, options);
  alone->resize(800, 600);
  alone->present();
  EXPECT_TRUE(alone->isWindow());
  EXPECT_TRUE(alone->close()) << "a window that refuses would refuse the application's end";
  settle();
  EXPECT_TRUE(alone.isNull());
  EXPECT_EQ(reports().size(), 1u);
}

}  // namespace
}  // namespace kifo::testing
