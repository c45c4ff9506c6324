#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPopup.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include <QAccessible>
#include <QGuiApplication>
#include <QInputMethod>
#include <QKeyEvent>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickWindow>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupAnswers.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPictures.h"
#include "Kifo_iOS_Common_Kit/inapp/quick/QuickScroll.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupFade.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupKeyboard.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

constexpr double kDim = 0.3;  ///< Alpha of the black over the host.
constexpr std::chrono::milliseconds kEmojiTextShown{1500};

/// The component of which every popup's items are made. Its engine is the SDK's own: the host's
/// may be gone before its window is, and a scene made without QML has none.
QQmlComponent& component() {
  static QQmlComponent* only = nullptr;
  if (!only) {
    auto* engine = new QQmlEngine(QCoreApplication::instance());
    only = new QQmlComponent(
        engine, QUrl(QStringLiteral("qrc:/qt-project.org/imports/Kifo/Popup.qml")), engine);
    QObject::connect(engine, &QObject::destroyed, [] { only = nullptr; });
  }
  return *only;
}

}  // namespace

QuickPopup::QuickPopup(std::shared_ptr<const PopupRequest> request, PopUpOptions options)
    : request_(std::move(request)),
      options_(std::move(options)),
      scrolling_(*this, options_.durations) {
  setObjectName(QStringLiteral("PopUpWindow"));
  Console::print(PopupState::LOG_TAG, "popup type : " + request_->preferences.type.value_or("nil"));
  const int fade = options_.reducedMotion ? 0 : static_cast<int>(options_.durations.fade.count());
  fade_ = new PopupFade(
      std::chrono::milliseconds(fade), [this] { return window() && isVisible(); }, this);
  keyboard_ = new PopupKeyboard(this);
  connect(keyboard_, &PopupKeyboard::moved, this, &QuickPopup::place);
  connect(fade_, &PopupFade::changed, this, [this](double opacity) {
    setDimming(kDim * opacity);
    Q_EMIT fadeChanged();
  });
  connect(fade_, &PopupFade::ended, this, &QuickPopup::faded);
  pictures_ = new QuickPictures(state_, options_, this);
  connect(pictures_, &QuickPictures::pieceChanged, this, &QuickPopup::pieceChanged);
  connect(pictures_, &QuickPictures::emojiCame, this, [this](int row, const QImage& image) {
    parts_->rows()[static_cast<std::size_t>(row)].emoji.image = image;
  });
  emojiTimer_.setSingleShot(true);
  connect(&emojiTimer_, &QTimer::timeout, this, [this] {
    namedEmoji_ = -1;
    Q_EMIT pieceChanged(PopupPiece::emojis);
  });
  connect(&opening_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    openness_ = value.toDouble();
    arrange();
  });
}

/// First the items, whose bindings read the popup.
QuickPopup::~QuickPopup() {
  delete view_;
}

double QuickPopup::fade() const {
  return fade_->opacity();
}

double QuickPopup::lift() const {
  return keyboard_->lift();
}

double QuickPopup::screenWidth() const {
  return std::min(options_.screenWidth.value_or(width()), PopupState::widestScreen);
}

QColor QuickPopup::fieldColor() const {
  return inkOn(parts_->theme().shade(0.05));
}

QColor QuickPopup::selectedColor() const {
  return inkOn(parts_->theme().accent);
}

