#include "Kifo_iOS_Common_Kit/inapp/views/PopUpWindow.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QAccessible>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/views/FreeTextField.h"
#include "Kifo_iOS_Common_Kit/inapp/views/ImageLoader.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoEmojiCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoSurveyCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/OptionButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PageIndicator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopUpWindowView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupAccessibility.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupCarousel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupCloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupEmojiRow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupFocus.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupImageView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupLabel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupListView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupPanel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/PopupStyle.h"

namespace kifo {
namespace {

constexpr double kDim = 0.3;  ///< Alpha of the black over the host.
constexpr double kKeyboardLift = 0.5;
constexpr int kWidestPicture = 480;  ///< Logical pixels: the panel at its widest.
constexpr int kLineStep = 48;        ///< An arrow key scrolls a tall panel by this much.

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
  fields_ = PopUpWindowFields::from(*request_, screenWidth());
  popUpWindowView_ = new PopUpWindowView(PopUpWindowHeights::of(fields_, p), p, options_, this);
  Console::print(tag(), "popup type : " + p.type.value_or("nil"));
  const bool titled = p.title && !p.title->empty();
  setAccessibleName(titled ? QString::fromStdString(*p.title) : options_.texts.popup);
  setAccessibleDescription(describe(p));
  setAccessibleRole(this, QAccessible::Dialog);
  focus_ = new PopupFocus(this);
  connect(focus_, &PopupFocus::arrived, popUpWindowView_, &PopUpWindowView::reveal);
  connect(&fade_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { setOpacity(value.toDouble()); });
  connect(&fade_, &QVariantAnimation::finished, this, &PopUpWindow::faded);
  followInputMethod();
  if (fields_.popupType == PopupType::emoji) {
    fillEmojis();
  } else {
    fillList();
  }
  fillPictures();
  wireButtons();
}

PopUpWindow::~PopUpWindow() = default;

void PopUpWindow::wireButtons() {
  const PopUpWindowElements& e = popUpWindowView_->elements();
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
      cell->actionItem = [this](const Button& button) { press(button); };
      cell->setLineVisible(row + 1 < rows);
      list->add({cell, cell->titleLbl(), [cell](int width) { return cell->heightFor(width); }});
    } else {
      auto* cell = new KifoSurveyCell(theme, option, row, rows, list->content());
      cell->selectItem = [this](const Button& button) { selectSurvey(button); };
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
    cell->selectItem = [this](const Button& button) { selectEmoji(button); };
    emojis->add(cell);
  }
}

void PopUpWindow::fillPictures() {
  const PopUpWindowElements& e = popUpWindowView_->elements();
  if (!options_.imageLoader) {
    const int pixels = static_cast<int>(std::ceil(kWidestPicture * devicePixelRatioF()));
    options_.imageLoader = std::make_shared<ImageLoader>(QSize(pixels, pixels));
  }
  ImageLoader& loader = *options_.imageLoader;
  if (e.emojiCollectionView) {
    for (auto* cell : e.emojiCollectionView->cells()) cell->load(loader);
  }
  if (e.popupImageViewList) {
    Console::print(tag(), "image list avaliable");
    e.popupImageViewList->setImages(fields_.images, options_.imageLoader);
    e.pageIndicator->setNumberOfPages(static_cast<int>(fields_.images.size()));
    connect(e.popupImageViewList, &PopupCarousel::pageTurned, this, [this, e](int page) {
      fields_.currentIndex = page;
      e.pageIndicator->setCurrentPage(page);
      if (timer_) timer_->start();  // the page that the user chose stays its whole time
    });
    QTimer::singleShot(0, this, &PopUpWindow::startTimer);
    return;
  }
  Console::print(tag(), "image list unavaliable");
  const auto& image = request_->preferences.image;
  if (!image || !ImageLoader::isUrl(*image) || !e.popupImageView) return;
  e.popupImageView->setLoading();
  loader.load(*image, e.popupImageView,
              [view = e.popupImageView](const QImage& picture) { view->setImage(picture); });
}

