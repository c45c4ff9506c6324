// Popups by keyboard alone.
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>

#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

using ::testing::ElementsAre;

class FocusTest : public PopupTest {
 protected:
  FocusTest() : hostField(new QLineEdit(host.get())) {
    host->setCentralWidget(hostField);
    hostField->show();
    hostField->setFocus();
  }

  static QString focused() { return QApplication::focusWidget()->objectName(); }

  static std::vector<std::string> tabRound(int steps) {
    std::vector<std::string> names;
    for (int i = 0; i < steps; ++i) {
      key(Qt::Key_Tab);
      names.push_back(focused().toStdString());
    }
    return names;
  }

  QLineEdit* hostField;
};

TEST_F(FocusTest, EscapeClosesFromEverywhereAsTheCloseButtonDoesAndTheFocusReturns) {
  int triggered = 0;
  const QShortcut escape(QKeySequence(Qt::Key_Escape), host.get(), [&] { ++triggered; });
  for (int steps = 0; steps < 4; ++steps) {
    campaign("SCORE");
    item->maxScore = 3;
    item->defaultFreeText = DefaultFreeText{};
    present();
    tabRound(steps);
    key(Qt::Key_Escape);
    settle();
    EXPECT_EQ(closings, steps + 1);
    EXPECT_EQ(reporter->reports.size(), static_cast<std::size_t>(steps + 1));
    EXPECT_EQ(QApplication::focusWidget(), hostField);
  }
  present();
  delete host->takeCentralWidget();  // which had the focus before
  key(Qt::Key_Escape);
  settle();
  EXPECT_EQ(closings, 5);
  EXPECT_EQ(triggered, 0) << "the host's shortcuts on a popup's keys wait";
}

TEST_F(FocusTest, OnlyWhatLiesAboveThePopupMayTakeTheFocus) {
  campaign("OPEN_ENDED");
  present();
  tabRound(1);
  hostField->setFocus();
  EXPECT_EQ(focused(), "textField");
  auto* onTop = new QPushButton(host.get());
  onTop->show();
  onTop->setFocus();
  EXPECT_EQ(QApplication::focusWidget(), onTop);
}

TEST_F(FocusTest, ATallPanelScrollsByKeyboardBelowACloseButtonThatStays) {
  host->resize(320, 480);
  campaign("POPUP");
  request->preferences.detailText = std::string(3000, 'x');
  present();
  QScrollBar* bar = elements().panelScroll->verticalScrollBar();
  const QRect close = elements().closeButton->geometry();
  key(Qt::Key_PageDown);
  EXPECT_GT(bar->value(), 100);
  key(Qt::Key_Up);
  EXPECT_LT(bar->value(), 400);
  EXPECT_EQ(elements().closeButton->geometry(), close);
  EXPECT_TRUE(popup->rect().contains(close));
}

}  // namespace
}  // namespace kifo::testing
