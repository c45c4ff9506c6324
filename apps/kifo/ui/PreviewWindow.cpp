#include "apps/kifo/ui/PreviewWindow.h"

#include <QApplication>
#include <QWidget>
#include <iostream>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"
#include "apps/kifo/ui/PopupPicture.h"

namespace kifo::tool {
namespace {

using Item = AppCommunicationItem;

std::string inQuotes(const std::optional<std::string>& text) {
  return text ? "\"" + *text + "\"" : "nothing";
}

/// Prints what the user answered.
class PrintingReporter final : public InAppReporter {
 public:
  void opened(std::shared_ptr<Item>, std::shared_ptr<ViewController>,
              std::optional<std::string>) override {}
  void answered(std::shared_ptr<Item>, InAppAnswer answer, std::shared_ptr<ViewController>,
                std::optional<std::string>) override {
    std::cout << words(answer) << std::endl;
  }

 private:
  static std::string words(const InAppAnswer& answer) {
    if (answer.scoreField) {
      return "score " + std::to_string(answer.scoreField->value) + ", typed " +
             inQuotes(answer.scoreField->freeText);
    }
    if (answer.openEndedField) return "typed " + inQuotes(answer.openEndedField->freeText);
    if (answer.choiseField) {
      return "chose " + inQuotes(answer.choiseField->choiseId) + ", typed " +
             inQuotes(answer.choiseField->freeText);
    }
    if (answer.body) return "touched the body";
    if (answer.button) return "pressed " + inQuotes(answer.button->id);
    return answer.choice ? "chose " + inQuotes(answer.choice->id) : "closed without an answer";
  }
};

/// The request, with answers that are printed in place of sent.
std::shared_ptr<const PopupRequest> printing(const PopupRequest& request) {
  auto mine = std::make_shared<PopupRequest>(request);
  mine->reporter = std::make_shared<PrintingReporter>();
  const auto print = [](const char* what) {
    return [what](std::shared_ptr<AppCommunicationItemButton> button) {
      std::cout << what << " " << inQuotes(button ? button->id : std::nullopt) << std::endl;
    };
  };
  mine->actionItem = print("pressed");
  mine->actionBodyItem = print("touched the body,");
  mine->submitButtonItem = print("submitted");
  return mine;
}

void runOverWidget(PreviewRun& run, const Look& look) {
  QWidget host;
  PopupPicture::dress(host, look);
  host.setWindowTitle("kifo preview");
  host.show();
  const std::function<void()> showNext = [&] {
    const auto request = run.next();
    if (!request) {
      host.close();
      return;
    }
    auto* popup = new PopUpWindow(request, run.options(), &host);
    QObject::connect(
        popup, &PopUpWindow::closed, &host, [&] { showNext(); }, Qt::QueuedConnection);
    popup->present();
  };
  showNext();
  QApplication::exec();
}

}  // namespace

void runPreviewWindow(const std::vector<std::shared_ptr<const PopupRequest>>& requests,
                      const Look& look, Toolkit toolkit) {
  std::vector<PreviewRun::Request> printed;
  for (const auto& request : requests) printed.push_back(printing(*request));
  PreviewRun run(printed, PopupPicture(toolkit).options(look));
  toolkit == Toolkit::quick ? runPreviewScene(run, look) : runOverWidget(run, look);
}

}  // namespace kifo::tool
