#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"

#include <algorithm>
#include <utility>

#include <QCloseEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QMouseEvent>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupAnswers.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupFade.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupKeyboard.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/FreeTextField.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoEmojiCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoPopupCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoSurveyCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/OptionButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PageIndicator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindowView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupEmojiRow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupListView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupPanel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupPictures.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/Accessibility.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/CloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/HostStyleSheet.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {
namespace {

constexpr double kDim = 0.3;   ///< Alpha of the black over the host.
constexpr int kLineStep = 48;  ///< An arrow key scrolls a tall panel by this much.

bool scrolls(int key) {
  return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
         key == Qt::Key_PageDown;
}

/// Keys that mean something to a popup; the host's shortcuts on them wait until it is closed.
bool isOurs(int key) {
  return scrolls(key) || key == Qt::Key_Escape || key == Qt::Key_Tab || key == Qt::Key_Backtab ||
         key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space ||
         key == Qt::Key_Left || key == Qt::Key_Right || key == Qt::Key_Home || key == Qt::Key_End;
}

}  // namespace

PopUpWindow::PopUpWindow(std::shared_ptr<const PopupRequest> request, PopUpOptions options,
                         QWidget* parent)
    : Overlay(parent, Qt::Tool | Qt::NoDropShadowWindowHint),
      request_(std::move(request)),
      options_(std::move(options)) {
  setObjectName("PopUpWindow");
  setFocusPolicy(Qt::ClickFocus);
  const PopupPreferences& p = request_->preferences;
  keepHostStyleOut(*this);
  setLayoutDirection(directionOf(
      p, options_, parent ? parent->layoutDirection() : QGuiApplication::layoutDirection()));
  state_ = PopupState::of(*request_, screenWidth());
  popUpWindowView_ = new PopUpWindowView(state_, options_, this);
  Console::print(PopupState::LOG_TAG, "popup type : " + p.type.value_or("nil"));
  nameIt();
  const PopupTheme& theme = popUpWindowView_->theme();
  fade_ = new PopupFade(
      std::chrono::milliseconds(theme.milliseconds(options_.durations.fade)),
      [this] { return isVisible(); }, this);
  keyboard_ = new PopupKeyboard(this);
  pictures_ = new PopupPictures(*popUpWindowView_, options_, this);
  if (state_.popupType == PopupType::emoji) {
    fillEmojis();
  } else {
    fillList();
  }
  pictures_->load();
  connectParts();
  wireButtons();
}

PopUpWindow::PopUpWindow(QDataStream& /*archive*/) : Overlay(nullptr, Qt::Tool) {
  fatalError("init(coder:) has not been implemented");
}

PopUpWindow::~PopUpWindow() = default;

void PopUpWindow::nameIt() {
  setAccessibleName(popUpWindowView_->content().name);
  setAccessibleDescription(popUpWindowView_->content().details);
  setAccessibleRole(this, QAccessible::Dialog);
}

void PopUpWindow::connectParts() {
  connect(keyboard_, &PopupKeyboard::moved, this, &PopUpWindow::place);
  connect(pictures_, &PopupPictures::due, this, &PopUpWindow::scrollImageListTimer);
  connect(pictures_, &PopupPictures::pageTurned, this, &PopUpWindow::showPage);
  connect(fade_, &PopupFade::began, popUpWindowView_, &PopUpWindowView::prepareOpacity);
  connect(fade_, &PopupFade::changed, this, &PopUpWindow::setOpacity);
  connect(fade_, &PopupFade::ended, this, &PopUpWindow::faded);
}

void PopUpWindow::wireButtons() {
  const PopupElements& e = popUpWindowView_->elements();
  connect(e.closeButton, &QAbstractButton::clicked, this, &PopUpWindow::closeButtonAction);
  connect(e.popupView, &PopupPanel::pressed, this, &PopUpWindow::touchesBegan);
  if (!e.submitButton) return;
  connect(e.submitButton, &QAbstractButton::clicked, this, &PopUpWindow::submitButtonPressed);
  e.submitButton->setDimmed(state_.waitsForChoice());
  if (e.textField) {
    connect(e.textField, &QLineEdit::returnPressed, e.submitButton,
            [button = e.submitButton] { button->setFocus(Qt::TabFocusReason); });
  }
}

