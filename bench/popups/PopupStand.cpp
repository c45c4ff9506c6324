#include "bench/popups/PopupStand.h"

#include <QLabel>
#include <QThreadPool>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Record.h"
#include "Kifo_iOS_Common_Kit/inapp/InAppReporter.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "platform/qt/QtPopupPresenter.h"
#include "platform/qt/QtWindowProvider.h"

namespace kifo::bench {
namespace {

constexpr auto kCommon = R"("uuid": "bench", "maxShowCount": 1000000, "bgColor": "FFFFFF",
    "header": {"text": "Your opinion counts", "color": "1C1C1E"},
    "text": {"text": "It takes less than a minute, and it helps us a lot.", "color": "3A3A3C"},
    "question": {"text": "How likely are you to recommend us?", "color": "1C1C1E"},
    "submitButton": {"id": "s", "text": "Send", "color": "0A5CD8", "textColor": "FFFFFF"},
    "defaultFreeText": {"questionText": "Anything to add?", "textColor": "1C1C1E"})";

std::shared_ptr<AppCommunicationItem> item(PopupType kind, const std::string& rest) {
  const std::string text =
      "{\"type\": \"" + std::string(rawValue(kind)) + "\", " + kCommon + rest + "}";
  return decode<AppCommunicationItem>(std::string_view(text));
}

constexpr auto kButtons = R"(, "buttons": [
    {"id": "b1", "text": "Show me the offers", "color": "0A5CD8", "textColor": "FFFFFF"},
    {"id": "b2", "text": "Remind me later"}, {"id": "b3", "text": "No, thanks"}])";

struct Nobody final : InAppReporter {
  void opened(std::shared_ptr<AppCommunicationItem>, std::shared_ptr<ViewController>,
              std::optional<std::string>) override {}
  void answered(std::shared_ptr<AppCommunicationItem>, InAppAnswer, std::shared_ptr<ViewController>,
                std::optional<std::string>) override {}
};

}  // namespace

class StandScreen final : public ViewController, public QtWidgetProvider {
 public:
  explicit StandScreen(QWidget* widget) : widget_(widget) {}
  [[nodiscard]] std::string className() const override { return "BenchScreen"; }
  [[nodiscard]] QWidget* widget() const override { return widget_; }

 private:
  QWidget* widget_;
};

/// Answers from another thread, as a transport does.
class PopupStand::Pictures final : public HttpTransport {
 public:
  std::string bytes;  // set while no request is under way

  void send(Make make, Done done) override {
    threads_.start([this, make = std::move(make), done = std::move(done)] {
      make();
      done({{}, 200, bytes});
    });
  }
  void networkChanged() override {}
  void stop() override {}

 private:
  QThreadPool threads_;  // Qt paints on its global ones
};

PopupStand::PopupStand(PopUpOptions options, QSize window)
    : pictures_(std::make_shared<Pictures>()), window_(std::make_unique<QMainWindow>()) {
  setOptions(std::move(options));
  screen_ = std::make_shared<StandScreen>(window_.get());
  manager_ = std::make_unique<PopupManager>(std::make_shared<Nobody>());
  window_->setObjectName("Host");
  // Any host has text of its own, and with it Qt its fonts.
  window_->setCentralWidget(new QLabel(QStringLiteral("A host's own words, 0123456789")));
  window_->resize(window);
  window_->show();
  application_.frameOf("Host");
}

PopupStand::~PopupStand() {
  Platform::install(nullPlatform());
}

void PopupStand::setOptions(PopUpOptions options) {
  Platform platform = nullPlatform();
  platform.http = pictures_;
  platform.popups = std::make_shared<QtPopupPresenter>(std::move(options));
  Platform::install(std::move(platform));
}

void PopupStand::setPicture(std::string bytes) {
  pictures_->bytes = std::move(bytes);
}

void PopupStand::show(PopupType kind, const std::shared_ptr<AppCommunicationItem>& item) {
  constexpr std::pair<PopupType, decltype(&PopupManager::showNotificationPopUpWindow)> shows[] = {
      {PopupType::popup, &PopupManager::showNotificationPopUpWindow},
      {PopupType::survey, &PopupManager::showNotificationSurveyPopUpRadioGroupWindow},
      {PopupType::emoji, &PopupManager::showNotificationEmojiPopUpWindow},
      {PopupType::score, &PopupManager::showNotificationScorePopUpWindow},
      {PopupType::openEnded, &PopupManager::showNotificationOpenEndedPopUpWindow}};
  for (const auto& [type, operation] : shows) {
    if (type == kind) (*manager_.*operation)(screen_, "bench", item, {});
  }
}

PopUpWindow* PopupStand::open(PopupType kind, const std::shared_ptr<AppCommunicationItem>& item) {
  show(kind, item);
  application_.frameOf("PopUpWindow");
  return qobject_cast<PopUpWindow*>(application_.framed());
}

void PopupStand::close(PopUpWindow* popup) {
  popup->dismissView();
  WatchedApplication::spinUntilGone(popup);
}

std::shared_ptr<AppCommunicationItem> PopupStand::campaign(PopupType kind) {
  switch (kind) {
    case PopupType::popup:
      return item(kind, kButtons);
    case PopupType::survey:
      return item(kind, R"(, "choices": [
          {"id": "1", "text": "From a friend"}, {"id": "2", "text": "In a shop"},
          {"id": "3", "text": "On the web"}, {"id": "4", "text": "Somewhere else"},
          {"id": "5", "text": "I do not remember"}])");
    case PopupType::emoji:
      return item(kind, R"(, "emojiList": [{"id": "1", "text": "😡", "show": true},
          {"id": "2", "text": "😐", "show": true}, {"id": "3", "text": "😍", "show": true}])");
    case PopupType::score:
      return item(kind, R"(, "minScore": 0, "maxScore": 10)");
    case PopupType::openEnded:
      break;
  }
  return item(PopupType::openEnded, "");
}

std::shared_ptr<AppCommunicationItem> PopupStand::campaignWithPicture() {
  return item(PopupType::popup,
              std::string(kButtons) + R"(, "image": "http://pictures.example/one")");
}

std::shared_ptr<AppCommunicationItem> PopupStand::campaignWithCarousel() {
  return item(PopupType::popup, std::string(kButtons) + R"(, "images": [
      {"url": "http://pictures.example/1"}, {"url": "http://pictures.example/2"},
      {"url": "http://pictures.example/3"}])");
}

}  // namespace kifo::bench
