// Where the parts of an alert lie, in logical pixels of the window.
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "tests/alert/AlertFixture.h"

namespace kifo::testing {
namespace {

template <class Toolkit>
class AlertLayoutTest : public AlertFixture<Toolkit> {
 protected:
  void expectCentred(const typename Toolkit::Alert& alert) {
    const QPoint middle = this->toolkit.card(alert).center();
    EXPECT_NEAR(middle.x(), this->windowBox().center().x(), 1);
    EXPECT_NEAR(middle.y(), this->windowBox().center().y(), 1);
  }
  /// One stands above the other, and so on.
  static void expectApart(const std::vector<QRect>& boxes) {
    for (std::size_t i = 1; i < boxes.size(); ++i) {
      EXPECT_FALSE(boxes[i].isEmpty()) << i;
      EXPECT_LE(boxes[i - 1].bottom(), boxes[i].top()) << i;
    }
  }
  std::map<QString, QRect> places(const QStringList& texts) {
    std::map<QString, QRect> found;
    for (const QString& each : texts) found[each] = this->textBox(each);
    return found;
  }
};
TYPED_TEST_SUITE(AlertLayoutTest, AlertToolkits);

const QString kLongText = QString("The payment terminal does not answer. ").repeated(12).trimmed();

TYPED_TEST(AlertLayoutTest, TheCardStandsInTheMiddleOfTheWindowAndFollowsIt) {
  const auto alert = this->makeAlert();
  alert->showInfo("Middle", "Text", "OK");
  EXPECT_EQ(this->toolkit.card(*alert).width(), 240);
  for (const QSize size : {QSize(500, 600), QSize(1400, 400), QSize(300, 500)}) {
    this->toolkit.resize(size);
    this->settle();
    this->expectCentred(*alert);
  }
  alert->hideView();

  const auto notification = this->makeAlert();
  notification->type = ScreenType::notification;
  notification->showInfo("Above", "Text", "OK");
  EXPECT_LE(this->toolkit.card(*notification).top(), 16);
}

TYPED_TEST(AlertLayoutTest, InAWindowOfAnySizeTheCardFitsAndEveryButtonCanBeReached) {
  const QString title = "A rather long title for a small window";
  const auto alert = this->makeAlert();
  alert->addTextField("Name");
  alert->addButton("Yes", [] {});
  this->toolkit.resize({200, 160});
  alert->showError(title, kLongText, "No");
  for (const QSize size : {QSize(120, 90), QSize(240, 160), QSize(320, 240), QSize(800, 480)}) {
    this->toolkit.resize(size);
    this->settle();
    this->user.tabTo("Name");
    this->user.tabTo("No");
    this->expectApart({this->textBox(title), this->textBox(kLongText), this->fieldBox("Name"),
                       this->box("Yes"), this->box("No")});
    const QRect card = this->toolkit.card(*alert);
    EXPECT_TRUE(this->windowBox().contains(card));
    EXPECT_TRUE(card.contains(this->box("No").center())) << "what has the focus is scrolled to";
    const QRect seen = this->box("No").intersected(card);
    EXPECT_GE(seen.height(), std::min(20, size.height() / 4));
  }
}

TYPED_TEST(AlertLayoutTest, ALongTextMakesTheCardWiderUpToALimit) {
  this->toolkit.resize({1400, 900});
  const auto alert = this->makeAlert();
  const auto responder = alert->showInfo("Width", "Short", "OK");
  const int narrow = this->toolkit.card(*alert).width();
  responder.setSubTitle(kLongText);
  this->settle();
  EXPECT_GT(this->toolkit.card(*alert).width(), narrow);
  EXPECT_LE(this->toolkit.card(*alert).width(), 400);
}

TYPED_TEST(AlertLayoutTest, ButtonsStandInARowWhereItFitsAndInAColumnWhereItDoesNot) {
  const auto alert = this->makeAlert({.buttonsLayout = KifoAlertButtonLayout::horizontal});
  const QString post = "Send it to me by post";
  const QString away = "Throw it away";
  alert->addButton(post, [] {});
  alert->addButton(away, [] {});
  alert->showInfo("Receipt");
  EXPECT_EQ(this->box(post).top(), this->box(away).top());
  EXPECT_LT(this->box(post).right(), this->box(away).left());
  EXPECT_NEAR(this->box(post).width(), this->box(away).width(), 1);
  EXPECT_GT(this->toolkit.card(*alert).width(), 240);

  this->toolkit.setDirection(Qt::RightToLeft);
  this->settle();
  EXPECT_GT(this->box(post).left(), this->box(away).right());

  this->toolkit.resize({280, 600});
  this->settle();
  EXPECT_LT(this->box(post).bottom(), this->box(away).top());
  this->toolkit.resize({150, 600});
  this->settle();
  EXPECT_GT(this->box(post).height(), 45) << "a title that breaks makes its button higher";
}

TYPED_TEST(AlertLayoutTest, AKeyboardOnTheScreenLiftsAnAlertWithFieldsOnly) {
  const QRect keyboard(0, 300, 500, 300);
  const auto plain = this->makeAlert();
  plain->showInfo("No field", "", "OK");
  plain->keyboardWillShow(keyboard);
  this->expectCentred(*plain);
  plain->hideView();

  const auto alert = this->makeAlert();
  alert->addTextView();
  alert->addTextView();
  alert->addTextField("Name");
  alert->showEdit("Field", "", "OK");
  alert->keyboardWillShow(keyboard);
  this->settle();
  const QRect card = this->toolkit.card(*alert);
  EXPECT_LT(card.bottom(), keyboard.top());
  ASSERT_FALSE(card.contains(this->fieldBox("Name")));
  this->user.tabTo("Name");
  EXPECT_TRUE(card.contains(this->fieldBox("Name"))) << "the field is scrolled to";
  alert->keyboardWillHide();
  this->settle();
  this->expectCentred(*alert);
}

TYPED_TEST(AlertLayoutTest, ACustomViewStandsAboveTheButtonsAndMayGrow) {
  const auto alert = this->makeAlert();
  this->toolkit.addCustomView(*alert);
  alert->showInfo("Custom", "", "OK");
  EXPECT_GE(this->box("Custom").width(), 300);
  EXPECT_LT(this->box("Custom").bottom(), this->box("OK").top());
  const int before = this->toolkit.card(*alert).height();
  TypeParam::growCustomView(*alert);
  this->settle();
  EXPECT_GE(this->toolkit.card(*alert).height(), before + 60);
  EXPECT_EQ(this->box("Custom").height(), 140);
}

TYPED_TEST(AlertLayoutTest, TitlesAreNeverLostOnTheirButtons) {
  const auto alert = this->makeAlert();
  alert->addButton("White on white", Qt::white, Qt::white, {}, [] {});
  alert->addButton("Black on navy", QColor(0, 0, 60), Qt::black, {}, [] {});
  alert->addButton("Clear", Qt::yellow, Qt::transparent, {}, [] {});
  std::vector<double> contrasts;
  const auto measure = [&] {
    for (const auto* button : alert->buttons()) {
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
  const auto alone = this->makeAlert();
  alone->showTitle("Colours", "", KifoPopupStyle::info, "Fine as it is", {}, 0x000000, 0xABCDEF);
  EXPECT_EQ(alone->buttons().back()->look().text, QColor(0xAB, 0xCD, 0xEF));
}

TYPED_TEST(AlertLayoutTest, ATitleMayShrinkToStayOnOneLine) {
  const QString title = "A title that is a little too long";
  const auto heightWith = [&](double scale) {
    const auto alert = this->makeAlert({.kTitleMinimumScaleFactor = scale});
    alert->showInfo(title, "", "OK");
    const int height = this->textBox(title).height();
    alert->hideView();
    return height;
  };
  EXPECT_GT(heightWith(1.0), 45);
  EXPECT_LT(heightWith(0.5), 35);
}

TYPED_TEST(AlertLayoutTest, AListRowThatDoesNotFitPutsItsValueBelow) {
  const QString address = "12 Harbour Street, third floor, ring twice";
  for (const auto direction : {Qt::LeftToRight, Qt::RightToLeft}) {
    this->toolkit.setDirection(direction);
    const auto alert = this->makeAlert();
    alert->headerStr = "Order 1042";
    alert->datas = {{"Coffee", "2.40"}, {"Address", address}};
    alert->showInfo("List", "", "OK");
    auto places = this->places({"Order 1042", "Coffee", "2.40", "Address", address});
    EXPECT_LT(places["Order 1042"].bottom(), places["Coffee"].top());
    EXPECT_EQ(places["Coffee"].top(), places["2.40"].top());
    const bool mirrored = direction == Qt::RightToLeft;
    EXPECT_LT(places[mirrored ? "2.40" : "Coffee"].right(),
              places[mirrored ? "Coffee" : "2.40"].left());
    EXPECT_LE(places["Address"].bottom(), places[address].top());
    EXPECT_LT(places[address].bottom(), this->box("OK").top());
    alert->hideView();
  }
}

TYPED_TEST(AlertLayoutTest, AListThatKeepsItsSizeIsLaidOutAnewAllTheSame) {
  const QStringList texts = {"Order 1042", "Coffee", "2.40", "Tea", "1.90"};
  const auto alert = this->makeAlert();
  alert->headerStr = "Order 1042";
  alert->datas = {{"Coffee", "2.40"}, {"Tea", "1.90"}};
  alert->showInfo("List", "", "OK");
  this->settle();
  const auto places = this->places(texts);
  alert->showInfo("List", "", "OK");
  this->settle();
  EXPECT_EQ(this->places(texts), places) << "shown again";
  this->toolkit.setDirection(Qt::RightToLeft);
  this->settle();
  const int mirror = 2 * this->toolkit.card(*alert).left() + this->toolkit.card(*alert).width() - 1;
  for (const auto& [text, place] : this->places(texts)) {
    EXPECT_NEAR(place.left(), mirror - places.at(text).right(), 1) << text.toStdString();
    EXPECT_EQ(place.top(), places.at(text).top()) << text.toStdString();
  }
  this->toolkit.setDirection(Qt::LeftToRight);
  this->settle();
  EXPECT_EQ(this->places(texts), places) << "turned back";
}

using KifoPopupLayoutTest = AlertFixture<WidgetsAlerts>;

TEST_F(KifoPopupLayoutTest, AStyleSheetForAllOfTheHostsWidgetsDoesNotReachTheCard) {
  const auto draw = [this] {
    const auto alert = makeAlert();
    alert->addTextField("Name");
    alert->datas = {{"Coffee", "2.40"}};
    alert->showInfo("Sheet", "Text", "OK");
    QApplication::focusWidget()->clearFocus();
    const QImage picture = toolkit.picture().copy(toolkit.card(*alert));
    alert->hideView();
    return picture;
  };
  const QImage plain = draw();
  QApplication::activeWindow()->setStyleSheet(
      "QWidget { background: black; color: white; font: 22px; } QLabel { "
      "padding: 9px; }"
      "QPushButton { min-width: 300px; min-height: 90px; } QLineEdit { "
      "min-height: 60px; }");
  const QImage styled = draw();
  ASSERT_EQ(styled.size(), plain.size());
  // What lies around the circle shows the window, which did change.
  const QRect card = plain.rect().adjusted(2, 80, -2, -2);
  EXPECT_EQ(styled.copy(card), plain.copy(card));
}

}  // namespace
}  // namespace kifo::testing
