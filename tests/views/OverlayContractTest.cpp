// What popups and alerts promise alike, whoever shows them.
#include <QAccessible>
#include <QLineEdit>
#include <QShortcut>
#include <QTimer>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupPalette.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopup.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

/// A campaign with one button over `host`.
class Popup {
 public:
  Popup(QWidget* host, std::function<void()> action, bool moves = false) {
    auto request = std::make_shared<PopupRequest>();
    PopupPreferences& p = request->preferences;
    p.type = "POPUP";
    p.title = "Title";
    p.detailText = "Text";
    p.buttons = {option("b1", "Yes", "#0A5CD8", "#FFFFFF")};
    p.appCommunicationItem = std::make_shared<AppCommunicationItem>();
    request->actionItem = [action = std::move(action)](auto) { action(); };
    PopUpOptions options;
    options.reducedMotion = !moves;
    options.durations.fade = std::chrono::hours(1);
    window_ = new PopUpWindow(request, options, host);
    window_->present();
  }
  static constexpr QAccessible::Role role = QAccessible::Dialog;

  QWidget* overlay() { return window_; }
  auto animations() { return window_->findChildren<QVariantAnimation*>(); }
  QAbstractButton* button() { return window_->findChild<KifoPopupCell*>()->titleLbl(); }
  QRect card() { return window_->popUpWindowView()->elements().popupView->geometry(); }
  bool isOpen() { return window_ && !window_->isDismissing(); }
  void close() { window_->dismissView(); }

 private:
  QPointer<PopUpWindow> window_;
};

/// An alert with one button over `host`.
class Alert {
 public:
  Alert(QWidget* host, std::function<void()> action, bool moves = false) {
    alert_->hostWindow = host;
    alert_->motion.reduced = !moves;
    alert_->motion.showDuration = std::chrono::hours(1);
    alert_->appearance.showCircularIcon = false;
    alert_->addButton("Yes", std::move(action));
    alert_->showInfo("Title", "Text");
  }
  static constexpr QAccessible::Role role = QAccessible::AlertMessage;

  QWidget* overlay() { return alert_->baseView()->parentWidget(); }
  auto animations() { return alert_->findChildren<QVariantAnimation*>(); }
  QAbstractButton* button() { return alert_->buttons().front(); }
  QRect card() { return alert_->baseView()->geometry(); }
  bool isOpen() { return alert_->isShowing(); }
  void close() { alert_->hideView(); }

 private:
  std::shared_ptr<KifoPopup> alert_ = std::make_shared<KifoPopup>();
};

template <class Shown>
class OverlayContractTest : public ::testing::Test {
 protected:
  OverlayContractTest() : field(new QLineEdit(host.get())), other(new QLineEdit(host.get())) {
    host->resize(500, 600);
    other->move(0, 100);
    host->show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(host.get()));
    field->setFocus();
  }
  ~OverlayContractTest() override { settle(); }

  static void settle() {
    for (int i = 0; i < 3; ++i) {
      QCoreApplication::processEvents();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
  }
  static void key(Qt::Key code) { QTest::keyClick(QApplication::focusWidget(), code); }

  InstalledFakePlatform fake;
  std::unique_ptr<QWidget> host = std::make_unique<QWidget>();
  QLineEdit* field;
  QLineEdit* other;
};

using Overlays = ::testing::Types<Popup, Alert>;
TYPED_TEST_SUITE(OverlayContractTest, Overlays);

TYPED_TEST(OverlayContractTest, TheFocusStaysInsideAndGoesBackToAFieldThatIsStillThere) {
  TypeParam shown(this->host.get(), [] {});
  const auto isInside = [&] {
    QWidget* now = QApplication::focusWidget();
    return now == shown.overlay() || shown.overlay()->isAncestorOf(now);
  };
  EXPECT_TRUE(isInside());
  this->other->setFocus();
  EXPECT_TRUE(isInside());
  for (int i = 0; i < 5; ++i) {
    this->key(Qt::Key_Tab);
    EXPECT_TRUE(isInside());
  }
  shown.close();
  EXPECT_EQ(QApplication::focusWidget(), this->field);
  this->settle();

  TypeParam again(this->host.get(), [] {});
  delete this->field;
  again.close();
  EXPECT_EQ(QApplication::focusWidget(), nullptr);
}

TYPED_TEST(OverlayContractTest, WhatIsTypedAndTheHostsShortcutsWaitUntilItIsClosed) {
  int fired = 0;
  const QShortcut shortcut(QKeySequence(Qt::Key_Return), this->host.get(), [&] { ++fired; });
  TypeParam shown(this->host.get(), [] {});
  QTest::keyClicks(QApplication::focusWidget(), "abc");
  EXPECT_EQ(this->field->text(), "");
  this->key(Qt::Key_Return);
  EXPECT_EQ(fired, 0);
  shown.close();
}

