#include "apps/kifo/ui/QtHostWindow.h"

#include <QApplication>
#include <QEvent>
#include <algorithm>
#include <thread>
#include <utility>

#include "apps/kifo/host/Arguments.h"
#include "apps/kifo/host/PopupLine.h"
#include "apps/kifo/ui/Display.h"

namespace kifo::tool {
namespace {

/// The place of the option with that id.
int rowOf(const std::string& id, const PopupState::Buttons& options) {
  const auto option =
      std::ranges::find_if(options, [&](const auto& each) { return each && each->id == id; });
  if (option == options.end()) throw BadLine("the popup offers nothing with the id \"" + id + "\"");
  return static_cast<int>(option - options.begin());
}

PopupLine lineOf(const PopupState& state) {
  return {state.appCommunicationItem, state.buttons, state.choices};
}

}  // namespace

WatchedPresenter::WatchedPresenter(std::shared_ptr<PopupPresenter> presenter)
    : presenter_(std::move(presenter)) {}

void WatchedPresenter::present(std::shared_ptr<const PopupRequest> request) {
  {
    const std::lock_guard lock(mutex_);
    requests_.push_back(request);
  }
  presenter_->present(std::move(request));
}

std::size_t WatchedPresenter::alive() {
  const std::lock_guard lock(mutex_);
  std::erase_if(requests_, [](const auto& each) { return each.expired(); });
  return requests_.size();
}

PopUpOptions QtHostWindow::options() {
  PopUpOptions options;
  options.reducedMotion = true;
  return options;
}

QtHostWindow::QtHostWindow(std::shared_ptr<Output> output,
                           std::shared_ptr<PopupPresenter> presenter)
    : output_(std::move(output)),
      presenter_(std::make_shared<WatchedPresenter>(std::move(presenter))) {}

std::shared_ptr<KifoViewController> QtHostWindow::makeScreen(const std::string& name) {
  std::shared_ptr<KifoViewController> screen;
  onUiThread([&] { screen = makePage(name); });
  return screen;
}

void QtHostWindow::appear(KifoViewController& screen) {
  onUiThread([&] {
    screen.viewWillAppear(false);
    showPage(screen);
    screen.viewDidAppear(false);
  });
}

void QtHostWindow::disappear(KifoViewController& screen) {
  onUiThread([&] { screen.viewWillDisappear(false); });
}

void QtHostWindow::perform(const UserAction& action) {
  onUiThread([&] {
    const auto isUsable = [](const Shown& each) { return each.popup && !each.isDismissing(); };
    const auto current = std::ranges::find_if(popups_, isUsable);
    if (current == popups_.end()) throw BadLine("no popup is shown");
    performOn(*current->state, action);
  });
}

void QtHostWindow::performOn(const PopupState& state, const UserAction& action) {
  using Kind = UserAction::Kind;
  using testing::User;
  User user = this->user();
  const auto control = [&](const char* name, int index = 0) {
    return User::checked(user.object(name, index), name);
  };
  switch (action.kind) {
    case Kind::close:
      return user.click(control("closeButton"));
    case Kind::submit:
      return user.click(control("submitButton"));
    case Kind::button:
      return user.click(control("titleLbl", rowOf(action.text, state.buttons)));
    case Kind::select: {
      const bool isSurvey = user.object("selectButton") != nullptr;
      return user.click(
          control(isSurvey ? "selectButton" : "emojiButton", rowOf(action.text, state.choices)));
    }
    case Kind::body:
      return user.clickBeside(control("popupView"));
    case Kind::type:
      user.click(control("textField"));
      return user.type(QString::fromStdString(action.text));
    case Kind::slide:
      return user.slide(control("slider"), action.score);
  }
}

bool QtHostWindow::isSettled() {
  bool isSettled = false;
  onUiThread([&] {
    std::erase_if(popups_, [](const Shown& each) { return each.popup.isNull(); });
    const bool isClosing =
        std::ranges::any_of(popups_, [](const Shown& each) { return each.isDismissing(); });
    isSettled = !isClosing && (!popups_.empty() || presenter_->alive() == 0);
  });
  return isSettled;
}

void QtHostWindow::onUiThread(std::function<void()> task) {
  std::packaged_task<void()> packed(std::move(task));
  auto done = packed.get_future();
  {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(packed));
  }
  QCoreApplication::postEvent(this, new QEvent(QEvent::User));
  done.get();
}

void QtHostWindow::customEvent(QEvent*) {
  std::unique_lock lock(mutex_);
  auto task = std::move(tasks_.front());
  tasks_.pop_front();
  lock.unlock();
  task();
}

bool QtHostWindow::opened(const Shown& shown) {
  const auto isThis = [&](const Shown& known) { return known.popup == shown.popup; };
  if (std::ranges::any_of(popups_, isThis)) return false;
  popups_.push_back(shown);
  output_->line(lineOf(*shown.state).line("shown"));
  return true;
}

void QtHostWindow::closed(const PopupState& state) {
  output_->line(lineOf(state).line("closed"));
}

int runInWindow(const std::shared_ptr<Output>& output, Toolkit toolkit,
                const std::function<int(HostWindow&)>& script) {
  const Display display("kifo");
  const auto window =
      toolkit == Toolkit::quick ? makeQuickHostWindow(output) : makeWidgetHostWindow(output);
  int status = 0;
  std::thread thread([&] {
    status = script(*window);
    QMetaObject::invokeMethod(qApp, &QApplication::quit, Qt::QueuedConnection);
  });
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::exec();
  thread.join();
  return status;
}

}  // namespace kifo::tool
