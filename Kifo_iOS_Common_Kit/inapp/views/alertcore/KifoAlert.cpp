#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoAlert.h"

#include <QGuiApplication>
#include <QMetaMethod>
#include <QPointer>
#include <QThread>
#include <algorithm>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertAnimator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertIcon.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertTimeout.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/DesktopMotion.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/DisposeLater.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"

namespace kifo {
namespace {

/// The size of the large indicator in relation to the common one.
constexpr double kLargeIndicator = 1.7;

constexpr std::string_view LOG_TAG = "Kifo KifoPopup:";

bool onUiThread() {
  return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr &&
         QThread::currentThread() == QCoreApplication::instance()->thread();
}

void invokeSlot(QObject* target, QByteArray selector) {
  if (target == nullptr) return;
  if (!selector.contains('(')) selector += "()";
  const QMetaObject* type = target->metaObject();
  const int index = type->indexOfMethod(QMetaObject::normalizedSignature(selector));
  if (index < 0 || !type->method(index).invoke(target)) {
    Console::print(LOG_TAG, "no slot " + selector.toStdString() + " in " + type->className());
  }
}

/// Does what a press of `button` does. The action may take the button away.
void dispatch(const AlertButton& button) {
  switch (button.actionType) {
    case KifoButtonActionType::selector:
      return callHost(LOG_TAG, [target = button.target, selector = button.selector] {
        invokeSlot(target, selector);
      });
    case KifoButtonActionType::closure:
      return callHost(LOG_TAG, std::function<void()>(button.action));
    case KifoButtonActionType::none:
      break;
  }
  // The spelling is kept for compatibility.
  Console::print(LOG_TAG, "Unknow action type for button");
}

}  // namespace

KifoAlert::KifoAlert() : KifoAlert(KifoAppearance()) {}

KifoAlert::KifoAlert(KifoAppearance theAppearance)
    : appearance(std::move(theAppearance)),
      animator_(new AlertAnimator(this)),
      clock_(new AlertTimeout(this)) {
  connect(animator_, &AlertAnimator::left, this, &KifoAlert::finish);
  connect(clock_, &AlertTimeout::ended, this, &KifoAlert::hideViewTimeout);
  connect(clock_, &AlertTimeout::ticked, this, &KifoAlert::showSecondsLeft);
}

/// The alert may die in the middle of a signal of its clock or its animator.
KifoAlert::~KifoAlert() {
  clock_->stop();
  animator_->reset();
  for (QObject* part : {static_cast<QObject*>(clock_), static_cast<QObject*>(animator_)}) {
    part->setParent(nullptr);
    disposeLater(part);
  }
}

// Buttons.

AlertButton& KifoAlert::addButtonWith(const ButtonAction& action, const QString& title,
                                      const QColor& background, const QColor& text,
                                      const std::optional<ShowTimeoutConfiguration>& showTimeout) {
  AlertButton& button = makeButton(title);
  const bool isSlot = !action.selector.isNull();
  button.actionType = isSlot ? KifoButtonActionType::selector : KifoButtonActionType::closure;
  button.action = action.closure;
  button.target = action.target;
  button.selector = action.selector;
  button.customBackgroundColor = background;
  button.customTextColor = text;
  button.showTimeout = showTimeout;
  if (phase_ != Phase::shown) return button;
  if (showTimeout) {
    clock_->tickToo();
    button.showSeconds(clock_->secondsLeft());
  }
  refresh();
  return button;
}

void KifoAlert::press(AlertButton& button) {
  if (phase_ != Phase::shown || answered_ == showings_) return;
  const auto self = weak_from_this().lock();
  const QPointer<KifoAlert> alive = this;
  const unsigned showing = showings_;
  if (appearance.shouldAutoDismiss) {
    answered_ = showing;
    clock_->stop();
  }
  dispatch(button);
  // The action may have closed the alert, deleted it, or shown it anew.
  if (alive == nullptr || showing != showings_) return;
  if (appearance.shouldAutoDismiss) hideView();
}

void KifoAlert::setCloseButton(const QString& title) {
  for (AlertButton* button : buttonsInOrder()) {
    if (button->onlyCloses) removeButton(*button);
  }
  if (title.isEmpty() || !appearance.showCloseButton) return;
  AlertButton& button = makeButton(title);
  button.onlyCloses = true;
  button.actionType = KifoButtonActionType::closure;
  button.action = [this] { hideView(); };
}

bool KifoAlert::hasCross() const {
  if (!appearance.showCloseButton) return false;
  if (!closeIcon.isNull()) return true;
  return style_ != KifoPopupStyle::wait && buttonsInOrder().empty() &&
         clock_->secondsLeft() == std::nullopt && !appearance.hideWhenBackgroundViewIsTapped;
}

bool KifoAlert::mayClose() const {
  const auto buttons = buttonsInOrder();
  const bool hasCloseButton = std::ranges::any_of(buttons, &AlertButton::onlyCloses);
  return hasCloseButton || hasCross() ||
         (appearance.hideWhenBackgroundViewIsTapped && !appearance.disableTapGesture);
}

// Showing.

KifoPopupResponder KifoAlert::showCustom(const QString& title, const QString& subTitle,
                                         const QColor& color, const QString& closeButtonTitle,
                                         const std::optional<KifoTimeoutConfiguration>& timeout,
                                         std::uint32_t colorTextButton,
                                         const QIcon& circleIconImage,
                                         KifoAnimationStyle animationStyle) {
  return show({title, subTitle, std::nullopt, color, closeButtonTitle, timeout, colorTextButton,
               circleIconImage, animationStyle});
}

KifoPopupResponder KifoAlert::showTitle(const QString& title, const QString& subTitle,
                                        KifoPopupStyle style, const QString& closeButtonTitle,
                                        const std::optional<KifoTimeoutConfiguration>& timeout,
                                        std::optional<std::uint32_t> colorStyle,
                                        std::optional<std::uint32_t> colorTextButton,
                                        const QIcon& circleIconImage,
                                        KifoAnimationStyle animationStyle) {
  return show({title, subTitle, style, colorFromInt(colorStyle.value_or(defaultColorInt(style))),
               closeButtonTitle, timeout, colorTextButton.value_or(defaultTextColorInt(style)),
               circleIconImage, animationStyle});
}

KifoPopupResponder KifoAlert::showTitle(const QString& title, const QString& subTitle,
                                        const std::optional<KifoTimeoutConfiguration>& timeout,
                                        const QString& completeText, KifoPopupStyle style,
                                        std::optional<std::uint32_t> colorStyle,
                                        std::optional<std::uint32_t> colorTextButton,
                                        const QIcon& circleIconImage,
                                        KifoAnimationStyle animationStyle) {
  return showTitle(title, subTitle, style, completeText, timeout, colorStyle, colorTextButton,
                   circleIconImage, animationStyle);
}

KifoPopupResponder KifoAlert::show(const Showing& showing) {
  const KifoPopupResponder responder(this);
  if (!onUiThread()) {
    Console::print(LOG_TAG, "an alert can only be shown on the UI thread");
    return responder;
  }
  const auto self = weak_from_this().lock();
  if (phase_ == Phase::hiding) finish();
  if (responder.alertview() == nullptr) return responder;
  ++showings_;
  timeout_ = showing.timeout;
  startTimeout();
  dress(showing);
  if (phase_ == Phase::shown) return responder;
  phase_ = Phase::shown;
  selfReference_ = weak_from_this().lock();
  animator_->reset();
  if (!open()) {
    Console::print(LOG_TAG, "the alert is not shown: there is no window for it");
    selfReference_ = nullptr;
    end();
    return responder;
  }
  animator_->enter(showing.animationStyle, appearance.dynamicAnimatorActive, allowedMotion());
  return responder;
}

void KifoAlert::dress(const Showing& showing) {
  viewColor = showing.color.isValid() ? showing.color : QColor(Qt::darkGray);
  colorTextButton_ = showing.colorTextButton;
  style_ = showing.style;
  image_ = showing.circleIconImage;
  title_ = showing.title;
  subTitle_ = showing.subTitle;
  showTexts();
  setCloseButton(showing.closeButtonTitle);
  showSecondsLeft();
  refresh();
}

AlertIcon KifoAlert::icon() const {
  AlertIcon icon;
  if (!appearance.showCircularIcon || (image_.isNull() && !style_)) return icon;
  if (!image_.isNull()) {
    icon.kind = AlertIcon::Kind::image;
    icon.image = image_;
    icon.color = iconTintColor;
    return icon;
  }
  icon.style = *style_;
  icon.kind = *style_ == KifoPopupStyle::wait ? AlertIcon::Kind::indicator : AlertIcon::Kind::icon;
  icon.color =
      iconTintColor.isValid() ? iconTintColor : legibleOn(Qt::white, viewColor, Contrast::mark);
  if (icon.kind == AlertIcon::Kind::icon) return icon;
  const auto indicator = appearance.activityIndicatorStyle;
  if (indicator == ActivityIndicatorStyle::whiteLarge) icon.scale = kLargeIndicator;
  if (indicator == ActivityIndicatorStyle::gray) icon.color = Qt::gray;
  return icon;
}

QColor KifoAlert::buttonTextColor() const {
  return colorFromInt(colorTextButton_);
}

void KifoAlert::setTitle(const QString& title) {
  title_ = title;
  showTexts();
}

void KifoAlert::setSubTitle(const QString& subTitle) {
  subTitle_ = subTitle;
  showTexts();
}

// Hiding.

void KifoAlert::hideView() {
  if (phase_ != Phase::shown) return;
  const auto self = weak_from_this().lock();
  phase_ = Phase::hiding;
  clock_->stop();
  returnFocus();
  animator_->leave(allowedMotion());
}

void KifoAlert::finish() {
  if (phase_ != Phase::hiding) return;
  const auto self = std::move(selfReference_);
  close();
  end();
  callHost(LOG_TAG, std::function<void()>(dismissBlock));
}

void KifoAlert::windowGone() {
  const auto self = std::move(selfReference_);
  end();
}

void KifoAlert::end() {
  phase_ = Phase::idle;
  clock_->stop();
  animator_->reset();
}

AlertMotion KifoAlert::allowedMotion() const {
  AlertMotion allowed = motion;
  allowed.reduced = motion.reduced || !mayMove();
  return allowed;
}

bool KifoAlert::mayMove() const {
  return desktopAnimates();
}

/// Called while the appearance allows taps.
void KifoAlert::tappedBackground() {
  if (appearance.hideWhenBackgroundViewIsTapped) hideView();
}

// The time-out.

void KifoAlert::startTimeout() {
  const auto buttons = buttonsInOrder();
  const bool counts = std::ranges::any_of(
      buttons, [](const AlertButton* button) { return button->showTimeout.has_value(); });
  clock_->start(timeout_ ? timeout_->value : 0, counts);
}

void KifoAlert::hideViewTimeout() {
  if (phase_ != Phase::shown) return;
  const auto self = weak_from_this().lock();
  const QPointer<KifoAlert> alive = this;
  const unsigned showing = showings_;
  const auto timeout = std::exchange(timeout_, std::nullopt);
  clock_->stop();
  if (timeout) callHost(LOG_TAG, timeout->action);
  if (alive != nullptr && showing == showings_) hideView();
}

void KifoAlert::updateShowTimeout() {
  clock_->tick();
}

void KifoAlert::showSecondsLeft() {
  for (AlertButton* button : buttonsInOrder()) button->showSeconds(clock_->secondsLeft());
}

void KifoAlert::holdTimeout(bool isInside) {
  clock_->setHeld(isInside && timeout_ && timeout_->pausesWhileInside);
}

}  // namespace kifo
