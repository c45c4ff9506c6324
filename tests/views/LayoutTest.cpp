// Where things stand, in logical pixels.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QScrollBar>
#include <QTimer>

#include "Kifo_iOS_Common_Kit/inapp/views/CustomSlider.h"
#include "Kifo_iOS_Common_Kit/inapp/views/DashedLabel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/FreeTextField.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoEmojiCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoSurveyCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PageIndicator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupCarousel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupCloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupEmojiRow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupImageView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupLabel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupListView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupPanel.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

class LayoutTest : public PopupTest {
 protected:
  static QRect below(const QWidget* above, int gap, int inset, int width, int height) {
    return {inset, above->y() + above->height() + gap, width - 2 * inset, height};
  }
};

TEST_F(LayoutTest, ThePanelIsInsetByTheScreensMarginsAndNeverWiderThan480) {
  const struct {
    int window;
    int panel;
  } cases[] = {{320, 258}, {399, 337}, {400, 330},  {414, 344},
               {549, 479}, {550, 480}, {1280, 480}, {3840, 480}};
  for (const auto& each : cases) {
    host->resize(each.window, 900);
    campaign("POPUP");
    present();
    const QRect panel = elements().popupView->geometry();
    EXPECT_EQ(panel.width(), each.panel);
    EXPECT_NEAR(panel.center().x(), popup->rect().center().x(), 1);
    EXPECT_NEAR(panel.center().y(), popup->rect().center().y(), 1);
    const QRect close = elements().closeButton->geometry();
    EXPECT_EQ(close.size(), QSize(40, 40));
    EXPECT_EQ(close.right(), panel.right());
    EXPECT_EQ(close.bottom() + 1 + 8, panel.top());
    dismiss();
  }
}

TEST_F(LayoutTest, ASurveyStandsAsDrawn) {
  campaign("SURVEY");
  request->preferences.image = "https://p.example/1";
  choices(4);
  submitButton();
  present();
  const auto& e = elements();
  EXPECT_EQ(e.popupTitle->geometry(), QRect(8, 8, 328, 50));
  EXPECT_EQ(e.popupImageView->geometry(), below(e.popupTitle, 8, 0, 344, 172));
  EXPECT_EQ(e.popupDescription->geometry(), below(e.popupImageView, 8, 10, 344, 50));
  EXPECT_EQ(e.buttonsTableview->geometry(), below(e.popupDescription, 8, 8, 344, 200));
  EXPECT_EQ(e.submitButton->height(), 50);
  EXPECT_EQ(e.submitButton->geometry().bottom() + 1 + 8, e.contentView->height());
  for (const auto* cell : popup->findChildren<KifoSurveyCell*>()) EXPECT_EQ(cell->height(), 50);
}

TEST_F(LayoutTest, ACarouselHasItsIndicatorBelowIt) {
  campaign("POPUP");
  request->preferences.images = {"https://p.example/1", "https://p.example/2"};
  present();
  const auto& e = elements();
  EXPECT_EQ(e.popupImageViewList->geometry(), below(e.popupTitle, 8, 0, 344, 172));
  EXPECT_EQ(e.pageIndicator->geometry(), below(e.popupImageViewList, 8, 8, 344, 10));
  EXPECT_EQ(e.popupDescription->geometry(), below(e.pageIndicator, 8, 10, 344, 50));
}

TEST_F(LayoutTest, AScoreStandsAsDrawn) {
  campaign("SCORE");
  request->preferences.questionText = "How likely?";
  item->maxScore = 10;
  item->defaultFreeText = DefaultFreeText{std::nullopt, "Why?"};
  submitButton();
  present();
  const auto& e = elements();
  EXPECT_EQ(e.popupQuestion->geometry(), below(e.popupDescription, 10, 10, 344, 50));
  EXPECT_EQ(e.scoreValueLabel->geometry(), below(e.popupQuestion, 10, 0, 344, 17));
  EXPECT_EQ(e.slider->geometry(), below(e.scoreValueLabel, 10, 8, 344, 30));
  EXPECT_EQ(e.sliderMinLabel->x(), e.slider->x());
  EXPECT_EQ(e.sliderMaksLabel->geometry().right(), e.slider->geometry().right());
  EXPECT_EQ(e.sliderMinLabel->y(), e.sliderMaksLabel->y());
  EXPECT_EQ(e.fieldView->geometry(), below(e.slider, 8, 8, 344, 100));
  EXPECT_EQ(e.textFieldLabel->geometry(), QRect(0, 8, 328, 36));
  EXPECT_EQ(e.textField->height(), 36);
  EXPECT_EQ(e.textFieldCountLabel->width(), 40);
  EXPECT_EQ(e.textFieldCountLabel->geometry().right(), e.textField->geometry().right());
  EXPECT_EQ(e.textFieldCountLabel->y(), e.textField->geometry().bottom() + 1 + 10);
  EXPECT_EQ(e.submitButton->geometry(), below(e.fieldView, 8, 8, 344, 50));
}

TEST_F(LayoutTest, EmojisAreFiftySquareAndACouponHasItsTwoHeights) {
  campaign("EMOJI");
  choices(3);
  item->coupon = Coupon{{"CODE", "000000", "FFFFFF", {}}, {}, {"000000", "4"}};
  present();
  const auto& e = elements();
  EXPECT_EQ(e.couponLabel->geometry(), below(e.popupDescription, 8, 8, 344, 50));
  EXPECT_EQ(e.copyButton->geometry(), below(e.couponLabel, 8, 12, 344, 40));
  for (const auto* cell : popup->findChildren<KifoEmojiCollectionViewCell*>()) {
    EXPECT_EQ(cell->size(), QSize(50, 50));
    EXPECT_EQ(cell->findChild<QWidget*>("emojiButton")->size(), QSize(30, 30));
  }
}

