#pragma once

#include <gmock/gmock.h>

#include <QApplication>
#include <QBuffer>
#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <QMainWindow>
#include <QMouseEvent>
#include <QPointer>
#include <QTest>
#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoders.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/CustomSlider.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/FreeTextField.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoEmojiCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoPopupCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoSurveyCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/OptionButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PageIndicator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindowView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupCarousel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupEmojiRow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupImageView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupListView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupPanel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/CloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"
#include "testing/FakePlatform.h"

namespace kifo::testing {

/// Keeps what a popup reports.
class RecordingReporter : public InAppReporter {
 public:
  struct Report {
    std::shared_ptr<AppCommunicationItem> item;
    InAppAnswer answer;
    std::shared_ptr<ViewController> controller;
    std::optional<std::string> pageName;
  };

  void opened(std::shared_ptr<AppCommunicationItem>, std::shared_ptr<ViewController>,
              std::optional<std::string>) override {}
  void answered(std::shared_ptr<AppCommunicationItem> item, InAppAnswer answer,
                std::shared_ptr<ViewController> controller,
                std::optional<std::string> pageName) override {
    reports.push_back(
        {std::move(item), std::move(answer), std::move(controller), std::move(pageName)});
  }

  std::vector<Report> reports;
};

/// Presses at one place of `widget`, moves to the other in two steps and lets go there.
inline void drag(QWidget* widget, QPoint from, QPoint to) {
  const QPoint origin =
      widget->mapToGlobal(QPoint());  // the widget may scroll away under the pointer
  const auto send = [&](QEvent::Type type, QPoint at, Qt::MouseButton button,
                        Qt::MouseButtons buttons) {
    QMouseEvent event(type, QPointF(at), QPointF(origin + at), button, buttons, Qt::NoModifier);
    QCoreApplication::sendEvent(widget, &event);
  };
  send(QEvent::MouseButtonPress, from, Qt::LeftButton, Qt::LeftButton);
  send(QEvent::MouseMove, (from + to) / 2, Qt::NoButton, Qt::LeftButton);
  send(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton);
  send(QEvent::MouseButtonRelease, to, Qt::LeftButton, Qt::NoButton);
}

class Screen : public ViewController {
 public:
  [[nodiscard]] std::string className() const override { return "HomeScreen"; }
};

inline std::shared_ptr<AppCommunicationItemButton> option(
    std::optional<std::string> id, std::string text, std::optional<std::string> color = {},
    std::optional<std::string> textColor = {}) {
  auto button = std::make_shared<AppCommunicationItemButton>();
  button->id = std::move(id);
  button->text = std::move(text);
  button->color = std::move(color);
  button->textColor = std::move(textColor);
  return button;
}

/// The bytes of a picture in one of Qt's formats.
inline std::string pictureBytes(QSize size, QColor color, const char* format = "PNG") {
  QImage image(size, QImage::Format_RGB32);
  image.fill(color);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  image.save(&buffer, format);
  return bytes.toStdString();
}

/// A host's window and a campaign to show over it. The campaign is described in `request`; what is
/// not set is absent. All of a popup's pieces can be used with this header alone.
class PopupTest : public ::testing::Test {
 protected:
  PopupTest() {
    item->uuid = "uuid-1";
    request->preferences.appCommunicationItem = item;
    request->preferences.controller = screen;
    request->preferences.pageName = "home";
    request->reporter = reporter;
    options.reducedMotion = true;
    host->resize(414, 800);
    host->show();
    EXPECT_TRUE(QTest::qWaitForWindowActive(host.get()));
  }

  ~PopupTest() override {
    host.reset();
    settle();
  }

  /// The campaign as the popup manager hands it over.
  void campaign(const std::string& type) {
    item->type = type;
    PopupPreferences& p = request->preferences;
    p.type = type;
    p.title = "Your opinion counts";
    p.detailText = "It takes less than a minute and helps us a lot.";
    p.titleColor = p.detailTextColor = p.questionColor = colorFromHex("1C1C1E");
    p.backgroundColor = Color::white();
    item->bgColor = "#FFFFFF";
  }

  void submitButton(const std::string& text = "Send") {
    item->submitButton = option("submit", text, "#0A5CD8", "#FFFFFF");
    request->preferences.submitButton = item->submitButton;
  }

  /// `count` choices with the ids "c1", "c2", …
  void choices(int count) {
    for (int i = 1; i <= count; ++i) {
      const std::string number = std::to_string(i);
      request->preferences.choices.push_back(option("c" + number, "Choice " + number));
    }
  }

  PopUpWindow* present() {
    popup = new PopUpWindow(request, options, host.get());
    QObject::connect(popup, &PopUpWindow::closed, host.get(), [this] { ++closings; });
    popup->present();
    return popup;
  }

  void dismiss() {
    popup->dismissView();
    settle();
  }

  /// Lets everything that is due happen: queued answers, decoding, layouts, deletions.
  void settle() {
    fake.runUntilIdle();
    for (int i = 0; i < 3; ++i) {
      QCoreApplication::processEvents();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
  }

  const PopupElements& elements() { return popup->popUpWindowView()->elements(); }
  PopupButton* button(int row) { return popup->findChildren<KifoPopupCell*>().at(row)->titleLbl(); }
  KifoSurveyCell* choice(int row) { return popup->findChildren<KifoSurveyCell*>().at(row); }

  static void click(QWidget* widget) { QTest::mouseClick(widget, Qt::LeftButton); }
  void close() {
    click(elements().closeButton);
    settle();
  }
  /// Presses `key` wherever the focus is.
  static void key(Qt::Key code, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), code, modifiers);
  }
  /// Also what other threads have under way.
  void finishDecoding() {
    settle();
    ImageDecoders::waitForDone();
    settle();
  }

  InstalledFakePlatform fake;
  std::shared_ptr<RecordingReporter> reporter = std::make_shared<RecordingReporter>();
  std::shared_ptr<Screen> screen = std::make_shared<Screen>();
  std::shared_ptr<AppCommunicationItem> item = std::make_shared<AppCommunicationItem>();
  std::shared_ptr<PopupRequest> request = std::make_shared<PopupRequest>();
  PopUpOptions options;
  std::unique_ptr<QMainWindow> host = std::make_unique<QMainWindow>();
  QPointer<PopUpWindow> popup;
  int closings = 0;
};

}  // namespace kifo::testing
