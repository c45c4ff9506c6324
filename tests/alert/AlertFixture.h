#pragma once

#include <gmock/gmock.h>

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QWidget>
#include <memory>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertOverlay.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopup.h"
#include "testing/FakePlatform.h"

namespace kifo {

/// A window of the host's with a field that has the focus, and alerts over it that do not move
/// unless a test wants them to.
class AlertFixture : public ::testing::Test {
 protected:
  AlertFixture() : window(std::make_unique<QWidget>()), field(new QLineEdit(window.get())) {
    window->resize(500, 600);
    window->show();
    window->activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
    field->setFocus();
  }

  /// Hides what is still shown.
  ~AlertFixture() override {
    for (const auto& alert : alerts_) {
      if (const auto shown = alert.lock()) shown->hideView();
    }
  }

  std::shared_ptr<KifoPopup> makeAlert(KifoAppearance appearance = {}) {
    auto alert = std::make_shared<KifoPopup>(std::move(appearance));
    alert->hostWindow = window.get();
    alert->motion.reduced = true;
    alerts_.push_back(alert);
    return alert;
  }

  std::vector<AlertOverlay*> overlays() const {
    std::vector<AlertOverlay*> shown;
    for (auto* overlay : window->findChildren<AlertOverlay*>(Qt::FindDirectChildrenOnly)) {
      if (overlay->isVisible()) shown.push_back(overlay);
    }
    return shown;
  }

  static void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
  /// A click into the corner of the window, where no card is.
  void clickBackground() const {
    QTest::mouseClick(overlays().back(), Qt::LeftButton, {}, QPoint(3, 3));
  }
  static void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }
  /// Waits until an alert that moves has come.
  static void waitUntilCome(const KifoPopup& alert) {
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return alert.baseView()->graphicsEffect() == nullptr; }, 20000));
  }
  /// Lets what was put off for a safer moment happen.
  static void settle() {
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
  }

  testing::InstalledFakePlatform fake;
  std::unique_ptr<QWidget> window;
  QLineEdit* field;

 private:
  std::vector<std::weak_ptr<KifoPopup>> alerts_;
};

}  // namespace kifo