TEST_F(LayoutTest, APanelWithoutFreeTextIsClosedUpUnlessTheHostKeepsItsRoom) {
  campaign("POPUP");
  request->preferences.buttons = {option("b1", "One"), option("b2", "Two")};
  submitButton();
  for (const bool keeps : {false, true}) {
    options.keepsFreeTextRoom = keeps;
    present();
    EXPECT_EQ(elements().popupView->height(), keeps ? 395 : 316);
    EXPECT_EQ(elements().submitButton->geometry().bottom() + 1 + 8,
              elements().contentView->height());
    dismiss();
  }
}

TEST_F(LayoutTest, WhatDoesNotFitGrowsAndMovesTheRestDown) {
  campaign("POPUP");
  present();
  const int short_ = elements().popupView->height();
  dismiss();
  request->preferences.detailText = "A text of many words. " + std::string(300, 'w');
  present();
  EXPECT_GT(elements().popupDescription->height(), 50);
  EXPECT_EQ(elements().popupView->height() - short_, elements().popupDescription->height() - 50);
}

TEST_F(LayoutTest, RightToLeftTextMirrorsThePanel) {
  campaign("SCORE");
  item->maxScore = 10;
  request->preferences.title = "قيم زيارتك";
  present();
  const auto& e = elements();
  EXPECT_EQ(e.closeButton->geometry().left(), e.popupView->geometry().left());
  EXPECT_EQ(e.sliderMinLabel->geometry().right(), e.slider->geometry().right());
  QTest::mouseClick(e.slider, Qt::LeftButton, {}, QPoint(10, 20));
  EXPECT_EQ(popup->popUpWindowView()->sliderValue(), 10.f);
}

TEST_F(LayoutTest, TheKeyboardLiftsTheViewByHalfItsHeightOnce) {
  campaign("OPEN_ENDED");
  present();
  const QRect panel = elements().popupView->geometry();
  popup->keyboardWillShow({});
  EXPECT_FALSE(popup->fields().isKeyboardSizeAdded);
  popup->keyboardWillShow({0, 500, 414, 300});
  popup->keyboardWillShow({0, 400, 414, 400});
  EXPECT_TRUE(popup->fields().isKeyboardSizeAdded);
  EXPECT_EQ(popup->popUpWindowView()->y(), -150);
  EXPECT_EQ(popup->popUpWindowView()->size(), popup->size());
  EXPECT_EQ(elements().popupView->geometry(), panel);
  popup->keyboardWillHide();
  EXPECT_EQ(popup->popUpWindowView()->y(), 0);
  EXPECT_FALSE(popup->fields().isKeyboardSizeAdded);
}

TEST_F(LayoutTest, AboveAKeyboardATallPanelKeepsItsCloseButtonAndFieldInSight) {
  host->resize(320, 480);
  campaign("OPEN_ENDED");
  request->preferences.detailText = std::string(600, 'x');
  submitButton();
  present();
  find<QWidget>("textField")->setFocus();
  popup->keyboardWillShow({0, 280, 320, 200});
  const auto inWindow = [this](QWidget* w) { return QRect(w->mapTo(popup, QPoint()), w->size()); };
  EXPECT_TRUE(QRect(0, 0, 320, 280).contains(inWindow(elements().closeButton)));
  EXPECT_TRUE(QRect(0, 0, 320, 280).contains(inWindow(elements().textField)));
}

TEST_F(LayoutTest, TheScrollIndicatorFlashesUntilTheListIsScrolled) {
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
  EXPECT_TRUE(popup->popUpWindowView()->isEnableTimer()) << "one pixel does not count";
  list->verticalScrollBar()->setValue(2);
  EXPECT_FALSE(popup->popUpWindowView()->isEnableTimer());
  EXPECT_EQ(popup->popUpWindowView()->timerForShowScrollIndicator(), nullptr);
}

TEST_F(LayoutTest, AFingerDrawnOverAListScrollsItAndChoosesNothing) {
  campaign("SURVEY");
  choices(12);
  present();
  PopupListView* list = elements().buttonsTableview;
  auto* option = popup->findChildren<KifoSurveyCell*>().at(2)->findChild<QWidget*>("selectButton");
  drag(option, QPoint(50, 25), QPoint(50, -60));
  EXPECT_GT(list->verticalScrollBar()->value(), 20);
  EXPECT_EQ(popup->fields().selectActionItem, nullptr);
}

TEST_F(LayoutTest, PaintsNothingOfTheHostsStyleSheet) {
  campaign("SCORE");
  item->maxScore = 10;
  item->defaultFreeText = DefaultFreeText{};
  present();
  settle();
  const QImage plain = popup->grab().toImage();
  delete popup;
  host->setStyleSheet("* { background: red; color: red; border: 3px solid red; padding: 9px; }");
  present();
  settle();
  const QImage styled = popup->grab().toImage();
  const QRectF panel = elements().popupView->geometry().adjusted(8, 8, -8, -8);
  const double scale = plain.devicePixelRatio();
  const QRect pixels = QRectF(panel.topLeft() * scale, panel.size() * scale).toRect();
  EXPECT_EQ(styled.copy(pixels), plain.copy(pixels));
}

}  // namespace
}  // namespace kifo::testing
