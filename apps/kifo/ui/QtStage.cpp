#include "apps/kifo/ui/QtStage.h"

#include <QApplication>
#include <QEvent>
#include <thread>
#include <utility>

#include "apps/kifo/host/Arguments.h"
#include "apps/kifo/host/PopupLine.h"
#include "apps/kifo/ui/Display.h"
#include "apps/kifo/ui/PopupUser.h"
#include "platform/qt/QtWindowProvider.h"

namespace kifo::tool {
namespace {

constexpr QSize kWindowSize(420, 800);

/// A page of the window.
class Screen final : public KifoViewController, public QtWidgetProvider {
 public:
  Screen(std::string className, QWidget* page) : className_(std::move(className)), page_(page) {}

  [[nodiscard]] std::string className() const override { return className_; }
  [[nodiscard]] QWidget* widget() const override { return page_; }

 private:
  const std::string className_;
  const QPointer<QWidget> page_;
};

PopUpOptions withoutMovement() {
  PopUpOptions options;
  options.reducedMotion = true;
  return options;
}

PopupLine lineOf(const PopUpWindow& popup) {
  const auto& state = popup.state();
  return {state.appCommunicationItem, state.buttons, state.choices};
}

}  // namespace

WatchedPresenter::WatchedPresenter() : presenter_(withoutMovement()) {}

void WatchedPresenter::present(std::shared_ptr<const PopupRequest> request) {
  {
    const std::lock_guard lock(mutex_);
    requests_.push_back(request);
  }
  presenter_.present(std::move(request));
}

std::size_t WatchedPresenter::alive() {
  const std::lock_guard lock(mutex_);
  std::erase_if(requests_, [](const auto& each) { return each.expired(); });
  return requests_.size();
}

QtStage::QtStage(std::shared_ptr<Output> output)
    : output_(std::move(output)), presenter_(std::make_shared<WatchedPresenter>()) {
  window_.resize(kWindowSize);
  window_.setWindowTitle("kifo host");
  window_.show();
  qApp->installEventFilter(this);
}

std::shared_ptr<KifoViewController> QtStage::makeScreen(const std::string& name) {
  std::shared_ptr<KifoViewController> screen;
  onUiThread([&] {
    auto* page = new QWidget;
    window_.addWidget(page);
    screen = std::make_shared<Screen>(name, page);
  });
  return screen;
}

void QtStage::appear(KifoViewController& screen) {
  onUiThread([&] {
    screen.viewWillAppear(false);
    window_.setCurrentWidget(dynamic_cast<Screen&>(screen).widget());
    screen.viewDidAppear(false);
  });
}

void QtStage::disappear(KifoViewController& screen) {
  onUiThread([&] { screen.viewWillDisappear(false); });
}

void QtStage::perform(const UserAction& action) {
  onUiThread([&] {
    PopUpWindow* popup = current();
    if (popup == nullptr) throw BadLine("no popup is shown");
    PopupUser(*popup).perform(action);
  });
}

bool QtStage::isSettled() {
  bool isSettled = false;
  onUiThread([&] {
    std::erase_if(popups_, [](const auto& each) { return each.isNull(); });
    const bool isClosing =
        std::ranges::any_of(popups_, [](const auto& each) { return each->isDismissing(); });
    isSettled = !isClosing && (!popups_.empty() || presenter_->alive() == 0);
  });
  return isSettled;
}

void QtStage::onUiThread(std::function<void()> task) {
  std::packaged_task<void()> packed(std::move(task));
  auto done = packed.get_future();
  {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(packed));
  }
  QCoreApplication::postEvent(this, new QEvent(QEvent::User));
  done.get();
}

void QtStage::customEvent(QEvent*) {
  std::unique_lock lock(mutex_);
  auto task = std::move(tasks_.front());
  tasks_.pop_front();
  lock.unlock();
  task();
}

bool QtStage::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show) {
    if (auto* popup = qobject_cast<PopUpWindow*>(watched)) shown(*popup);
  }
  return false;
}

void QtStage::shown(PopUpWindow& popup) {
  // Its window may be hidden and shown again.
  const auto isThis = [&](const QPointer<PopUpWindow>& known) { return known == &popup; };
  if (std::ranges::any_of(popups_, isThis)) return;
  popups_.emplace_back(&popup);
  output_->line(lineOf(popup).line("shown"));
  connect(&popup, &PopUpWindow::closed, this,
          [this, &popup] { output_->line(lineOf(popup).line("closed")); });
}

PopUpWindow* QtStage::current() const {
  for (const auto& popup : popups_) {
    if (popup && !popup->isDismissing()) return popup;
  }
  return nullptr;
}

int runOnStage(const std::shared_ptr<Output>& output, const std::function<int(Stage&)>& script) {
  const Display display("kifo");
  QtStage stage(output);
  int status = 0;
  std::thread thread([&] {
    status = script(stage);
    QMetaObject::invokeMethod(qApp, &QApplication::quit, Qt::QueuedConnection);
  });
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::exec();
  thread.join();
  return status;
}

}  // namespace kifo::tool