void QuickPopup::present(QQuickWindow& window) {
  cover(window);
  state_ = PopupState::of(*request_, screenWidth());
  openness_ = state_.isFreeTextOpen ? 1 : 0;
  makeParts();
  makeItems();
  pictures_->load(*parts_, window.effectiveDevicePixelRatio());
  arrange();
  fade_->fadeTo(0);
  takeFocus(view_ ? view_.data() : this);
  fade_->fadeTo(1);
  if (view_) {
    QAccessibleEvent event(view_, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
  }
  scrolling_.start();
}

void QuickPopup::makeParts() {
  QPalette colors = QGuiApplication::palette();
  colors.setColor(QPalette::Window, window()->color());
  parts_ = std::make_unique<PopupParts>(
      state_, options_, colors,
      directionOf(state_.preferences, options_, QGuiApplication::layoutDirection()));
  if (parts_->has(PopupPiece::slider)) setScore(state_.sliderValue);
}

void QuickPopup::makeItems() {
  QQmlComponent& popups = component();
  view_ = qobject_cast<QQuickItem*>(popups.beginCreate(popups.engine()->rootContext()));
  if (!view_) return Console::print(PopupState::LOG_TAG, popups.errorString().toStdString());
  // The pieces look for their popup above them.
  view_->setParent(this);
  view_->setParentItem(this);
  popups.setInitialProperties(view_, {{QStringLiteral("popup"), QVariant::fromValue(this)}});
  popups.completeCreate();
}

/// The texts are set anew in the application's font and direction; what the user did stays.
void QuickPopup::remake() {
  if (!parts_) return;
  std::vector<QImage> emojis;
  for (PopupParts::Row& row : parts_->rows()) emojis.push_back(row.emoji.image);
  makeParts();
  for (std::size_t i = 0; i < emojis.size(); ++i) parts_->rows()[i].emoji.image = emojis[i];
  Q_EMIT remade();
  arrange();
  Q_EMIT changed();
}

void QuickPopup::place() {
  if (parts_) arrange();
}

void QuickPopup::arrange() {
  state_.setScreenWidth(screenWidth());
  state_.isKeyboardSizeAdded = keyboard_->height() > 0;
  const int lift = keyboard_->lift();
  const int height = static_cast<int>(this->height());
  parts_->arrange({static_cast<int>(width()), height, lift, height - keyboard_->height() + lift},
                  openness_);
  Q_EMIT laidOut();
  QQuickItem* focused = window() ? window()->activeFocusItem() : nullptr;
  if (focused && focused != this && isInside(focused)) focusArrived(focused, false);
}

// Answers.

bool QuickPopup::isChosen(int row) const {
  const auto& button = parts_->rows()[static_cast<std::size_t>(row)].button;
  const auto chosen = state_.popupType == PopupType::emoji && state_.selectActionItem
                          ? state_.currentSelected
                          : state_.chosenRow();
  return chosen && state_.choices[static_cast<std::size_t>(*chosen)] == button;
}

void QuickPopup::press(const PopupRequest::ButtonCallback& action,
                       const PopupState::Button& button) {
  if (!takesAnswer()) return;
  const QPointer<QuickPopup> self(this);
  pressButton(state_, action, button);
  if (self) dismissView();
}

void QuickPopup::pressRow(int row) {
  if (!isPlain()) return choose(row);
  press(state_.actionItem, parts_->rows()[static_cast<std::size_t>(row)].button);
}

void QuickPopup::choose(int row) {
  if (!takesAnswer()) return;
  const bool wasOpen = state_.isFreeTextOpen;
  state_.select(parts_->rows()[static_cast<std::size_t>(row)].button);
  if (state_.popupType == PopupType::emoji) {
    const bool hasText = !parts_->rows()[static_cast<std::size_t>(row)].text.caption.isEmpty();
    namedEmoji_ = hasText ? row : -1;
    emojiTimer_.start(kEmojiTextShown);
  }
  ButtonLook& submit = parts_->submitLook();
  submit.isDimmed = false;
  if (state_.preferences.submitButton) submit.surface = submit.surface.value_or(Qt::white);
  if (!state_.isFreeTextOpen) showFreeText();
  if (parts_->has(PopupPiece::fieldView)) moveOpennessTo(state_.isFreeTextOpen ? 1 : 0);
  Q_EMIT changed();
  if (wasOpen || !state_.isFreeTextOpen || !view_) return;
  if (auto* field = view_->findChild<QQuickItem*>(QStringLiteral("textField"))) {
    field->forceActiveFocus(Qt::TabFocusReason);
  }
}

void QuickPopup::moveOpennessTo(double openness) {
  opening_.stop();
  const int duration = parts_->theme().milliseconds(options_.durations.freeText);
  if (duration == 0 || openness == openness_) {
    openness_ = openness;
    return arrange();
  }
  opening_.setStartValue(openness_);
  opening_.setEndValue(openness);
  opening_.setDuration(duration);
  opening_.setEasingCurve(QEasingCurve::InOutQuad);
  opening_.start();
}

void QuickPopup::submitButtonPressed() {
  if (!state_.appCommunicationItem || !takesAnswer()) return;
  const QPointer<QuickPopup> self(this);
  const SubmitOutcome outcome = submitAnswers(*request_, state_);
  if (!self) return;
  state_.isAnswering = outcome.closes;
  if (!outcome.closes) return;
  if (!outcome.keepsTimer) pictures_->stopTimer();
  dismiss();
}

void QuickPopup::closeButtonAction() {
  if (!takesAnswer()) return;
  dismissView();
  reportClose(*std::shared_ptr(request_), state_);
}

void QuickPopup::touchesBegan() {
  if (const auto button = state_.bodyButton()) press(state_.actionBodyItem, button);
}

void QuickPopup::copyButtonPressed() {
  const auto& item = state_.appCommunicationItem;
  if (!item || !item->coupon) return;
  Platform::current()->pasteboard->setString(item->coupon->code.text);
  const OptionText look = PopupContent::copied(*item->coupon);
  copied_ = true;
  parts_->copyLook().caption.setText(look.caption);
  parts_->copyLook().surface = look.surface;
  parts_->copyLook().text = look.text;
  Q_EMIT changed();
}

void QuickPopup::setFreeText(const QString& text) {
  validator_.setBefore(text);
  const std::string typed = text.toStdString();
  if (typed == state_.freeText) return;
  state_.freeText = typed;
  showFreeText();
}

void QuickPopup::showFreeText() {
  parts_->setText(PopupPiece::counter, PopupContent::counter(parts_->theme(), state_.freeText));
  Q_EMIT freeTextChanged();
  Q_EMIT pieceChanged(PopupPiece::counter);
}

void QuickPopup::fieldDone() {
  auto* submit = view_->findChild<QQuickItem*>(QStringLiteral("submitButton"));
  if (submit && submit->isVisible()) submit->forceActiveFocus(Qt::TabFocusReason);
}

void QuickPopup::setScore(float value) {
  state_.sliderValue = value;
  showScore();
}

void QuickPopup::holdScore(bool holds) {
  holdsScore_ = holds;
  showScore();
  if (!holds) arrange();  // which makes a long number fit again
}

/// The value is a little larger while the thumb is held.
void QuickPopup::showScore() {
  TextLook look = parts_->content().score;
  look.text = QString::number(state_.score());
  if (holdsScore_) look.font = PopupContent::heldScore(parts_->theme());
  parts_->setText(PopupPiece::score, look);
  Q_EMIT pieceChanged(PopupPiece::score);
}

void QuickPopup::addScroll(QuickScroll* scroll) {
  scrolling_.add(scroll);
  connect(scroll, &QuickScroll::scrolled, this, &QuickPopup::scrolled);
}

void QuickPopup::setStopRow(int row) {
  if (row == stopRow_) return;
  stopRow_ = row;
  Q_EMIT changed();
}

// Closing.

void QuickPopup::dismissView() {
  pictures_->stopTimer();
  dismiss();
}

void QuickPopup::dismiss() {
  if (dismissing_) return;
  dismissing_ = true;
  giveFocusBack();
  fade_->fadeTo(0);
}

void QuickPopup::faded() {
  if (!dismissing_ || fade_->opacity() > 0 || std::exchange(gone_, true)) return;
  setVisible(false);
  deleteLater();
  Q_EMIT closed();
}

// Input.

bool QuickPopup::takesKey(int key) const {
  return QuickScrolling::isKey(key) || key == Qt::Key_Escape || key == Qt::Key_Tab ||
         key == Qt::Key_Backtab || key == Qt::Key_Return || key == Qt::Key_Enter ||
         key == Qt::Key_Space || key == Qt::Key_Left || key == Qt::Key_Right ||
         key == Qt::Key_Home || key == Qt::Key_End;
}

void QuickPopup::focusArrived(QQuickItem* item, bool /*byUser*/) {
  for (QQuickItem* around = item->parentItem(); around; around = around->parentItem()) {
    if (auto* scroll = qobject_cast<QuickScroll*>(around)) scroll->reveal(*item);
  }
}

void QuickPopup::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (key == Qt::Key_Escape) return closeButtonAction();
  if (scrolling_.scrollByKey(key)) return;
  const bool isFirst = window()->activeFocusItem() == view_;
  if (isFirst && (key == Qt::Key_Down || key == Qt::Key_Right)) return stepFocus(true);
  QuickOverlay::keyPressEvent(event);
}

void QuickPopup::pressed(QPointF position, QPoint global) {
  scrolling_.press(position, global);
}

void QuickPopup::moved(QPoint global) {
  scrolling_.move(global);
}

/// A press that did not become a drag touches the popup's body, and ends typing as well.
void QuickPopup::released() {
  if (!scrolling_.release()) return;
  const QPointer<QuickPopup> self(this);
  touchesBegan();
  if (self && !dismissing_ && !isPlain()) dismissKeyboard();
}

void QuickPopup::dismissKeyboard() {
  const QQuickItem* focused = window()->activeFocusItem();
  if (!focused || focused->objectName() != QLatin1String("textField")) return;
  view_->forceActiveFocus(Qt::OtherFocusReason);
  QGuiApplication::inputMethod()->hide();
}

void QuickPopup::keyboardWillShow(const QRectF& keyboard) {
  setKeyboard(keyboard);
  keyboard_->show(keyboard);
}

void QuickPopup::keyboardWillHide() {
  setKeyboard({});
  keyboard_->hide();
}

}  // namespace kifo
