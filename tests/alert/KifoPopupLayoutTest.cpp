#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertList.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopup.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "tests/alert/AlertFixture.h"

namespace kifo {
namespace {

using ::testing::Each;
using ::testing::Ge;
using ::testing::Le;

class KifoPopupLayoutTest : public AlertFixture {
 protected:
  /// Where `part` of an alert lies in the window.
  QRect placeOf(const QWidget* part) const {
    return {part->mapTo(window.get(), QPoint()), part->size()};
  }
  void expectCentred(const KifoPopup& alert, const QRect& room) const {
    const QPoint middle = placeOf(alert.baseView()).center();
    EXPECT_NEAR(middle.x(), room.center().x(), 1);
    EXPECT_NEAR(middle.y(), room.center().y(), 1);
  }
  static const AlertList* listOf(const KifoPopup& alert) {
    return alert.contentView()->findChild<AlertList*>();
  }
  /// Where each text of an alert's list lies in the list.
  static std::map<QString, QRect> placesInList(const KifoPopup& alert) {
    std::map<QString, QRect> places;
    for (const QLabel* label : listOf(alert)->findChildren<QLabel*>()) {
      places[label->text()] = label->geometry();
    }
    return places;
  }
  /// The parts that an alert has from top to bottom do not overlap.
  void expectApart(const KifoPopup& alert) const {
    std::vector<QWidget*> parts = {alert.labelTitle(), alert.viewText()};
    parts.insert(parts.end(), alert.inputs().begin(), alert.inputs().end());
    parts.insert(parts.end(), alert.input().begin(), alert.input().end());
    parts.insert(parts.end(), alert.buttons().begin(), alert.buttons().end());
    for (std::size_t i = 1; i < parts.size(); ++i) {
      EXPECT_LT(placeOf(parts[i - 1]).bottom(), placeOf(parts[i]).top());
    }
  }
};

const QString kLongText = QString("The payment terminal does not answer. ").repeated(12);

TEST_F(KifoPopupLayoutTest, TheCardStandsInTheMiddleOfTheWindowAndFollowsIt) {
  const auto alert = makeAlert();
  alert->showInfo("Middle", "Text", "OK");
  EXPECT_EQ(alert->baseView()->width(), 240);
  for (const QSize size : {QSize(500, 600), QSize(1400, 400), QSize(300, 500)}) {
    window->resize(size);
    expectCentred(*alert, window->rect());
    EXPECT_EQ(overlays().front()->geometry(), window->rect());
    const auto* area = alert->baseView()->findChild<QScrollArea*>();
    EXPECT_EQ(area->verticalScrollBar()->maximum(), 0) << "what fits shows no sign of scrolling";
  }
  alert->hideView();

  const auto notification = makeAlert();
  notification->type = ScreenType::notification;
  notification->showInfo("Above", "Text", "OK");
  EXPECT_THAT(placeOf(notification->baseView()).top(), Le(16));
}

TEST_F(KifoPopupLayoutTest, InAWindowOfAnySizeTheCardFitsAndEveryButtonCanBeReached) {
  const auto alert = makeAlert();
  alert->addTextField("Name");
  alert->addTextView();
  alert->addButton("Yes", [] {});
  window->resize(200, 160);
  alert->showError("A rather long title for a small window", kLongText, "No");
  KifoButton* last = alert->buttons().back();
  for (const QSize size : {QSize(120, 90), QSize(240, 160), QSize(320, 240), QSize(800, 480)}) {
    window->resize(size);
    expectApart(*alert);
    alert->inputs().front()->setFocus();
    while (QApplication::focusWidget() != last) press(Qt::Key_Tab);
    EXPECT_TRUE(window->rect().contains(placeOf(alert->baseView())));
    EXPECT_TRUE(placeOf(alert->baseView()).contains(placeOf(last).center()));
    EXPECT_THAT(last->visibleRegion().boundingRect().height(), Ge(std::min(20, size.height() / 4)));
  }
}

TEST_F(KifoPopupLayoutTest, ALongTextMakesTheCardWiderUpToALimit) {
  window->resize(1400, 900);
  const auto alert = makeAlert();
  const auto responder = alert->showInfo("Width", "Short", "OK");
  const int narrow = alert->baseView()->width();
  responder.setSubTitle(kLongText);
  QCoreApplication::processEvents();
  EXPECT_GT(alert->baseView()->width(), narrow);
  EXPECT_LE(alert->baseView()->width(), 400);
  EXPECT_GE(alert->viewText()->height(),
            alert->viewText()->heightForWidth(alert->viewText()->width()));
}

TEST_F(KifoPopupLayoutTest, ButtonsStandInARowWhereItFitsAndInAColumnWhereItDoesNot) {
  KifoAppearance appearance;
  appearance.buttonsLayout = KifoAlertButtonLayout::horizontal;
  const auto alert = makeAlert(appearance);
  alert->addButton("Send it to me by post", [] {});
  alert->addButton("Throw it away", [] {});
  alert->showInfo("Receipt");
  const QRect first = placeOf(alert->buttons()[0]);
  const QRect second = placeOf(alert->buttons()[1]);
  EXPECT_EQ(first.top(), second.top());
  EXPECT_LT(first.right(), second.left());
  EXPECT_NEAR(first.width(), second.width(), 1);
  EXPECT_GT(alert->baseView()->width(), 240);

  window->setLayoutDirection(Qt::RightToLeft);
  EXPECT_GT(placeOf(alert->buttons()[0]).left(), placeOf(alert->buttons()[1]).right());

  window->resize(280, 600);
  EXPECT_LT(placeOf(alert->buttons()[0]).bottom(), placeOf(alert->buttons()[1]).top());
  window->resize(150, 600);
  EXPECT_GT(alert->buttons()[0]->height(), 45) << "a title that breaks makes its button higher";
}

TEST_F(KifoPopupLayoutTest, AKeyboardOnTheScreenLiftsAnAlertWithFieldsOnly) {
  const QRect keyboard(0, 300, 500, 300);
  const auto plain = makeAlert();
  plain->showInfo("No field", "", "OK");
  plain->keyboardWillShow(keyboard);
  expectCentred(*plain, window->rect());
  EXPECT_FALSE(plain->keyboardHasBeenShown());
  plain->hideView();

  const auto alert = makeAlert();
  alert->addTextView();
  alert->addTextView();
  QLineEdit* last = alert->addTextField("Name");
  alert->showEdit("Field", "", "OK");
  alert->keyboardWillShow(keyboard);
  EXPECT_TRUE(alert->keyboardHasBeenShown());
  EXPECT_LT(placeOf(alert->baseView()).bottom(), keyboard.top());
  ASSERT_TRUE(last->visibleRegion().isEmpty());
  last->setFocus();
  EXPECT_EQ(last->visibleRegion().boundingRect(), last->rect()) << "the field is scrolled to";
  alert->keyboardWillHide();
  expectCentred(*alert, window->rect());
}

TEST_F(KifoPopupLayoutTest, ACustomViewStandsAboveTheButtonsAndMayGrow) {
  const auto alert = makeAlert();
  auto* custom = new QWidget;
  custom->setMinimumSize(300, 40);
  alert->customSubview = custom;
  alert->showInfo("Custom", "", "OK");
  EXPECT_GE(custom->width(), 300);
  EXPECT_LT(placeOf(custom).bottom(), placeOf(alert->buttons().front()).top());
  const int before = placeOf(alert->baseView()).height();
  custom->setMinimumHeight(140);
  custom->updateGeometry();
  QCoreApplication::processEvents();
  EXPECT_GE(placeOf(alert->baseView()).height(), before + 60);
  EXPECT_EQ(custom->height(), 140);
}

TEST_F(KifoPopupLayoutTest, TitlesAreNeverLostOnTheirButtons) {
  const auto alert = makeAlert();
  alert->addButton("White on white", Qt::white, Qt::white, {}, [] {});
  alert->addButton("Black on navy", QColor(0, 0, 60), Qt::black, {}, [] {});
  alert->addButton("Clear", Qt::yellow, Qt::transparent, {}, [] {});
  std::vector<double> contrasts;
  const auto measure = [&] {
    for (const KifoButton* button : alert->buttons()) {
      contrasts.push_back(contrastRatio(button->look().text, button->look().background));
    }
  };
  for (int style = 0; style <= static_cast<int>(KifoPopupStyle::question); ++style) {
    const auto each = static_cast<KifoPopupStyle>(style);
    alert->showTitle("Colours", "", each, "Default colours");
    measure();
    alert->showTitle("Colours", "", each, "Given colours", {}, 0xFFFF00, 0xFFFFFF);
    measure();
  }
  EXPECT_THAT(contrasts, Each(Ge(3.0)));
  const auto alone = makeAlert();
  alone->showTitle("Colours", "", KifoPopupStyle::info, "Fine as it is", {}, 0x000000, 0xABCDEF);
  EXPECT_EQ(alone->buttons().back()->look().text, QColor(0xAB, 0xCD, 0xEF));
}

TEST_F(KifoPopupLayoutTest, AStyleSheetForAllOfTheHostsWidgetsDoesNotReachTheCard) {
  const auto draw = [this] {
    const auto alert = makeAlert();
    alert->addTextField("Name");
    alert->datas = {{"Coffee", "2.40"}};
    alert->showInfo("Sheet", "Text", "OK");
    QApplication::focusWidget()->clearFocus();
    const QImage picture = window->grab(placeOf(alert->baseView())).toImage();
    alert->hideView();
    return picture;
  };
  const QImage plain = draw();
  window->setStyleSheet(
      "QWidget { background: black; color: white; font: 22px; } QLabel { padding: 9px; }"
      "QPushButton { min-width: 300px; min-height: 90px; } QLineEdit { min-height: 60px; }");
  const QImage styled = draw();
  ASSERT_EQ(styled.size(), plain.size());
  // What lies around the circle shows the window, which did change.
  const QRect card = plain.rect().adjusted(2, 80, -2, -2);
  EXPECT_EQ(styled.copy(card), plain.copy(card));
}

TEST_F(KifoPopupLayoutTest, ATitleMayShrinkToStayOnOneLine) {
  KifoAppearance appearance;
  const QString title = "A title that is a little too long";
  const auto heightWith = [&](double scale) {
    appearance.kTitleMinimumScaleFactor = scale;
    const auto alert = makeAlert(appearance);
    alert->showInfo(title, "", "OK");
    const int height = alert->labelTitle()->height();
    alert->hideView();
    return height;
  };
  EXPECT_GT(heightWith(1.0), 45);
  EXPECT_LT(heightWith(0.5), 35);
}

TEST_F(KifoPopupLayoutTest, AListRowThatDoesNotFitPutsItsValueBelow) {
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    window->setLayoutDirection(direction);
    const auto alert = makeAlert();
    alert->headerStr = "Order 1042";
    alert->datas = {{"Coffee", "2.40"}, {"Address", "12 Harbour Street, third floor, ring twice"}};
    alert->showInfo("List", "", "OK");
    std::map<QString, QRect> places;
    for (const QLabel* label : alert->contentView()->findChildren<QLabel*>()) {
      places[label->text()] = placeOf(label);
    }
    EXPECT_LT(places["Order 1042"].bottom(), places["Coffee"].top());
    EXPECT_EQ(places["Coffee"].top(), places["2.40"].top());
    const bool mirrored = direction == Qt::RightToLeft;
    EXPECT_LT(places[mirrored ? "2.40" : "Coffee"].right(),
              places[mirrored ? "Coffee" : "2.40"].left());
    EXPECT_LE(places["Address"].bottom(), places[alert->datas[1].value].top());
    EXPECT_LT(places[alert->datas[1].value].bottom(), placeOf(alert->buttons().front()).top());
    alert->hideView();
  }
}

TEST_F(KifoPopupLayoutTest, AListThatKeepsItsSizeIsLaidOutAnewAllTheSame) {
  const auto alert = makeAlert();
  alert->headerStr = "Order 1042";
  alert->datas = {{"Coffee", "2.40"}, {"Tea", "1.90"}};
  alert->showInfo("List", "", "OK");
  const auto places = placesInList(*alert);
  const QRect list = listOf(*alert)->rect();
  alert->showInfo("List", "", "OK");
  EXPECT_EQ(placesInList(*alert), places) << "shown again";
  alert->addButton("More", [] {});
  EXPECT_EQ(placesInList(*alert), places) << "with a further button";

  window->setLayoutDirection(Qt::RightToLeft);
  for (const auto& [text, place] : placesInList(*alert)) {
    EXPECT_EQ(place, QStyle::visualRect(Qt::RightToLeft, list, places.at(text)))
        << text.toStdString();
  }
  window->setLayoutDirection(Qt::LeftToRight);
  EXPECT_EQ(placesInList(*alert), places) << "turned back";
  ASSERT_EQ(listOf(*alert)->rect(), list);
}

}  // namespace
}  // namespace kifo
