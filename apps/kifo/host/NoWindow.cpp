// The window of a build without a toolkit: popups are reported and nothing else.
#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "apps/kifo/host/Arguments.h"
#include "apps/kifo/host/HostWindow.h"
#include "apps/kifo/host/PopupLine.h"

namespace kifo::tool {
namespace {

class ReportingPresenter final : public PopupPresenter {
 public:
  explicit ReportingPresenter(std::shared_ptr<Output> output) : output_(std::move(output)) {}

  void present(std::shared_ptr<const PopupRequest> request) override {
    if (request->open && !request->open()) return;
    const auto& shown = request->preferences;
    output_->line(
        PopupLine{shown.appCommunicationItem, shown.buttons, shown.choices}.line("shown"));
  }

 private:
  const std::shared_ptr<Output> output_;
};

class Screen final : public KifoViewController {
 public:
  explicit Screen(std::string className) : className_(std::move(className)) {}

  [[nodiscard]] std::string className() const override { return className_; }

 private:
  const std::string className_;
};

class NoWindow final : public HostWindow {
 public:
  explicit NoWindow(std::shared_ptr<Output> output)
      : presenter_(std::make_shared<ReportingPresenter>(std::move(output))) {}

  [[nodiscard]] std::shared_ptr<PopupPresenter> presenter() const override { return presenter_; }
  [[nodiscard]] std::shared_ptr<KifoViewController> makeScreen(const std::string& name) override {
    return std::make_shared<Screen>(name);
  }
  void appear(KifoViewController& screen) override {
    screen.viewWillAppear(false);
    screen.viewDidAppear(false);
  }
  void disappear(KifoViewController& screen) override { screen.viewWillDisappear(false); }
  void perform(const UserAction&) override {
    throw BadLine("this build has no windows: popups are only reported");
  }
  [[nodiscard]] bool isSettled() override { return true; }

 private:
  const std::shared_ptr<PopupPresenter> presenter_;
};

}  // namespace

int runInWindow(const std::shared_ptr<Output>& output, Toolkit,
                const std::function<int(HostWindow&)>& script) {
  NoWindow window(output);
  return script(window);
}

}  // namespace kifo::tool
