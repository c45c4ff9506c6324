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

}  // namespace
}  // namespace kifo::testing