void PopUpWindow::startTimer() {
  if (dismissing_ || timer_) return;
  timer_ = new QTimer(this);
  connect(timer_, &QTimer::timeout, this, &PopUpWindow::scrollImageListTimer);
  timer_->start(options_.durations.carouselInterval);
}

void PopUpWindow::stopTimer() {
  if (!timer_) return;
  timer_->stop();
  timer_->deleteLater();
  timer_ = nullptr;
}

void PopUpWindow::scrollImageListTimer() {
  PopupCarousel* list = popUpWindowView_->elements().popupImageViewList;
  if (!list) return;
  const int last = static_cast<int>(fields_.images.size()) - 1;
  const int next = fields_.currentIndex == last ? 0 : fields_.currentIndex + 1;
  list->setPagingEnabled(false);
  list->scrollToItem(next, 0, CollectionView::ScrollPosition::centeredHorizontally, next != 0);
  list->setPagingEnabled(true);
  fields_.currentIndex = next;
  popUpWindowView_->elements().pageIndicator->setCurrentPage(next);
}

double PopUpWindow::screenWidth() const {
  const int across = parentWidget() && !isWindow() ? parentWidget()->width() : width();
  return std::min(options_.screenWidth.value_or(across), PopUpWindowFields::widestScreen);
}

void PopUpWindow::present() {
  if (presented_ || dismissing_) return;
  presented_ = true;
  if (parentWidget()) {
    setGeometry(parentWidget()->rect());
    parentWidget()->installEventFilter(this);
  }
  placeView();
  setOpacity(0);
  show();
  raise();
  focus_->take();
  fadeTo(1);
  QAccessibleEvent announcement(this, QAccessible::Alert);
  QAccessible::updateAccessibility(&announcement);
}

void PopUpWindow::press(const Button& button) {
  if (dismissing_) return;
  const QPointer<PopUpWindow> self(this);
  const auto action = fields_.actionItem;
  callHost(tag(), action, button);
  if (self) dismissView();
}

void PopUpWindow::select(const Button& button) {
  fields_.selectActionItem = button;
  popUpWindowView_->enableSubmitButton();
  applyFreeTextRule(button);
}

void PopUpWindow::selectSurvey(const Button& button) {
  if (dismissing_) return;
  const auto row = fields_.rowOf(*button);
  const auto* list = popUpWindowView_->elements().buttonsTableview;
  for (auto* cell : list->findChildren<KifoSurveyCell*>())
    cell->setChosen(cell->indexPath() == row);
  select(button);
}

void PopUpWindow::selectEmoji(const Button& button) {
  if (dismissing_) return;
  fields_.currentSelected = fields_.rowOf(*button);
  for (auto* cell : popUpWindowView_->elements().emojiCollectionView->cells()) {
    cell->setChosen(cell->indexPath() == fields_.currentSelected);
  }
  select(button);
}

void PopUpWindow::applyFreeTextRule(const Button& button) {
  if (fields_.defaultFreeTextCheckBox.value_or(true)) return;
  if (button->freeTextQuestionCheckBox.value_or(false)) {
    popUpWindowView_->showFreeTextField();
  } else {
    popUpWindowView_->hideFreeTextField();
  }
}

/// What submitting sends, in order: the choice, if there is one, and then whatever the item's own
/// type asks for.
std::vector<InAppAnswer> PopUpWindow::answers() const {
  std::vector<InAppAnswer> all;
  const std::string& freeText = popUpWindowView_->freeText();
  if (const Button& chosen = fields_.selectActionItem) {
    auto& answer = all.emplace_back();
    answer.choice = chosen;
    answer.choiseField =
        ChoiseFieldModel{chosen->id.value_or(""), chosen->text.value_or(""), freeText};
  }
  const auto& type = fields_.appCommunicationItem->type;
  if (type == rawValue(PopupType::score)) {
    const float score = popUpWindowView_->sliderValue();
    if (!std::isfinite(score) || std::abs(score) >= 0x1p63f) {
      fatalError("the slider's value is no integer");
    }
    all.emplace_back().scoreField = ScoreFieldModel{static_cast<std::int64_t>(score), freeText};
  } else if (type == rawValue(PopupType::openEnded)) {
    all.emplace_back().openEndedField = OpenEndedFieldModel{freeText};
  }
  return all;
}

