#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopup.h"

#include <QApplication>
#include <QInputMethod>
#include <QMetaMethod>
#include <QThread>
#include <algorithm>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertAnimator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertCard.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertDisc.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertIconView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertList.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertOverlay.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertTimeout.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/Accessibility.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/CloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/DisposeLater.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {
namespace {

const std::string& tag() {
  static const std::string& text = *new std::string(logTag("KifoPopup"));
  return text;
}

bool onUiThread() {
  return qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr &&
         QThread::currentThread() == QCoreApplication::instance()->thread();
}

// The size of the large indicator in relation to the common one.
constexpr double kLargeIndicator = 1.7;

void invokeSlot(QObject* target, QByteArray selector) {
  if (target == nullptr) return;
  if (!selector.contains('(')) selector += "()";
  const QMetaObject* type = target->metaObject();
  const int index = type->indexOfMethod(QMetaObject::normalizedSignature(selector));
  if (index < 0 || !type->method(index).invoke(target)) {
    Console::print(tag(), "no slot " + selector.toStdString() + " in " + type->className());
  }
}

}  // namespace

KifoPopup::KifoPopup() : KifoPopup(KifoAppearance()) {}

KifoPopup::KifoPopup(KifoAppearance theAppearance)
    : appearance(std::move(theAppearance)),
      card_(new AlertCard),
      animator_(new AlertAnimator(card_)),
      clock_(new AlertTimeout(card_)) {
  connect(animator_, &AlertAnimator::left, this, &KifoPopup::finish);
  connect(clock_, &AlertTimeout::ended, this, &KifoPopup::hideViewTimeout);
  connect(clock_, &AlertTimeout::ticked, this, &KifoPopup::showSecondsLeft);
  connect(card_->closeImage, &QPushButton::clicked, this, &KifoPopup::hideView);
  connect(card_, &AlertCard::pointerInside, this, [this](bool inside) {
    pointerInside_ = inside;
    holdTimeout();
  });
  connect(card_, &AlertCard::edited, this, [this] {
    if (overlay_ == nullptr) return;
    overlay_->engage();
    card_->reveal(QApplication::focusWidget());
  });
}

KifoPopup::KifoPopup(QDataStream& /*archive*/)
    : card_(nullptr), animator_(nullptr), clock_(nullptr) {
  fatalError("NSCoding not supported");
}

KifoPopup::~KifoPopup() {
  if (overlay_ != nullptr) {
    overlay_->disconnect(this);
    overlay_->dismantle();
  }
  // The alert may die in the middle of a press of one of its buttons.
  disposeLater(card_);
}

std::string KifoPopup::className() const {
  return "KifoPopup";
}

QWidget* KifoPopup::baseView() const {
  return card_;
}
QWidget* KifoPopup::contentView() const {
  return card_->contentView;
}
QLabel* KifoPopup::labelTitle() const {
  return card_->labelTitle;
}
QLabel* KifoPopup::viewText() const {
  return card_->viewText;
}
QWidget* KifoPopup::circleBG() const {
  return card_->circleBG;
}
QWidget* KifoPopup::circleView() const {
  return card_->circleView;
}
QWidget* KifoPopup::circleIconView() const {
  return card_->circleIconView;
}
const std::vector<QLineEdit*>& KifoPopup::inputs() const {
  return card_->inputs;
}
const std::vector<QPlainTextEdit*>& KifoPopup::input() const {
  return card_->input;
}
const std::vector<KifoButton*>& KifoPopup::buttons() const {
  return card_->buttons;
}

// Buttons and fields.

