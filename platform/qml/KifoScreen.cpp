#include "platform/qml/KifoScreen.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "platform/qml/QmlKifo.h"

namespace kifo {
namespace {

/// The screens that are shown, the latest last.
std::vector<std::weak_ptr<QmlScreenController>>& shownScreens() {
  static std::vector<std::weak_ptr<QmlScreenController>> screens;
  return screens;
}

}  // namespace

QmlScreenController::QmlScreenController(QQuickItem* item, std::string name)
    : className_(std::move(name)), item_(item) {}

void QmlScreenController::setShown(bool isShown) {
  if (std::exchange(isShown_, isShown) == isShown) return;
  auto& screens = shownScreens();
  std::erase_if(screens, [this](const auto& each) {
    const auto screen = each.lock();
    return screen == nullptr || screen.get() == this;
  });
  if (!isShown) return viewWillDisappear(/*animated=*/false);
  screens.push_back(std::static_pointer_cast<QmlScreenController>(shared_from_this()));
  isEarly_ = !Kifo::isInitialized();
  if (!std::exchange(isLoaded_, true)) viewDidLoad();
  viewWillAppear(/*animated=*/false);
  viewDidAppear(/*animated=*/false);
}

void QmlScreenController::reportEarly() {
  if (isShown_ && std::exchange(isEarly_, false)) viewDidAppear(/*animated=*/false);
}

KifoScreen::KifoScreen(QObject* parent) : QObject(parent) {}

KifoScreen::~KifoScreen() {
  if (controller_) controller_->setShown(false);
}

std::shared_ptr<QmlScreenController> KifoScreen::current() {
  for (auto& screens = shownScreens(); !screens.empty(); screens.pop_back()) {
    if (auto screen = screens.back().lock()) return screen;
  }
  return nullptr;
}

void KifoScreen::reportEarly() {
  const auto screens = shownScreens();
  for (const auto& each : screens) {
    if (const auto screen = each.lock()) screen->reportEarly();
  }
}

void KifoScreen::componentComplete() {
  isComplete_ = true;
  if (item_ == nullptr) item_ = qobject_cast<QQuickItem*>(parent());
  followItem();
}

void KifoScreen::setItem(QQuickItem* item) {
  if (item == item_) return;
  if (item_ != nullptr) item_->disconnect(this);
  if (controller_) controller_->setShown(false);
  controller_ = nullptr;
  item_ = item;
  Q_EMIT itemChanged();
  if (isComplete_) followItem();
}

void KifoScreen::setActive(bool isActive) {
  if (std::exchange(isActive_, isActive) == isActive) return;
  Q_EMIT activeChanged();
  update();
}

void KifoScreen::followItem() {
  if (item_ == nullptr) return;
  connect(item_, &QQuickItem::visibleChanged, this, &KifoScreen::update);
  connect(item_, &QQuickItem::windowChanged, this, &KifoScreen::followWindow);
  connect(item_, &QObject::destroyed, this, &KifoScreen::update);
  followWindow(item_->window());
}

void KifoScreen::followWindow(QQuickWindow* window) {
  if (window_ != nullptr) window_->disconnect(this);
  window_ = window;
  if (window != nullptr) connect(window, &QWindow::visibleChanged, this, &KifoScreen::update);
  update();
}

bool KifoScreen::isShown() const {
  return isActive_ && item_ != nullptr && item_->isVisible() && window_ != nullptr &&
         window_->isVisible();
}

void KifoScreen::update() {
  if (!isComplete_) return;
  const bool isShown = this->isShown();
  if (isShown || controller_) controller()->setShown(isShown);
}

/// The type of a QML file is called "MenuScreen_QMLTYPE_3"; one that has properties of its own in
/// the place where it is used, "MenuScreen_QML_4".
std::string KifoScreen::reportedName() const {
  if (!name_.isEmpty() || item_ == nullptr) return name_.toStdString();
  const std::string type = item_->metaObject()->className();
  return type.substr(0, type.find("_QML"));
}

std::shared_ptr<QmlScreenController> KifoScreen::controller() {
  if (!controller_) controller_ = std::make_shared<QmlScreenController>(item_, reportedName());
  return controller_;
}

void KifoScreen::sendEvent(const QString& name, const QJSValue& parameters) {
  QmlKifo::send(controller(), name, parameters);
}

void KifoScreen::login(const QJSValue& parameters) {
  QmlKifo::sendLogin(controller(), parameters);
}

}  // namespace kifo
