// Where things stand, in logical pixels.
#include <QScrollBar>

#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

using ::testing::ElementsAre;

class LayoutTest : public PopupTest {
 protected:
  /// The panel's pieces as they are read: from top to bottom, and along each row.
  std::vector<std::string> reading() {
    auto pieces = elements().contentView->findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
    pieces.removeIf(
        [](const QWidget* each) { return !each->isVisible() || each->size().isEmpty(); });
    std::ranges::sort(pieces, {}, [](const QWidget* each) {
      const bool centred = each->objectName() == "scoreValueLabel";
      return std::pair(each->y(), centred ? each->geometry().center().x() : each->x());
    });
    std::vector<std::string> names;
    for (const QWidget* each : pieces) names.push_back(each->objectName().toStdString());
    return names;
  }
};

TEST_F(LayoutTest, ThePanelIsInsetByTheScreensMarginsAndNeverWiderThan480) {
  const std::pair<int, int> widths[] = {{320, 258}, {399, 337}, {400, 330}, {3840, 480}};
  for (const auto& [window, expected] : widths) {
    host->resize(window, 900);
    campaign("POPUP");
    present();
    const QRect panel = elements().popupView->geometry();
    EXPECT_EQ(panel.width(), expected);
    EXPECT_NEAR(panel.center().x(), popup->rect().center().x(), 1);
    EXPECT_NEAR(panel.center().y(), popup->rect().center().y(), 1);
    const QRect close = elements().closeButton->geometry();
    EXPECT_EQ(close.size(), QSize(40, 40));
    EXPECT_EQ(close.right(), panel.right());
    EXPECT_EQ(close.bottom() + 1 + 8, panel.top());
    dismiss();
  }
}

TEST_F(LayoutTest, PiecesFollowEachOtherInTheOrderOfReading) {
  host->resize(414, 1100);  // no panel scrolls, so that submit stands with the other pieces
  campaign("SCORE");
  request->preferences.questionText = "How likely?";
  request->preferences.images = {"https://p.example/1", "https://p.example/2"};
  item->maxScore = 10;
  item->coupon = Coupon{{"CODE", "000000", "FFFFFF", {}}, {}, {"000000", "4"}};
  item->defaultFreeText = DefaultFreeText{std::nullopt, "Why?"};
  submitButton();
  present();
  EXPECT_THAT(reading(), ElementsAre("popupTitle", "popupImageViewList", "pageIndicator",
                                     "popupDescription", "couponLabel", "copyButton",
                                     "popupQuestion", "sliderMinLabel", "scoreValueLabel",
                                     "sliderMaksLabel", "slider", "fieldView", "submitButton"));
  dismiss();

  request->preferences.images.resize(1);
  item->coupon.reset();
  campaign("SURVEY");
  choices(4);
  present();
  EXPECT_THAT(reading(),
              ElementsAre("popupTitle", "popupImageView", "popupDescription", "popupQuestion",
                          "buttonsTableview", "fieldView", "submitButton"));
  EXPECT_EQ(elements().popupImageView->size(), QSize(344, 172));
  EXPECT_EQ(elements().buttonsTableview->height(), 200) << "four rows";
  dismiss();

  campaign("EMOJI");
  present();
  EXPECT_EQ(reading().at(4), "emojiCollectionView");
  for (const auto* cell : elements().emojiCollectionView->cells()) {
    EXPECT_EQ(cell->size(), QSize(50, 50));
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

TEST_F(LayoutTest, WhereThePanelScrollsItsSubmitButtonStaysInSightIfThereIsRoom) {
  campaign("OPEN_ENDED");
  request->preferences.detailText = std::string(3000, 'x');
  submitButton();
  for (const auto& [height, stays] : {std::pair(700, true), std::pair(260, false)}) {
    host->resize(414, height);
    present();
    PopupButton* submit = elements().submitButton;
    EXPECT_EQ(!submit->visibleRegion().isEmpty(), stays);
    EXPECT_EQ(submit->parentWidget() == elements().popupView, stays);
    click(submit);
    EXPECT_EQ(reporter->reports.size(), 1u);
    reporter->reports.clear();
    settle();
  }
}

TEST_F(LayoutTest, TheFootBelowTheLastButtonIsAsWideAsTheSides) {
  campaign("POPUP");
  request->preferences.buttons = {option("b1", "One", "#0A5CD8"), option("b2", "Two", "#0A5CD8")};
  present();
  const QWidget* last = button(1);
  const int foot = last->mapTo(elements().popupView, QPoint(0, last->height())).y() -
                   KifoPopupCell::surfaceInset;
  EXPECT_EQ(elements().popupView->height() - foot, 8);
}

TEST_F(LayoutTest, RightToLeftTextMirrorsThePanel) {
  campaign("SCORE");
  item->maxScore = 10;
  item->defaultFreeText = DefaultFreeText{};
  request->preferences.title = "قيم زيارتك";
  present();
  const auto& e = elements();
  EXPECT_EQ(e.closeButton->geometry().left(), e.popupView->geometry().left());
  EXPECT_EQ(e.sliderMinLabel->geometry().right(), e.slider->geometry().right());
  EXPECT_EQ(e.textFieldCountLabel->x(), e.textField->x());
  QTest::mouseClick(e.slider, Qt::LeftButton, {}, QPoint(10, 20));
  EXPECT_EQ(popup->popUpWindowView()->sliderValue(), 10.f);
  dismiss();

  campaign("SURVEY");
  request->preferences.title = "قيم زيارتك";
  choices(1);
  present();
  const QRect text = choice(0)->findChild<TextLabel*>()->geometry();
  EXPECT_GT(choice(0)->width() - text.right(), text.left()) << "the mark is on the right";
}

TEST_F(LayoutTest, TheKeyboardLiftsTheViewByHalfItsHeightOnce) {
  campaign("OPEN_ENDED");
  present();
  const QRect panel = elements().popupView->geometry();
  popup->keyboardWillShow({});
  EXPECT_FALSE(popup->state().isKeyboardSizeAdded);
  popup->keyboardWillShow({0, 500, 414, 300});
  popup->keyboardWillShow({0, 400, 414, 400});
  EXPECT_TRUE(popup->state().isKeyboardSizeAdded);
  EXPECT_EQ(popup->popUpWindowView()->y(), -150);
  EXPECT_EQ(popup->popUpWindowView()->size(), popup->size());
  EXPECT_EQ(elements().popupView->geometry(), panel);
  popup->keyboardWillHide();
  EXPECT_EQ(popup->popUpWindowView()->y(), 0);
  EXPECT_FALSE(popup->state().isKeyboardSizeAdded);
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

TEST_F(LayoutTest, PaintsNothingOfTheHostsStyleSheet) {
  campaign("SCORE");
  item->maxScore = 10;
  item->defaultFreeText = DefaultFreeText{};
  present();
  settle();
  const QImage plain = popup->grab().toImage();
  dismiss();
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