KifoButton* KifoPopup::makeButton(const QString& title, const QColor& backgroundColor,
                                  const QColor& textColor,
                                  const std::optional<ShowTimeoutConfiguration>& showTimeout) {
  KifoButton* button = card_->addButton(title);
  button->customBackgroundColor = backgroundColor;
  button->customTextColor = textColor;
  button->showTimeout = showTimeout;
  connect(button, &KifoButton::pressed, this, [this, button] { buttonTapDown(button); });
  connect(button, &KifoButton::released, this, [this, button] { buttonRelease(button); });
  connect(button, &KifoButton::clicked, this, [this, button] { buttonTapped(button); });
  // The one that only closes stays the last.
  const auto close = std::find(card_->buttons.begin(), card_->buttons.end(), closeButton_.data());
  if (close != card_->buttons.end()) std::rotate(close, close + 1, card_->buttons.end());
  if (phase_ != Phase::shown) return button;
  if (showTimeout) {
    clock_->tickToo();
    button->showSeconds(clock_->secondsLeft());
  }
  refresh();
  return button;
}

KifoButton* KifoPopup::addButton(const QString& title, const QColor& backgroundColor,
                                 const QColor& textColor,
                                 const std::optional<ShowTimeoutConfiguration>& showTimeout,
                                 std::function<void()> action) {
  KifoButton* button = makeButton(title, backgroundColor, textColor, showTimeout);
  button->actionType = KifoButtonActionType::closure;
  button->action = std::move(action);
  return button;
}

KifoButton* KifoPopup::addButton(const QString& title, std::function<void()> action) {
  return addButton(title, {}, {}, {}, std::move(action));
}

KifoButton* KifoPopup::addButton(const QString& title, const QColor& backgroundColor,
                                 const QColor& textColor,
                                 const std::optional<ShowTimeoutConfiguration>& showTimeout,
                                 QObject* target, const QByteArray& selector) {
  KifoButton* button = makeButton(title, backgroundColor, textColor, showTimeout);
  button->actionType = KifoButtonActionType::selector;
  button->target = target;
  button->selector = selector;
  return button;
}

QLineEdit* KifoPopup::addTextField(const QString& title) {
  return card_->addTextField(title);
}
QPlainTextEdit* KifoPopup::addTextView() {
  return card_->addTextView();
}

void KifoPopup::buttonTapDown(KifoButton* button) {
  button->setDimmed(true);
}
void KifoPopup::buttonRelease(KifoButton* button) {
  button->setDimmed(false);
}