void PopUpWindow::submitButtonPressed() {
  const auto item = fields_.appCommunicationItem;
  if (!item || !popUpWindowView_ || dismissing_) return;
  const QPointer<PopUpWindow> self(this);
  const auto request = request_;
  const auto all = answers();
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
  auto button = std::make_shared<AppCommunicationItemButton>();
  button->action = item->action;
  const QPointer<PopUpWindow> self(this);
  const auto action = fields_.actionBodyItem;
  callHost(tag(), action, std::move(button));
  if (self) dismissView();
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
  fadeTo(0);
}

void PopUpWindow::fadeTo(double opacity) {
  const bool still = options_.reducedMotion || options_.durations.fade.count() <= 0 || !isVisible();
  fade_.stop();
  if (still) {
    setOpacity(opacity);
    QTimer::singleShot(0, this, &PopUpWindow::faded);
    return;
  }
  fade_.setStartValue(opacity_);
  fade_.setEndValue(opacity);
  fade_.setDuration(static_cast<int>(options_.durations.fade.count()));
  fade_.setEasingCurve(QEasingCurve::OutQuad);
  fade_.start();
}

void PopUpWindow::faded() {
  if (!dismissing_ || opacity_ > 0 || std::exchange(gone_, true)) return;
  hide();
  deleteLater();
  Q_EMIT closed();
}

void PopUpWindow::setOpacity(double opacity) {
  opacity_ = opacity;
  popUpWindowView_->setOpacity(opacity);
  update();
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
  fields_.imageViewHeight = PopUpWindowFields::imageHeight(request_->preferences, screenWidth());
  const int lift = static_cast<int>(keyboardHeight_ * kKeyboardLift);
  popUpWindowView_->setPlace({0, -lift, width(), height()},
                             PopUpWindowHeights::of(fields_, request_->preferences), lift,
                             height() - static_cast<int>(keyboardHeight_) + lift);
  if (QWidget* focused = window()->focusWidget(); focused && isAncestorOf(focused)) {
    popUpWindowView_->reveal(focused);
  }
}

void PopUpWindow::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_Escape) return closeButtonAction();
  const PopUpWindowElements& e = popUpWindowView_->elements();
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

void PopUpWindow::followInputMethod() {
  const QInputMethod* method = QGuiApplication::inputMethod();
  connect(method, &QInputMethod::visibleChanged, this, &PopUpWindow::keyboardMoved);
  connect(method, &QInputMethod::keyboardRectangleChanged, this, &PopUpWindow::keyboardMoved);
}

/// A keyboard that changes its height is one that goes and comes.
void PopUpWindow::keyboardMoved() {
  const QInputMethod* method = QGuiApplication::inputMethod();
  keyboardWillHide();
  if (method->isVisible()) keyboardWillShow(method->keyboardRectangle());
}

void PopUpWindow::keyboardWillShow(const QRectF& keyboard) {
  if (keyboard.height() <= 0 || fields_.isKeyboardSizeAdded) return;
  fields_.isKeyboardSizeAdded = true;
  keyboardHeight_ = keyboard.height();
  placeView();
}

void PopUpWindow::keyboardWillHide() {
  if (!std::exchange(fields_.isKeyboardSizeAdded, false)) return;
  keyboardHeight_ = 0;
  placeView();
}

void PopUpWindow::paintEvent(QPaintEvent*) {
  QPainter(this).fillRect(rect(), QColor::fromRgbF(0, 0, 0, static_cast<float>(kDim * opacity_)));
}

}  // namespace kifo