TYPED_TEST(OverlayContractTest, ItCoversItsHostWhateverSizeThatHas) {
  TypeParam shown(this->host.get(), [] {});
  for (const QSize size : {QSize(1400, 400), QSize(300, 500)}) {
    this->host->resize(size);
    this->settle();
    EXPECT_EQ(shown.overlay()->geometry(), this->host->rect());
    EXPECT_TRUE(shown.overlay()->rect().contains(shown.card()));
  }
  shown.close();
}

TYPED_TEST(OverlayContractTest, ASecondPressWhileTheHostsCallbackRunsAnswersNothing) {
  int answers = 0;
  QAbstractButton* button = nullptr;
  TypeParam shown(this->host.get(), [&] {
    if (++answers > 1) return;
    QEventLoop nested;
    QTimer::singleShot(0, &nested, [&] {
      button->click();
      button->click();
      nested.quit();
    });
    nested.exec();
  });
  button = shown.button();
  button->click();
  EXPECT_EQ(answers, 1);
  EXPECT_FALSE(shown.isOpen());
}

TYPED_TEST(OverlayContractTest, ACallbackMayDestroyTheHostByAClickOrByEnter) {
  for (const bool byKeyboard : {false, true}) {
    if (!this->host) {
      this->host = std::make_unique<QWidget>();
      this->host->show();
      ASSERT_TRUE(QTest::qWaitForWindowActive(this->host.get()));
    }
    TypeParam shown(this->host.get(), [this] { this->host.reset(); });
    const QPointer<QWidget> overlay = shown.overlay();
    if (byKeyboard) {
      QTest::keyClick(shown.button(), Qt::Key_Return);
    } else {
      QTest::mouseClick(shown.button(), Qt::LeftButton);
    }
    this->settle();
    EXPECT_TRUE(overlay.isNull());
  }
}

TYPED_TEST(OverlayContractTest, AssistiveTechnologyKnowsItByItsTitleAndText) {
  TypeParam shown(this->host.get(), [] {});
  QAccessibleInterface* told = QAccessible::queryAccessibleInterface(shown.overlay());
  EXPECT_EQ(told->role(), TypeParam::role);
  EXPECT_TRUE(told->state().modal);
  EXPECT_EQ(told->text(QAccessible::Name), "Title");
  EXPECT_EQ(told->text(QAccessible::Description), "Text");
  EXPECT_EQ(QAccessible::queryAccessibleInterface(shown.button())->text(QAccessible::Name), "Yes");
  shown.close();
}

/// Pixels of the card, away from its texts, with the overlay half faded in.
TYPED_TEST(OverlayContractTest, HalfwayThroughAFadeNoShadowIsSeenInsideTheCard) {
  this->host->setStyleSheet("background: white");
  TypeParam shown(
      this->host.get(), [] {}, true);
  int running = 0;
  for (auto* animation : shown.animations()) {
    if (animation->state() != QAbstractAnimation::Running) continue;
    animation->setCurrentTime(animation->duration() / 3);
    ++running;
  }
  ASSERT_EQ(running, 1);
  this->settle();
  const QRect card = shown.card();
  const QImage seen = this->host->grab().toImage();
  const QColor inside = seen.pixelColor(card.left() + 22, card.bottom() - 4);
  for (const QPoint corner : {card.topLeft() + QPoint(6, 6), card.topRight() + QPoint(-6, 6),
                              card.bottomLeft() + QPoint(6, -6), card.bottomRight() - QPoint(6, 6),
                              QPoint(card.left() + 2, card.center().y())}) {
    EXPECT_NEAR(seen.pixelColor(corner).lightness(), inside.lightness(), 2)
        << corner.x() << "," << corner.y();
  }
  shown.close();
}

/// Contrast of the focus ring's outer line with what lies on either side of it, along the middle of
/// the control's left edge.
void expectSeen(QAbstractButton* button) {
  const QImage off = button->grab().toImage();
  button->setFocus(Qt::TabFocusReason);
  QCoreApplication::processEvents();
  const QImage on = button->grab().toImage();
  const int y = on.height() / 2;
  int first = 0;
  while (first < on.width() &&
         contrastRatio(on.pixelColor(first, y), off.pixelColor(first, y)) < 1.5)
    ++first;
  ASSERT_LT(first, on.width() / 2) << "no ring";
  const QColor line = on.pixelColor(first + 1, y);
  EXPECT_GE(contrastRatio(line, on.pixelColor(std::max(first - 2, 0), y)), 3.0);
  EXPECT_GE(contrastRatio(line, on.pixelColor(first + 3, y)), 3.0);
}

TYPED_TEST(OverlayContractTest, TheFocusRingStandsOutFromBothSidesOfIt) {
  this->host->setAttribute(Qt::WA_KeyboardFocusChange);
  TypeParam shown(this->host.get(), [] {});
  shown.overlay()->setFocus();
  expectSeen(shown.button());
  shown.close();
}

}  // namespace
}  // namespace kifo::testing