void PopUpWindow::fillList() {
  PopupListView* list = popUpWindowView_->elements().buttonsTableview;
  if (!list) return;
  const PopupTheme& theme = popUpWindowView_->theme();
  const PopupState::Buttons& options = state_.options();
  for (std::size_t i = 0; i < options.size(); ++i) {
    if (!options[i]) continue;
    const int row = static_cast<int>(i);
    const OptionText& text = popUpWindowView_->content().options[i];
    if (state_.popupType == PopupType::popup) {
      auto* cell = new KifoPopupCell(theme, options[i], row, text, list->content());
      cell->actionItem = [this](const PopupState::Button& button) {
        press(state_.actionItem, button);
      };
      cell->setLineVisible(i + 1 < options.size());
      list->add({cell, cell->titleLbl(), [cell](int width) { return cell->heightFor(width); }});
    } else {
      auto* cell = new KifoSurveyCell(theme, options[i], row, text, list->content());
      cell->selectItem = [this](const PopupState::Button& button) { choose(button); };
      list->add({cell, cell->selectButton(), [cell](int width) { return cell->heightFor(width); }});
    }
  }
}

void PopUpWindow::fillEmojis() {
  PopupEmojiRow* emojis = popUpWindowView_->elements().emojiCollectionView;
  if (!emojis) return;
  for (std::size_t i = 0; i < state_.choices.size(); ++i) {
    if (!state_.choices[i]) continue;
    auto* cell = new KifoEmojiCollectionViewCell(popUpWindowView_->theme(), state_.choices[i],
                                                 static_cast<int>(i),
                                                 popUpWindowView_->content().options[i], emojis);
    cell->selectItem = [this](const PopupState::Button& button) { choose(button); };
    emojis->add(cell);
  }
}

QTimer* PopUpWindow::timer() const {
  return pictures_->timer();
}

void PopUpWindow::stopTimer() {
  pictures_->stopTimer();
}

void PopUpWindow::scrollImageListTimer() {
  const int next = state_.nextPage();
  pictures_->scrollTo(next, next != 0);
  showPage(next);
}

void PopUpWindow::showPage(int page) {
  state_.currentIndex = page;
  if (auto* indicator = popUpWindowView_->elements().pageIndicator) indicator->setCurrentPage(page);
}

double PopUpWindow::screenWidth() const {
  const int across = parentWidget() && !isWindow() ? parentWidget()->width() : width();
  return std::min(options_.screenWidth.value_or(across), PopupState::widestScreen);
}

void PopUpWindow::present() {
  if (presented_ || dismissing_) return;
  presented_ = true;
  coverHost();
  place();
  fade_->fadeTo(0);
  show();
  raise();
  takeFocus(this);
  fade_->fadeTo(1);
  announceOpening(this);
}

void PopUpWindow::choose(const PopupState::Button& button) {
  if (!takesAnswer()) return;
  state_.select(button);
  popUpWindowView_->showChoice();
}

void PopUpWindow::press(const PopupRequest::ButtonCallback& action,
                        const PopupState::Button& button) {
  if (!takesAnswer()) return;
  const QPointer<PopUpWindow> self(this);
  pressButton(state_, action, button);
  if (self) dismissView();
}

void PopUpWindow::submitButtonPressed() {
  if (!state_.appCommunicationItem || !popUpWindowView_ || !takesAnswer()) return;
  const QPointer<PopUpWindow> self(this);
  const SubmitOutcome outcome = submitAnswers(*request_, state_);
  if (!self) return;
  state_.isAnswering = outcome.closes;
  if (!outcome.closes) return;
  if (!outcome.keepsTimer) stopTimer();
  dismiss();
}

