#include "apps/kifo/ui/QtHostWindow.h"

#include <QApplication>
#include <QEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <thread>
#include <utility>

#include "apps/kifo/host/Arguments.h"
#include "apps/kifo/host/PopupLine.h"
#include "apps/kifo/ui/Display.h"
#include "platform/qt/QtWindowProvider.h"
#include "testing/ui/User.h"

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

/// The place of the option with that id.
int rowOf(const std::string& id, const PopupState::Buttons& options) {
  const auto option =
      std::ranges::find_if(options, [&](const auto& each) { return each && each->id == id; });
  if (option == options.end()) throw BadLine("the popup offers nothing with the id \"" + id + "\"");
  return static_cast<int>(option - options.begin());
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

QtHostWindow::QtHostWindow(std::shared_ptr<Output> output)
    : output_(std::move(output)), presenter_(std::make_shared<WatchedPresenter>()) {
  auto* layout = new QVBoxLayout(&window_);
  layout->setContentsMargins({});
  layout->addWidget(&pages_);
  window_.resize(kWindowSize);
  window_.setWindowTitle("kifo host");
  window_.show();
  qApp->installEventFilter(this);
}

std::shared_ptr<KifoViewController> QtHostWindow::makeScreen(const std::string& name) {
  std::shared_ptr<KifoViewController> screen;
  onUiThread([&] {
    auto* page = new QWidget;
    pages_.addWidget(page);
    screen = std::make_shared<Screen>(name, page);
  });
  return screen;
}

void QtHostWindow::appear(KifoViewController& screen) {
  onUiThread([&] {
    screen.viewWillAppear(false);
    pages_.setCurrentWidget(dynamic_cast<Screen&>(screen).widget());
    screen.viewDidAppear(false);
  });
}

void QtHostWindow::disappear(KifoViewController& screen) {
  onUiThread([&] { screen.viewWillDisappear(false); });
}

void QtHostWindow::perform(const UserAction& action) {
  onUiThread([&] {
    PopUpWindow* popup = current();
    if (popup == nullptr) throw BadLine("no popup is shown");
    performOn(*popup, action);
  });
}

void QtHostWindow::performOn(PopUpWindow& popup, const UserAction& action) {
  using Kind = UserAction::Kind;
  using testing::User;
  User user(window_);
  const auto control = [&](const char* name, int index = 0) {
    return User::checked(user.object(name, index), name);
  };
  const auto& state = popup.state();
  switch (action.kind) {
    case Kind::close:
      return user.click(control("closeButton"));
    case Kind::submit:
      return user.click(control("submitButton"));
    case Kind::button:
      return user.click(control("KifoPopupCell", rowOf(action.text, state.buttons)));
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
    std::erase_if(popups_, [](const auto& each) { return each.isNull(); });
    const bool isClosing =
        std::ranges::any_of(popups_, [](const auto& each) { return each->isDismissing(); });
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

bool QtHostWindow::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Show) {
    if (auto* popup = qobject_cast<PopUpWindow*>(watched)) shown(*popup);
  }
  return false;
}

void QtHostWindow::shown(PopUpWindow& popup) {
  // Its window may be hidden and shown again.
  const auto isThis = [&](const QPointer<PopUpWindow>& known) { return known == &popup; };
  if (std::ranges::any_of(popups_, isThis)) return;
  popups_.emplace_back(&popup);
  output_->line(lineOf(popup).line("shown"));
  connect(&popup, &PopUpWindow::closed, this,
          [this, &popup] { output_->line(lineOf(popup).line("closed")); });
}

PopUpWindow* QtHostWindow::current() const {
  for (const auto& popup : popups_) {
    if (popup && !popup->isDismissing()) return popup;
  }
  return nullptr;
}

int runInWindow(const std::shared_ptr<Output>& output,
                const std::function<int(HostWindow&)>& script) {
  const Display display("kifo");
  QtHostWindow window(output);
  int status = 0;
  std::thread thread([&] {
    status = script(window);
    QMetaObject::invokeMethod(qApp, &QApplication::quit, Qt::QueuedConnection);
  });
  QApplication::setQuitOnLastWindowClosed(false);
  QApplication::exec();
  thread.join();
  return status;
}

}  // namespace kifo::tool
