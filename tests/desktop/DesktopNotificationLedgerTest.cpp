#include "platform/qt/DesktopNotificationLedger.h"

#include <gmock/gmock.h>

namespace kifo {
namespace {

using ::testing::ElementsAre;
using ::testing::Field;

constexpr std::uint32_t DISMISSED = 2;

DesktopNotification notification(const std::string& identifier) {
  auto content = std::make_shared<NotificationContent>();
  content->title = identifier;
  return {identifier, std::move(content), {{"b0", "Button"}}};
}

TEST(DesktopNotificationLedger, ADismissalStandsUnlessAnActionFollowsIt) {
  DesktopNotificationLedger ledger;
  ledger.shown(1, notification("left"));
  ledger.shown(2, notification("clicked"));
  const auto left = ledger.closed(1, DISMISSED);
  const auto clicked = ledger.closed(2, DISMISSED);
  ASSERT_TRUE(left && clicked);
  EXPECT_EQ(ledger.actionInvoked(2, "kifo-0")->actionIdentifier, "b0");
  EXPECT_EQ(DesktopNotificationLedger::settle(*left)->title, "left");
  EXPECT_EQ(DesktopNotificationLedger::settle(*clicked), nullptr);
}

TEST(DesktopNotificationLedger, WhatWasClosedIsRememberedForAWhileAndNotForEver) {
  DesktopNotificationLedger ledger;
  for (std::uint32_t id = 1; id <= 65; ++id) {
    ledger.shown(id, notification(std::to_string(id)));
    ledger.closed(id, 1);
  }
  EXPECT_FALSE(ledger.actionInvoked(1, "default"));
  EXPECT_TRUE(ledger.actionInvoked(2, "default"));
}

TEST(DesktopNotificationLedger, ANumberThatIsGivenAgainBelongsToTheNewNotification) {
  DesktopNotificationLedger ledger;
  ledger.shown(1, notification("old"));
  ledger.actionInvoked(1, "default");
  ledger.shown(1, notification("new"));
  EXPECT_EQ(ledger.idOf("new"), 1U);
  EXPECT_EQ(ledger.actionInvoked(1, "default")->content->title, "new");
}

TEST(DesktopNotificationLedger, WhatIsStillOpenIsHandedBackInTheOrderOfItsShowing) {
  DesktopNotificationLedger ledger;
  ledger.shown(7, notification("clicked"));
  ledger.shown(8, notification("first"));
  ledger.shown(9, notification("second"));
  ledger.shown(10, notification("first"));  // shown anew under another number
  ledger.actionInvoked(7, "default");
  EXPECT_THAT(ledger.takeOpen(), ElementsAre(Field(&DesktopNotification::identifier, "second"),
                                             Field(&DesktopNotification::identifier, "first")));
  EXPECT_FALSE(ledger.knows(9));
}

}  // namespace
}  // namespace kifo