void KifoPopup::buttonTapped(KifoButton* button) {
  if (phase_ != Phase::shown || answered_ == showings_) return;
  const auto self = weak_from_this().lock();
  const QPointer<KifoPopup> alive = this;
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

void KifoPopup::dispatch(KifoButton* button) {
  // The action may take the button, and with it what we are running, away.
  switch (button->actionType) {
    case KifoButtonActionType::selector:
      return callHost(tag(), [target = button->target, selector = button->selector] {
        invokeSlot(target, selector);
      });
    case KifoButtonActionType::closure:
      return callHost(tag(), std::function<void()>(button->action));
    case KifoButtonActionType::none:
      break;
  }
  Console::print(tag(), "Unknow action type for button");
}

void KifoPopup::setCloseButton(const QString& title) {
  if (closeButton_ != nullptr) card_->removeButton(closeButton_);
  closeButton_ = nullptr;
  if (title.isEmpty() || !appearance.showCloseButton) return;
  closeButton_ = addButton(title, [this] { hideView(); });
  card_->closingButton = closeButton_;
}

bool KifoPopup::needsCross() const {
  if (!appearance.showCloseButton) return false;
  if (!closeIcon.isNull()) return true;
  return !waits_ && buttons().empty() && clock_->secondsLeft() == std::nullopt &&
         !appearance.hideWhenBackgroundViewIsTapped;
}

bool KifoPopup::mayClose() const {
  return closeButton_ != nullptr || !card_->closeImage->isHidden() ||
         (appearance.hideWhenBackgroundViewIsTapped && !appearance.disableTapGesture);
}

// Showing.

KifoPopupResponder KifoPopup::show(const Showing& showing) {
  const KifoPopupResponder responder(this);
  if (!onUiThread()) {
    Console::print(tag(), "an alert can only be shown on the UI thread");
    return responder;
  }
  const auto self = weak_from_this().lock();
  if (phase_ == Phase::hiding) finish();
  if (responder.alertview() == nullptr) return responder;
  ++showings_;
  startTimeout(showing.timeout);
  dress(showing);
  if (phase_ == Phase::idle) open(showing.animationStyle);
  return responder;
}

void KifoPopup::dress(const Showing& showing) {
  viewColor = showing.color.isValid() ? showing.color : QColor(Qt::darkGray);
  colorTextButton_ = showing.colorTextButton;
  waits_ = showing.style == KifoPopupStyle::wait;
  setTitle(showing.title);
  setSubTitle(showing.subTitle);
  setCloseButton(showing.closeButtonTitle);
  dressCircle(showing);
  card_->setCustomSubview(customSubview);
  refresh();
  showSecondsLeft();
}

void KifoPopup::dressCircle(const Showing& showing) {
  const bool hasImage = !showing.circleIconImage.isNull();
  card_->showCircle(appearance.showCircularIcon && (hasImage || showing.style.has_value()));
  card_->scaleIcon(1);
  if (hasImage) return card_->circleIconView->showImage(showing.circleIconImage, iconTintColor);
  const QColor color =
      iconTintColor.isValid() ? iconTintColor : legibleOn(Qt::white, viewColor, Contrast::mark);
  if (!waits_) return card_->circleIconView->showIcon(*showing.style, color);
  const auto indicator = appearance.activityIndicatorStyle;
  if (indicator == ActivityIndicatorStyle::whiteLarge) card_->scaleIcon(kLargeIndicator);
  card_->circleIconView->showIndicator(indicator == ActivityIndicatorStyle::gray ? Qt::gray
                                                                                 : color);
}

void KifoPopup::refresh() {
  const QColor card = appearance.contentViewColor;
  const QColor ink = textOn(card, appearance.subTitleColor, appearance.kTextFont);
  card_->list->setContents(headerStr, datas, {appearance.kTextFont, ink, mixed(card, ink, 0.15)});
  card_->closeImage->setLook(closeIcon, card, std::nullopt);
  card_->closeImage->setVisible(needsCross());
  card_->dress(appearance, viewColor, colorFromInt(colorTextButton_));
  if (overlay_ != nullptr) overlay_->place();
}

void KifoPopup::open(KifoAnimationStyle animationStyle) {
  phase_ = Phase::shown;
  selfReference_ = weak_from_this().lock();
  overlay_ = new AlertOverlay(AlertOverlay::hostFor(hostWindow), card_, animator_);
  connect(overlay_, &AlertOverlay::tapped, this, &KifoPopup::tapped);
  connect(overlay_, &AlertOverlay::enterPressed, this, &KifoPopup::pressDefault);
  connect(overlay_, &AlertOverlay::windowGone, this, &KifoPopup::windowGone);
  connect(overlay_, &AlertOverlay::escapePressed, this, [this] {
    if (mayClose()) hideView();
  });
  connect(overlay_, &AlertOverlay::engagementChanged, this, &KifoPopup::holdTimeout);
  overlay_->setAccessibleName(labelTitle()->text());
  overlay_->setAccessibleDescription(viewText()->text());
  setAccessibleRole(overlay_, QAccessible::AlertMessage);
  animator_->reset();
  overlay_->open(appearance.kDefaultShadowOpacity, type, firstFocus());
  followInputMethod();
  animator_->enter(animationStyle, appearance.dynamicAnimatorActive, motion);
  announceOpening(overlay_);
}

QWidget* KifoPopup::firstFocus() const {
  if (QWidget* field = card_->firstField()) return field;
  if (!buttons().empty()) return buttons().front();
  return nullptr;
}

void KifoPopup::setTitle(const QString& title) {
  labelTitle()->setText(title);
  if (overlay_ != nullptr) overlay_->setAccessibleName(title);
}

void KifoPopup::setSubTitle(const QString& subTitle) {
  viewText()->setText(subTitle);
  if (overlay_ != nullptr) overlay_->setAccessibleDescription(subTitle);
}

// Hiding.

void KifoPopup::hideView() {
  if (phase_ != Phase::shown) return;
  const auto self = weak_from_this().lock();
  phase_ = Phase::hiding;
  clock_->stop();
  overlay_->returnFocus();
  animator_->leave(motion);
}

void KifoPopup::finish() {
  if (phase_ != Phase::hiding) return;
  const auto self = std::move(selfReference_);
  overlay_->disconnect(this);
  overlay_->dismantle();
  end();
  callHost(tag(), std::function<void()>(dismissBlock));
}

void KifoPopup::windowGone() {
  const auto self = std::move(selfReference_);
  end();
}

void KifoPopup::end() {
  phase_ = Phase::idle;
  overlay_ = nullptr;
  clock_->stop();
  animator_->reset();
  pointerInside_ = false;
  keyboardHasBeenShown_ = false;
}

// The time-out.

void KifoPopup::startTimeout(const std::optional<KifoTimeoutConfiguration>& timeout) {
  timeout_ = timeout;
  const bool counts = std::any_of(buttons().begin(), buttons().end(), [](const KifoButton* button) {
    return button->showTimeout.has_value();
  });
  clock_->start(timeout ? timeout->value : 0, counts);
}

void KifoPopup::hideViewTimeout() {
  if (phase_ != Phase::shown) return;
  const auto self = weak_from_this().lock();
  const QPointer<KifoPopup> alive = this;
  const unsigned showing = showings_;
  const auto timeout = std::exchange(timeout_, std::nullopt);
  clock_->stop();
  if (timeout) callHost(tag(), timeout->action);
  if (alive != nullptr && showing == showings_) hideView();
}

void KifoPopup::updateShowTimeout() {
  clock_->tick();
}

void KifoPopup::showSecondsLeft() {
  for (KifoButton* button : buttons()) button->showSeconds(clock_->secondsLeft());
}

void KifoPopup::holdTimeout() {
  if (overlay_ == nullptr) return;
  const bool inside = pointerInside_ || overlay_->isEngaged();
  clock_->setHeld(inside && timeout_ && timeout_->pausesWhileInside);
}

// The user.

void KifoPopup::pressDefault() {
  auto* focused = qobject_cast<QAbstractButton*>(QApplication::focusWidget());
  if (focused != nullptr && card_->isAncestorOf(focused)) return focused->click();
  if (!buttons().empty()) return buttons().front()->click();
  if (mayClose()) hideView();
}

void KifoPopup::tapped(bool besideCard) {
  if (overlay_ == nullptr || appearance.disableTapGesture) return;
  QGuiApplication::inputMethod()->hide();
  QWidget* focused = QApplication::focusWidget();
  if (focused != nullptr && focused->testAttribute(Qt::WA_InputMethodEnabled)) overlay_->setFocus();
  if (besideCard && appearance.hideWhenBackgroundViewIsTapped) hideView();
}

void KifoPopup::followInputMethod() {
  QInputMethod* method = QGuiApplication::inputMethod();
  const auto follow = [this, method] {
    if (method->isVisible() && !method->keyboardRectangle().isEmpty()) {
      keyboardWillShow(method->keyboardRectangle().toAlignedRect());
    } else if (keyboardHasBeenShown_) {
      keyboardWillHide();
    }
  };
  connect(method, &QInputMethod::visibleChanged, overlay_, follow);
  connect(method, &QInputMethod::keyboardRectangleChanged, overlay_, follow);
  follow();
}

void KifoPopup::keyboardWillShow(const QRect& keyboard) {
  if (overlay_ == nullptr || (inputs().empty() && input().empty())) return;
  keyboardHasBeenShown_ = true;
  overlay_->setKeyboard(keyboard);
}

void KifoPopup::keyboardWillHide() {
  keyboardHasBeenShown_ = false;
  if (overlay_ != nullptr) overlay_->setKeyboard({});
}

}  // namespace kifo
