#include "Kifo_iOS_Common_Kit/inapp/quick/QuickAlert.h"

#include <QGuiApplication>
#include <algorithm>
#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupPalette.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/ShownText.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickAlertOverlay.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/DisposeLater.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"

namespace kifo {
namespace {

/// The window to show over: the active one, else the last that is visible.
QQuickWindow* windowInUse() {
  auto* active = qobject_cast<QQuickWindow*>(QGuiApplication::focusWindow());
  if (active != nullptr && active->isVisible()) return active;
  const QWindowList windows = QGuiApplication::topLevelWindows();
  for (auto window = windows.rbegin(); window != windows.rend(); ++window) {
    auto* scene = qobject_cast<QQuickWindow*>(*window);
    if (scene != nullptr && scene->isVisible()) return scene;
  }
  return nullptr;
}

}  // namespace

// Buttons and fields.

QuickAlertButton::QuickAlertButton(const QString& title, QuickAlert* alert)
    : QObject(alert), alert_(alert) {
  initialTitle = title;
  showSeconds(std::nullopt);
}

QColor QuickAlertButton::borderColor() const {
  return look_.border.isValid() ? look_.border : QColor(Qt::transparent);
}

QColor QuickAlertButton::ringOuter() const {
  return toQColor(FocusRing::on(toColor(look_.background), toColor(look_.text)).outer);
}
QColor QuickAlertButton::ringInner() const {
  return toQColor(FocusRing::on(toColor(look_.background), toColor(look_.text)).inner);
}

void QuickAlertButton::setLook(const AlertButtonLook& look) {
  look_ = look;
  Q_EMIT lookChanged();
}

void QuickAlertButton::setTitle(const QString& title, const QString& countdown) {
  title_ = QString::fromStdString(shownText(title.toStdString()));
  countdown_ = countdown;
  Q_EMIT titleChanged();
}

void QuickAlertButton::press() {
  if (alert_ != nullptr) alert_->KifoAlert::press(*this);
}

QuickAlertField::QuickAlertField(const QString& placeholder, bool isLine, QObject* parent)
    : QObject(parent), placeholder_(placeholder), isLine_(isLine) {}

void QuickAlertField::setText(const QString& text) {
  if (text == text_) return;
  text_ = text;
  Q_EMIT textChanged();
}

// The alert.

QuickAlert::QuickAlert() : QuickAlert(KifoAppearance()) {}

QuickAlert::QuickAlert(KifoAppearance theAppearance) : KifoAlert(std::move(theAppearance)) {}

QuickAlert::~QuickAlert() {
  if (overlay_ != nullptr) overlay_->dismantle();
  // The alert may die in the middle of a press of one of its buttons.
  for (QuickAlertButton* button : buttons_) {
    button->setParent(nullptr);
    disposeLater(button);
  }
}

std::string QuickAlert::className() const {
  return "QuickAlert";
}

QQuickItem* QuickAlert::baseView() const {
  return overlay_ == nullptr ? nullptr : overlay_->card();
}

std::vector<AlertButton*> QuickAlert::buttonsInOrder() const {
  return {buttons_.begin(), buttons_.end()};
}

AlertButton& QuickAlert::makeButton(const QString& title) {
  auto* button = new QuickAlertButton(title, this);
  // The one that only closes stays the last.
  const auto closing = std::ranges::find_if(buttons_, &AlertButton::onlyCloses);
  buttons_.insert(closing, button);
  connect(button, &QObject::destroyed, this, [this](QObject* gone) {
    std::erase_if(buttons_, [gone](QuickAlertButton* each) { return each == gone; });
    if (overlay_ != nullptr) overlay_->showParts();
  });
  if (overlay_ != nullptr) overlay_->showParts();
  return *button;
}

void QuickAlert::removeButton(AlertButton& button) {
  auto* gone = static_cast<QuickAlertButton*>(&button);
  std::erase(buttons_, gone);
  if (overlay_ != nullptr) overlay_->showParts();
  gone->deleteLater();
}

QuickAlertButton* QuickAlert::addButton(const QString& title, const QColor& backgroundColor,
                                        const QColor& textColor,
                                        const std::optional<ShowTimeoutConfiguration>& showTimeout,
                                        std::function<void()> action) {
  return static_cast<QuickAlertButton*>(&addButtonWith({std::move(action), nullptr, {}}, title,
                                                       backgroundColor, textColor, showTimeout));
}

QuickAlertButton* QuickAlert::addButton(const QString& title, std::function<void()> action) {
  return addButton(title, {}, {}, {}, std::move(action));
}

QuickAlertButton* QuickAlert::addButton(const QString& title, const QColor& backgroundColor,
                                        const QColor& textColor,
                                        const std::optional<ShowTimeoutConfiguration>& showTimeout,
                                        QObject* target, const QByteArray& selector) {
  return static_cast<QuickAlertButton*>(
      &addButtonWith({{}, target, selector}, title, backgroundColor, textColor, showTimeout));
}

QuickAlertField* QuickAlert::addField(const QString& title, bool isLine) {
  auto* field = new QuickAlertField(title, isLine, this);
  fields_.push_back(field);
  connect(field, &QObject::destroyed, this, [this](QObject* gone) {
    std::erase_if(fields_, [gone](QuickAlertField* each) { return each == gone; });
    if (overlay_ != nullptr) overlay_->showParts();
  });
  if (overlay_ != nullptr) overlay_->showParts();
  return field;
}

QuickAlertField* QuickAlert::addTextField(const QString& title) {
  return addField(title, true);
}
QuickAlertField* QuickAlert::addTextView() {
  return addField({}, false);
}

void QuickAlert::removeButtonsAndFields() {
  const auto buttons = std::exchange(buttons_, {});
  const auto fields = std::exchange(fields_, {});
  if (overlay_ != nullptr) overlay_->showParts();
  for (QuickAlertButton* button : buttons) button->deleteLater();
  for (QuickAlertField* field : fields) field->deleteLater();
}

// Showing.

void QuickAlert::showTexts() {
  if (overlay_ != nullptr) overlay_->showTexts();
}

void QuickAlert::refresh() {
  for (QuickAlertButton* button : buttons_) {
    const bool standsBack = button->onlyCloses && buttons_.size() > 1;
    button->setLook(lookOf(*button, standsBack, appearance, viewColor, buttonTextColor()));
  }
  if (overlay_ != nullptr) overlay_->showParts();
}

bool QuickAlert::open() {
  QQuickWindow* window = hostWindow != nullptr ? hostWindow.data() : windowInUse();
  if (window == nullptr) return false;
  overlay_ = QuickAlertOverlay::make(*this, *window);
  if (overlay_ == nullptr) return false;
  connect(overlay_, &QuickAlertOverlay::windowClosed, this, [this] {
    overlay_ = nullptr;
    windowGone();
  });
  overlay_->open();
  return true;
}

void QuickAlert::keyboardWillShow(const QRect& keyboard) {
  if (overlay_ != nullptr) overlay_->setKeyboard(keyboard);
}

void QuickAlert::keyboardWillHide() {
  keyboardWillShow({});
}

void QuickAlert::returnFocus() {
  overlay_->returnFocus();
}

void QuickAlert::close() {
  overlay_->disconnect(this);
  overlay_->dismantle();
  overlay_ = nullptr;
}

}  // namespace kifo
