#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindow.h"

#include <algorithm>
#include <utility>

#include <QCloseEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/FreeTextField.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoEmojiCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoPopupCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoSurveyCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/OptionButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindowAnswer.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindowView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupEmojiRow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupFade.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupKeyboard.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupListView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupPanel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupPictures.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/Accessibility.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/HostStyleSheet.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/OverlayFocus.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupCloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupLabel.h"

namespace kifo {
namespace {

constexpr double kDim = 0.3;   ///< Alpha of the black over the host.
constexpr int kLineStep = 48;  ///< An arrow key scrolls a tall panel by this much.

const std::string& tag() {
  static const std::string& text = *new std::string(logTag("PopUpWindow"));
  return text;
}

QString describe(const PopupPreferences& p) {
  QStringList lines;
  for (const auto& text : {p.detailText, p.questionText}) {
    if (text && !text->empty()) lines << QString::fromStdString(*text);
  }
  return lines.join(QLatin1Char('\n'));
}

/// Right to left as soon as the campaign's own words are.
Qt::LayoutDirection directionOf(const PopupPreferences& p, const PopUpOptions& options,
                                const QWidget* host) {
  if (options.layoutDirection != Qt::LayoutDirectionAuto) return options.layoutDirection;
  for (const auto& text : {p.title, p.detailText, p.questionText}) {
    if (text && QString::fromStdString(*text).isRightToLeft()) return Qt::RightToLeft;
  }
  return host ? host->layoutDirection() : QGuiApplication::layoutDirection();
}

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
    : QWidget(parent), request_(std::move(request)), options_(std::move(options)) {
  if (!parent) {
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
  }
  setObjectName("PopUpWindow");
  setAttribute(Qt::WA_NoMousePropagation);
  setFocusPolicy(Qt::ClickFocus);
  setCursor(Qt::ArrowCursor);
  hide();
  const PopupPreferences& p = request_->preferences;
  keepHostStyleOut(*this);
  setLayoutDirection(directionOf(p, options_, parent));
  fields_ = PopupState::from(*request_, screenWidth());
  popUpWindowView_ = new PopUpWindowView(PopupHeights::of(fields_, p), p, options_, this);
  Console::print(tag(), "popup type : " + p.type.value_or("nil"));
  const bool titled = p.title && !p.title->empty();
  setAccessibleName(titled ? QString::fromStdString(*p.title) : options_.texts.popup);
  setAccessibleDescription(describe(p));
  setAccessibleRole(this, QAccessible::Dialog);
  focus_ = new OverlayFocus(this);
  fade_ = new PopupFade(
      std::chrono::milliseconds(popUpWindowView_->theme().milliseconds(options_.durations.fade)),
      this);
  keyboard_ = new PopupKeyboard(fields_, this);
  pictures_ = new PopupPictures(fields_, *popUpWindowView_, options_, this);
  answer_ = std::make_unique<PopUpWindowAnswer>(fields_, *popUpWindowView_);
  if (fields_.popupType == PopupType::emoji) {
    fillEmojis();
  } else {
    fillList();
  }
  pictures_->load();
  connectParts();
  wireButtons();
}

PopUpWindow::~PopUpWindow() = default;

void PopUpWindow::connectParts() {
  connect(focus_, &OverlayFocus::arrived, popUpWindowView_, &PopUpWindowView::reveal);
  connect(keyboard_, &PopupKeyboard::moved, this, &PopUpWindow::placeView);
  connect(fade_, &PopupFade::began, popUpWindowView_, &PopUpWindowView::prepareOpacity);
  connect(fade_, &PopupFade::ended, this, &PopUpWindow::faded);
  connect(fade_, &PopupFade::changed, this, [this](double opacity) {
    popUpWindowView_->setOpacity(opacity);
    update();
  });
}

void PopUpWindow::wireButtons() {
  const PopupElements& e = popUpWindowView_->elements();
  connect(e.closeButton, &QAbstractButton::clicked, this, &PopUpWindow::closeButtonAction);
  connect(e.popupView, &PopupPanel::pressed, this, &PopUpWindow::touchesBegan);
  if (!e.submitButton) return;
  connect(e.submitButton, &QAbstractButton::clicked, this, &PopUpWindow::submitButtonPressed);
  e.submitButton->setDimmed(e.emojiCollectionView || fields_.popupType == PopupType::survey);
  if (e.textField) {
    connect(e.textField, &QLineEdit::returnPressed, e.submitButton,
            [button = e.submitButton] { button->setFocus(Qt::TabFocusReason); });
  }
}

void PopUpWindow::fillList() {
  PopupListView* list = popUpWindowView_->elements().buttonsTableview;
  if (!list) return;
  const PopupTheme& theme = popUpWindowView_->theme();
  const bool plain = fields_.popupType == PopupType::popup;
  const auto& options = plain ? fields_.buttons : fields_.choices;
  const int rows = static_cast<int>(options.size());
  for (int row = 0; row < rows; ++row) {
    const Button& option = options[static_cast<std::size_t>(row)];
    if (!option) continue;
    if (plain) {
      auto* cell = new KifoPopupCell(theme, option, row, rows, list->content());
      cell->actionItem = [this](const Button& button) { press(fields_.actionItem, button); };
      cell->setLineVisible(row + 1 < rows);
      list->add({cell, cell->titleLbl(), [cell](int width) { return cell->heightFor(width); }});
    } else {
      auto* cell = new KifoSurveyCell(theme, option, row, rows, list->content());
      cell->selectItem = [this](const Button& button) {
        choose(&PopUpWindowAnswer::selectSurvey, button);
      };
      list->add({cell, cell->selectButton(), [cell](int width) { return cell->heightFor(width); }});
    }
  }
}

void PopUpWindow::fillEmojis() {
  PopupEmojiRow* emojis = popUpWindowView_->elements().emojiCollectionView;
  if (!emojis) return;
  const int rows = static_cast<int>(fields_.choices.size());
  for (int row = 0; row < rows; ++row) {
    const Button& choice = fields_.choices[static_cast<std::size_t>(row)];
    if (!choice) continue;
    auto* cell =
        new KifoEmojiCollectionViewCell(popUpWindowView_->theme(), choice, row, rows, emojis);
    cell->selectItem = [this](const Button& button) {
      choose(&PopUpWindowAnswer::selectEmoji, button);
    };
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
  pictures_->turnPage();
}

double PopUpWindow::screenWidth() const {
  const int across = parentWidget() && !isWindow() ? parentWidget()->width() : width();
  return std::min(options_.screenWidth.value_or(across), PopupState::widestScreen);
}

void PopUpWindow::present() {
  if (presented_ || dismissing_) return;
  presented_ = true;
  if (parentWidget()) {
    setGeometry(parentWidget()->rect());
    parentWidget()->installEventFilter(this);
  }
  placeView();
  fade_->fadeTo(0);
  show();
  raise();
  focus_->take(this);
  fade_->fadeTo(1);
  announceOpening(this);
}

void PopUpWindow::choose(void (PopUpWindowAnswer::*select)(const Button&), const Button& button) {
  if (!dismissing_) (*answer_.*select)(button);
}

/// Runs the host's `action`, which may do anything to us, and closes.
void PopUpWindow::press(const PopupRequest::ButtonCallback& action, const Button& button) {
  if (dismissing_) return;
  const QPointer<PopUpWindow> self(this);
  callHost(tag(), PopupRequest::ButtonCallback(action), button);
  if (self) dismissView();
}

void PopUpWindow::submitButtonPressed() {
  const auto item = fields_.appCommunicationItem;
  if (!item || !popUpWindowView_ || dismissing_) return;
  const QPointer<PopUpWindow> self(this);
  const auto request = request_;
  const auto all = answer_->answers();
  const bool keepsTimer = all.size() == 1 && all.front().openEndedField;
  const auto controller = fields_.controller;
  const auto pageName = fields_.pageName;
  const auto callback = fields_.submitButtonItem;
  if (item->submitButton) callHost(tag(), callback, item->submitButton);
  for (const InAppAnswer& answer : all) {
    if (request->reporter) request->reporter->answered(item, answer, controller.lock(), pageName);
  }
  if (!self || all.empty()) return;
  if (!keepsTimer) stopTimer();
  dismiss();
}

void PopUpWindow::closeButtonAction() {
  if (dismissing_) return;
  dismissView();
  const auto item = fields_.appCommuncationItem;
  if (!item || !request_->reporter) return;
  request_->reporter->answered(item, InAppAnswer{}, fields_.controller.lock(), fields_.pageName);
}

void PopUpWindow::touchesBegan() {
  const auto item = fields_.appCommunicationItem;
  if (dismissing_ || !item || !item->action) return;
  const auto button = std::make_shared<AppCommunicationItemButton>();
  button->action = item->action;
  press(fields_.actionBodyItem, button);
}

void PopUpWindow::dismissView() {
  stopTimer();
  dismiss();
}

void PopUpWindow::dismiss() {
  if (dismissing_) return;
  dismissing_ = true;
  focus_->giveBack();
  setAttribute(Qt::WA_TransparentForMouseEvents);
  fade_->fadeTo(0);
}

void PopUpWindow::faded() {
  if (!dismissing_ || fade_->opacity() > 0 || std::exchange(gone_, true)) return;
  hide();
  deleteLater();
  Q_EMIT closed();
}

bool PopUpWindow::focusNextPrevChild(bool next) {
  return focus_->step(next);
}

bool PopUpWindow::event(QEvent* event) {
  if (event->type() == QEvent::ShortcutOverride && isOurs(static_cast<QKeyEvent*>(event)->key())) {
    event->accept();
    return true;
  }
  return QWidget::event(event);
}

bool PopUpWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == parentWidget() && event->type() == QEvent::Resize) {
    setGeometry(parentWidget()->rect());
  }
  return QWidget::eventFilter(watched, event);
}

void PopUpWindow::resizeEvent(QResizeEvent*) {
  placeView();
}

/// The window manager's way of closing, for a popup that is a window of its own.
void PopUpWindow::closeEvent(QCloseEvent* event) {
  event->ignore();
  closeButtonAction();
}

void PopUpWindow::placeView() {
  fields_.imageViewHeight = PopupState::imageHeight(request_->preferences, screenWidth());
  const int lift = keyboard_->lift();
  popUpWindowView_->setPlace({0, -lift, width(), height()},
                             PopupHeights::of(fields_, request_->preferences), lift,
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
  if (hasFocus() && (key == Qt::Key_Down || key == Qt::Key_Right)) focus_->step(true);
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
  if (self && !dismissing_ && fields_.popupType != PopupType::popup) dismissKeyboard();
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

void PopUpWindow::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(),
                          QColor::fromRgbF(0, 0, 0, static_cast<float>(kDim * fade_->opacity())));
}

}  // namespace kifo
