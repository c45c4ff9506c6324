#pragma once

#include <gmock/gmock.h>

#include <QAccessible>
#include <QBuffer>
#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QTest>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoders.h"
#include "testing/FakePlatform.h"
#include "testing/ui/User.h"
#include "tests/support/Common.h"
#include "tests/support/HostDoubles.h"
#include "tests/views/PopupToolkit.h"

namespace kifo::testing {

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

/// A platform of fakes, on which everything that is due happens when a test says so.
class SettledTest : public ::testing::Test {
 protected:
  /// Queued answers, layouts, deletions.
  void settle() {
    fake.runUntilIdle();
    for (int i = 0; i < 4; ++i) {
      QCoreApplication::processEvents();
      QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
  }
  /// Also what other threads have under way.
  void finishDecoding() {
    settle();
    ImageDecoders::waitForDone();
    settle();
  }

  InstalledFakePlatform fake;
};

/// A host's window and a campaign to show over it. The campaign is described in `request`; what is
/// not set is absent.
class PopupFixture : public SettledTest {
 protected:
  explicit PopupFixture(std::unique_ptr<PopupToolkit> made)
      : toolkit(std::move(made)), user(toolkit->window(), [this] { return toolkit->picture(); }) {
    item->uuid = "uuid-1";
    request->preferences.appCommunicationItem = item;
    request->preferences.controller = screen;
    request->preferences.pageName = "home";
    request->reporter = reporter;
    options.reducedMotion = true;
  }

  ~PopupFixture() override {
    toolkit.reset();
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
    item->submitButton = request->preferences.submitButton =
        option("submit", text, "#0A5CD8", "#FFFFFF");
  }
  /// `count` choices with the ids "c1", "c2", …
  void choices(int count) {
    for (int i = 1; i <= count; ++i) {
      const std::string number = std::to_string(i);
      request->preferences.choices.push_back(option("c" + number, "Choice " + number));
    }
  }
  void pictures(int count) {
    for (int i = 0; i < count; ++i) {
      request->preferences.images.push_back("https://pictures.example/" + std::to_string(i));
    }
  }
  /// What a touch of the popup's body does.
  void bodyAction(const std::string& link) {
    item->action = std::make_shared<AppCommunicationItemAction>();
    item->action->link = link;
  }

  void present() { toolkit->present(request, options); }
  void present(const std::string& type) {
    campaign(type);
    present();
  }
  void dismiss() {
    toolkit->dismiss();
    settle();
  }
  void close() { click(piece("closeButton")); }
  [[nodiscard]] bool isGone() const { return toolkit->popup() == nullptr; }

  template <class Control>
  void click(Control control) {
    user.click(control);
    settle();
  }
  /// Presses at one place of the window, moves to the other in steps and lets go there.
  void drag(QPoint from, QPoint to, bool letsGo = true) {
    QTest::mousePress(&toolkit->window(), Qt::LeftButton, {}, from);
    for (int step = 1; step <= 4; ++step) {
      QTest::mouseMove(&toolkit->window(), from + (to - from) * step / 4);
    }
    if (letsGo) QTest::mouseRelease(&toolkit->window(), Qt::LeftButton, {}, to);
  }
  void clickAt(QPoint place) {
    QTest::mouseClick(&toolkit->window(), Qt::LeftButton, {}, place);
    settle();
  }
  /// Presses `key` wherever the focus is.
  void key(Qt::Key code, Qt::KeyboardModifiers modifiers = {}) {
    user.press(code, 1, modifiers);
    QCoreApplication::processEvents();
  }
  static std::string focused() {
    const QObject* object = QGuiApplication::focusObject();
    return object ? object->objectName().toStdString() : "";
  }
  std::vector<std::string> tabRound(int steps) {
    std::vector<std::string> names;
    for (int i = 0; i < steps; ++i) {
      key(Qt::Key_Tab);
      names.push_back(focused());
    }
    return names;
  }

  /// As assistive technology knows it.
  QAccessibleInterface* piece(const char* objectName, int index = 0) {
    QAccessibleInterface* found = user.object(objectName, index);
    if (!found) throw std::runtime_error(std::string("there is no ") + objectName);
    return found;
  }
  QString text(const char* objectName) { return piece(objectName)->text(QAccessible::Name); }
  /// Empty for what is not visible.
  PopupToolkit::Part part(const std::string& name, int index = 0) {
    for (const auto& each : toolkit->parts()) {
      if (each.name == name && index-- == 0) return each;
    }
    return {};
  }
  QRect box(const std::string& name, int index = 0) { return part(name, index).box; }
  /// The colour that is seen at a place of the window.
  QColor colorAt(QPoint place) {
    const QImage picture = toolkit->picture();
    return picture.pixelColor(place * picture.devicePixelRatio());
  }
  std::vector<Report>& reports() { return reporter->answers; }

  std::shared_ptr<RecordingReporter> reporter = std::make_shared<RecordingReporter>();
  std::shared_ptr<HomeScreen> screen = std::make_shared<HomeScreen>();
  std::shared_ptr<AppCommunicationItem> item = std::make_shared<AppCommunicationItem>();
  std::shared_ptr<PopupRequest> request = std::make_shared<PopupRequest>();
  PopUpOptions options;
  std::unique_ptr<PopupToolkit> toolkit;
  User user;
};

/// The same on each toolkit.
class PopupTest : public PopupFixture, public ::testing::WithParamInterface<PopupToolkit::Kind> {
 protected:
  PopupTest() : PopupFixture(GetParam().make()) {}
};

inline std::string nameOfToolkit(const ::testing::TestParamInfo<PopupToolkit::Kind>& tested) {
  return tested.param.name;
}

#define KIFO_ON_EACH_TOOLKIT(Suite) \
  INSTANTIATE_TEST_SUITE_P(Toolkits, Suite, ::testing::ValuesIn(PopupToolkit::all()), nameOfToolkit)

}  // namespace kifo::testing