void PopUpWindow::closeButtonAction() {
  if (!takesAnswer()) return;
  dismissView();
  reportClose(*std::shared_ptr(request_), state_);
}

void PopUpWindow::touchesBegan() {
  if (const auto button = state_.bodyButton()) press(state_.actionBodyItem, button);
}

void PopUpWindow::dismissView() {
  stopTimer();
  dismiss();
}

void PopUpWindow::dismiss() {
  if (dismissing_) return;
  dismissing_ = true;
  giveFocusBack();
  setAttribute(Qt::WA_TransparentForMouseEvents);
  fade_->fadeTo(0);
}

void PopUpWindow::setOpacity(double opacity) {
  popUpWindowView_->setOpacity(opacity);
  setDimming(kDim * opacity);
}

void PopUpWindow::faded() {
  if (!dismissing_ || fade_->opacity() > 0 || std::exchange(gone_, true)) return;
  hide();
  deleteLater();
  Q_EMIT closed();
}

bool PopUpWindow::takesKey(int key) const {
  return isOurs(key);
}

void PopUpWindow::focusArrived(QWidget* widget, bool /*byUser*/) {
  popUpWindowView_->reveal(widget);
}

/// A popup that is a window of its own accepts the close: one that refuses would also refuse the
/// application's end, which asks every window. It goes without fading, for it is hidden at once.
void PopUpWindow::closeEvent(QCloseEvent* event) {
  event->setAccepted(isWindow());
  closeButtonAction();
}

void PopUpWindow::place() {
  if (!keyboard_) return;
  state_.setScreenWidth(screenWidth());
  state_.isKeyboardSizeAdded = keyboard_->height() > 0;
  const int lift = keyboard_->lift();
  popUpWindowView_->setPlace({0, -lift, width(), height()}, lift,
                             height() - keyboard_->height() + lift);
  if (QWidget* focused = window()->focusWidget(); focused && isAncestorOf(focused)) {
    popUpWindowView_->reveal(focused);
  }
}

void PopUpWindow::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_Escape) return closeButtonAction();
  const PopupElements& e = popUpWindowView_->elements();
  const int page = e.panelScroll->height() * 4 / 5;
  const int step = key == Qt::Key_PageUp || key == Qt::Key_PageDown ? page : kLineStep;
  const bool up = key == Qt::Key_Up || key == Qt::Key_PageUp;
  if (scrolls(key) && e.panelScroll->scrollBy(up ? -step : step)) return;
  if (hasFocus() && (key == Qt::Key_Down || key == Qt::Key_Right)) stepFocus(true);
}

void PopUpWindow::mousePressEvent(QMouseEvent* event) {
  pressing_ = event->button() == Qt::LeftButton;
  pressed_ = childAt(event->position().toPoint());
  pan_.press(event->globalPosition().toPoint());
}

void PopUpWindow::mouseMoveEvent(QMouseEvent* event) {
  if (!pressing_) return;
  const int travelled = pan_.move(event->globalPosition().toPoint());
  if (travelled != 0) scrollAround(pressed_, travelled);
}

/// A press that did not become a drag touches the popup's body, and ends typing as well.
void PopUpWindow::mouseReleaseEvent(QMouseEvent*) {
  if (!std::exchange(pressing_, false) || pan_.isPanning()) return;
  const QPointer<PopUpWindow> self(this);
  touchesBegan();
  if (self && !dismissing_ && state_.popupType != PopupType::popup) dismissKeyboard();
}

void PopUpWindow::dismissKeyboard() {
  FreeTextField* field = popUpWindowView_->elements().textField;
  if (!field || !field->hasFocus()) return;
  setFocus(Qt::OtherFocusReason);
  QGuiApplication::inputMethod()->hide();
}

void PopUpWindow::keyboardWillShow(const QRectF& keyboard) {
  keyboard_->show(keyboard);
}

void PopUpWindow::keyboardWillHide() {
  keyboard_->hide();
}

}  // namespace kifo
