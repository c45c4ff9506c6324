#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopup.h"

#include <QApplication>
#include <QInputMethod>
#include <QStyle>
#include <algorithm>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertCard.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertDisc.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertIconView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertOverlay.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertIcon.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/DisposeLater.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/Accessibility.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/CloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {

KifoPopup::KifoPopup() : KifoPopup(KifoAppearance()) {}

KifoPopup::KifoPopup(KifoAppearance theAppearance)
    : KifoAlert(std::move(theAppearance)), card_(new AlertCard) {
  connect(card_->closeImage, &QPushButton::clicked, this, &KifoPopup::hideView);
  connect(card_, &AlertCard::pointerInside, this, [this](bool inside) {
    pointerInside_ = inside;
    engagementChanged();
  });
  connect(card_, &AlertCard::edited, this, [this] {
    if (overlay_ == nullptr) return;
    overlay_->engage();
    card_->reveal(QApplication::focusWidget());
  });
}

KifoPopup::KifoPopup(QDataStream& /*archive*/) {
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

std::vector<AlertButton*> KifoPopup::buttonsInOrder() const {
  return {buttons().begin(), buttons().end()};
}

AlertButton& KifoPopup::makeButton(const QString& title) {
  KifoButton* button = card_->addButton(title);
  connect(button, &KifoButton::pressed, this, [this, button] { buttonTapDown(button); });
  connect(button, &KifoButton::released, this, [this, button] { buttonRelease(button); });
  connect(button, &KifoButton::clicked, this, [this, button] { buttonTapped(button); });
  // The one that only closes stays the last.
  const auto closing = std::ranges::find_if(card_->buttons, &AlertButton::onlyCloses);
  if (closing != card_->buttons.end()) std::rotate(closing, closing + 1, card_->buttons.end());
  return *button;
}

void KifoPopup::removeButton(AlertButton& button) {
  card_->removeButton(static_cast<KifoButton*>(&button));
}

KifoButton* KifoPopup::addButton(const QString& title, const QColor& backgroundColor,
                                 const QColor& textColor,
                                 const std::optional<ShowTimeoutConfiguration>& showTimeout,
                                 std::function<void()> action) {
  return static_cast<KifoButton*>(&addButtonWith({std::move(action), nullptr, {}}, title,
                                                 backgroundColor, textColor, showTimeout));
}

KifoButton* KifoPopup::addButton(const QString& title, std::function<void()> action) {
  return addButton(title, {}, {}, {}, std::move(action));
}

KifoButton* KifoPopup::addButton(const QString& title, const QColor& backgroundColor,
                                 const QColor& textColor,
                                 const std::optional<ShowTimeoutConfiguration>& showTimeout,
                                 QObject* target, const QByteArray& selector) {
  return static_cast<KifoButton*>(
      &addButtonWith({{}, target, selector}, title, backgroundColor, textColor, showTimeout));
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
  press(*button);
}

// Showing.

void KifoPopup::showTexts() {
  labelTitle()->setText(title());
  viewText()->setText(subTitle());
  if (overlay_ == nullptr) return;
  overlay_->setAccessibleName(title());
  overlay_->setAccessibleDescription(subTitle());
}

void KifoPopup::refresh() {
  card_->setIcon(icon());
  card_->setList(headerStr, datas);
  card_->setCustomSubview(customSubview);
  card_->closeImage->setLook(closeIcon, appearance.contentViewColor, std::nullopt);
  card_->closeImage->setVisible(hasCross());
  card_->dress(appearance, viewColor, buttonTextColor());
  if (overlay_ != nullptr) overlay_->place();
}

bool KifoPopup::open() {
  overlay_ = new AlertOverlay(AlertOverlay::hostFor(hostWindow), card_, &animator());
  connect(overlay_, &AlertOverlay::tapped, this, &KifoPopup::tapped);
  connect(overlay_, &AlertOverlay::enterPressed, this, &KifoPopup::pressDefault);
  connect(overlay_, &AlertOverlay::windowGone, this, [this] {
    overlay_ = nullptr;
    windowGone();
  });
  connect(overlay_, &AlertOverlay::escapePressed, this, [this] {
    if (mayClose()) hideView();
  });
  connect(overlay_, &AlertOverlay::engagementChanged, this, &KifoPopup::engagementChanged);
  showTexts();
  setAccessibleRole(overlay_, QAccessible::AlertMessage);
  pointerInside_ = keyboardHasBeenShown_ = false;
  overlay_->open(appearance.kDefaultShadowOpacity, type, firstFocus());
  followInputMethod();
  announceOpening(overlay_);
  return true;
}

QWidget* KifoPopup::firstFocus() const {
  if (QWidget* field = card_->firstField()) return field;
  if (!buttons().empty()) return buttons().front();
  return nullptr;
}

bool KifoPopup::mayMove() const {
  const int duration = QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration);
  return duration > 0 && KifoAlert::mayMove();
}

void KifoPopup::returnFocus() {
  overlay_->returnFocus();
}

void KifoPopup::close() {
  overlay_->disconnect(this);
  overlay_->dismantle();
  overlay_ = nullptr;
}

// The user.

void KifoPopup::engagementChanged() {
  if (overlay_ != nullptr) holdTimeout(pointerInside_ || overlay_->isEngaged());
}

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
  if (besideCard) tappedBackground();
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
