#include <QAccessible>

#include "tests/views/Campaigns.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {

std::vector<QPointer<QObject>> alerts;

}  // namespace kifo::testing

/// What the SDK announces. Qt's own function, for which this one stands in, passes nothing on for
/// as long as no assistive technology is connected.
void QAccessible::updateAccessibility(QAccessibleEvent* event) {
  if (event->type() == QAccessible::Alert) kifo::testing::alerts.emplace_back(event->object());
}

namespace kifo::testing {
namespace {

class AccessibilityTest : public PopupTest {
 protected:
  AccessibilityTest() { alerts.clear(); }

  static QAccessibleInterface* of(QWidget* widget) {
    return QAccessible::queryAccessibleInterface(widget);
  }
  static QString name(QWidget* widget) { return of(widget)->text(QAccessible::Name); }
};

TEST_F(AccessibilityTest, ThePopupIsAnnouncedOnce) {
  campaign("POPUP");
  present();
  settle();
  ASSERT_EQ(alerts.size(), 1u);
  EXPECT_EQ(alerts[0].data(), popup.data());
}

TEST_F(AccessibilityTest, NothingThatTakesTheFocusIsWithoutNameOrRole) {
  for (const Campaign& campaign : campaigns()) {
    SCOPED_TRACE(campaign.name);
    campaign.describe(*request);
    present();
    for (QWidget* widget : popup->findChildren<QWidget*>()) {
      if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible()) continue;
      EXPECT_FALSE(name(widget).trimmed().isEmpty()) << widget->objectName().toStdString();
      EXPECT_NE(of(widget)->role(), QAccessible::Client) << widget->objectName().toStdString();
    }
    dismiss();
  }
}

TEST_F(AccessibilityTest, OptionsWithoutATextAreNumbered) {
  campaign("EMOJI");
  request->preferences.choices = {option("a", ""), option("b", " ")};
  item->submitButton = request->preferences.submitButton = option("s", "");
  present();
  const auto& cells = elements().emojiCollectionView->cells();
  EXPECT_EQ(name(cells[0]->emojiButton()), "Option 1 of 2");
  EXPECT_EQ(name(cells[1]->emojiButton()), "Option 2 of 2");
  EXPECT_EQ(name(elements().submitButton), "Submit");
}

TEST_F(AccessibilityTest, AnOptionCanBeChosenAndASubmitButtonSaysWhatItWaitsFor) {
  campaign("SURVEY");
  choices(2);
  submitButton();
  present();
  auto* second = of(choice(1)->selectButton());
  EXPECT_EQ(second->role(), QAccessible::RadioButton);
  EXPECT_FALSE(second->state().checked);
  EXPECT_EQ(of(elements().submitButton)->text(QAccessible::Description), "Choose an answer first");
  second->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
  EXPECT_TRUE(second->state().checked);
  EXPECT_EQ(popup->state().selectActionItem, request->preferences.choices[1]);
  EXPECT_EQ(of(elements().submitButton)->text(QAccessible::Description), "");
}

TEST_F(AccessibilityTest, TheSliderTellsItsRangeAndTakesAValue) {
  campaign("SCORE");
  request->preferences.questionText = "Would you recommend us?";
  item->minScore = 2;
  item->maxScore = 9;
  present();
  auto* slider = of(elements().slider);
  EXPECT_EQ(slider->role(), QAccessible::Slider);
  EXPECT_EQ(name(elements().slider), "Would you recommend us?");
  ASSERT_TRUE(slider->valueInterface());
  EXPECT_EQ(slider->valueInterface()->minimumValue().toInt(), 2);
  EXPECT_EQ(slider->valueInterface()->maximumValue().toInt(), 9);
  slider->valueInterface()->setCurrentValue(7);
  EXPECT_EQ(popup->popUpWindowView()->sliderValue(), 7.f);
  EXPECT_EQ(slider->valueInterface()->currentValue().toInt(), 7);
}

TEST_F(AccessibilityTest, ABodyWithAnActionIsALinkThatCanBePressed) {
  campaign("POPUP");
  item->action = std::make_shared<AppCommunicationItemAction>();
  int followed = 0;
  request->actionBodyItem = [&](auto) { ++followed; };
  present();
  EXPECT_EQ(of(elements().popupView)->role(), QAccessible::Link);
  of(elements().popupView)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(followed, 1);
}

}  // namespace
}  // namespace kifo::testing
