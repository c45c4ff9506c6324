#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindowView.h"

#include <algorithm>
#include <cmath>

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupHeights.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelShadow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/CustomSlider.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/FreeTextField.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoEmojiCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoSurveyCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupEmojiRow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupLayout.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupListView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupPanel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/CloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/WidgetOpacity.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

constexpr int kEdge =
    8;  ///< Least distance from the panel and the close button to the window's edge.
constexpr int kCloseButton = 40;
constexpr int kCloseGap = 8;  ///< From the close button down to the panel.
constexpr int kSmallestPanel = 120;
constexpr int kSmallestScrolled = 160;    ///< What scrolls above a submit button that stays.
const QColor kWarning(0xC1, 0x27, 0x2D);  ///< Little is left to type.
constexpr int kGap = 8;                   ///< Around a submit button that stays in sight.
constexpr int kScrolledInset = 14;  ///< Keeps scrolled content clear of the panel's round corners.

/// The host's colours, over which the popup is seen.
QPalette paletteUnder(const QWidget* popup) {
  const QWidget* host = popup ? popup->parentWidget() : nullptr;
  return host ? host->palette() : QApplication::palette();
}

}  // namespace

PopUpWindowView::PopUpWindowView(PopupState& state, const PopUpOptions& options, QWidget* parent)
    : QWidget(parent),
      state_(&state),
      theme_(PopupTheme::of(state.preferences, options, paletteUnder(parent))),
      elements_(PopupElements::build(state, theme_, this)),
      openness_(state.isFreeTextOpen ? 1 : 0) {
  if (elements_.fieldView) elements_.fieldView->setVisible(openness_ > 0);
  connect(&opening_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { setOpenness(value.toDouble()); });
  wire();
}

PopUpWindowView::PopUpWindowView(QDataStream& /*archive*/) : state_(nullptr) {
  fatalError("init(coder:) has not been implemented");
}

PopUpWindowView::~PopUpWindowView() = default;

void PopUpWindowView::wire() {
  connect(elements_.panelScroll, &PopupScrollArea::scrollViewDidScroll, this,
          &PopUpWindowView::scrollViewDidScroll);
  if (elements_.buttonsTableview) {
    connect(elements_.buttonsTableview, &PopupScrollArea::scrollViewDidScroll, this,
            &PopUpWindowView::scrollViewDidScroll);
    showScrollIndicator();
  }
  if (elements_.slider) {
    connect(elements_.slider, &QSlider::sliderPressed, this, [this] { growScore(true); });
    connect(elements_.slider, &QSlider::sliderReleased, this, [this] { growScore(false); });
    sliderValueDidChange(elements_.slider->position());
    connect(elements_.slider, &CustomSlider::valueDidChange, this,
            &PopUpWindowView::sliderValueDidChange);
  }
  if (elements_.textField) {
    connect(elements_.textField, &QLineEdit::textChanged, this,
            &PopUpWindowView::textFieldDidChange);
  }
  if (elements_.copyButton) {
    connect(elements_.copyButton, &QAbstractButton::clicked, this,
            &PopUpWindowView::copyButtonPressed);
  }
}

void PopUpWindowView::setPlace(const QRect& geometry, int visibleTop, int visibleBottom) {
  visibleBand_ = {visibleTop, visibleBottom};
  setGeometry(geometry);
  arrange();
}

void PopUpWindowView::setOpacity(double opacity) {
  opacity_ = opacity;
  setPaintedOpacity(*elements_.popupView, opacity);
  setPaintedOpacity(*elements_.closeButton, opacity);
  update();
}

void PopUpWindowView::prepareOpacity() {
  preparePaintedOpacity(*elements_.popupView);
  preparePaintedOpacity(*elements_.closeButton);
}

void PopUpWindowView::reveal(QWidget* piece) {
  for (PopupScrollArea* area :
       {static_cast<PopupScrollArea*>(elements_.buttonsTableview), elements_.panelScroll}) {
    if (area && area->widget()->isAncestorOf(piece)) area->reveal(piece);
  }
}

void PopUpWindowView::sliderValueDidChange(float value) {
  state_->sliderValue = value;
  elements_.scoreValueLabel->setText(QString::number(state_->score()));
}

/// The value is a little larger while the thumb is held.
void PopUpWindowView::growScore(bool grows) {
  QFont font = theme_.font(TextRole::score);
  if (grows) font.setPixelSize(font.pixelSize() * 6 / 5);
  elements_.scoreValueLabel->setFace(font, elements_.scoreValueLabel->textColor());
  if (!grows) arrange();  // which makes a long number fit again
}

void PopUpWindowView::textFieldDidChange() {
  state_->freeText = elements_.textField->text().toStdString();
  const bool nearlyFull = static_cast<int>(state_->freeText.size()) >= FreeTextRule::warnsFrom;
  const QColor color = nearlyFull ? kWarning : theme_.shade(0.75);
  elements_.textFieldCountLabel->setFace(theme_.font(TextRole::counter),
                                         theme_.text(TextRole::counter, color),
                                         TextLabel::Alignment::trailing);
  elements_.textFieldCountLabel->setText(
      QString::fromStdString(FreeTextRule::count(state_->freeText)));
}

void PopUpWindowView::showChoice() {
  const auto row = state_->chosenRow();
  for (auto* cell : findChildren<KifoSurveyCell*>()) cell->setChosen(cell->indexPath() == row);
  for (auto* cell : findChildren<KifoEmojiCollectionViewCell*>()) {
    const bool chosen = cell->indexPath() == state_->currentSelected;
    cell->setChosen(chosen);
    if (chosen) elements_.emojiCollectionView->showText(*cell);
  }
  enableSubmitButton();
  if (state_->isFreeTextOpen) {
    const bool opens = elements_.fieldView && !elements_.fieldView->isVisibleTo(this);
    showFreeTextField();
    if (opens) elements_.textField->setFocus(Qt::TabFocusReason);
  } else {
    hideFreeTextField();
  }
}

void PopUpWindowView::copyButtonPressed() {
  const auto& item = state_->appCommunicationItem;
  if (!item || !item->coupon) return;
  Platform::current()->pasteboard->setString(item->coupon->code.text);
  const CouponCode& look = item->coupon->button.inactive;
  QColor surface = toQColor(colorFromHex(look.backgroundColor));
  surface.setAlphaF(0.5f);
  elements_.copyButton->setEnabled(false);
  elements_.copyButton->setCaption(QString::fromStdString(look.text));
  elements_.copyButton->setColors(surface, toQColor(colorFromHex(look.color)));
}

void PopUpWindowView::enableSubmitButton() {
  if (!elements_.submitButton) return;
  const auto& submit = *state_->preferences.submitButton;
  elements_.submitButton->setDimmed(false);
  elements_.submitButton->setColors(toQColor(colorOf(submit.color)).value_or(Qt::white),
                                    toQColor(colorOf(submit.textColor)));
}

void PopUpWindowView::showFreeTextField() {
  if (!elements_.fieldView) return;
  elements_.fieldView->show();
  moveOpennessTo(1);
}

void PopUpWindowView::hideFreeTextField() {
  if (!elements_.fieldView) return;
  elements_.textField->clear();
  moveOpennessTo(0);
}

void PopUpWindowView::moveOpennessTo(double openness) {
  opening_.stop();
  const int duration = theme_.milliseconds(theme_.options.durations.freeText);
  if (duration == 0 || !isVisible() || openness == openness_) return setOpenness(openness);
  opening_.setStartValue(openness_);
  opening_.setEndValue(openness);
  opening_.setDuration(duration);
  opening_.setEasingCurve(QEasingCurve::InOutQuad);
  opening_.start();
}

void PopUpWindowView::setOpenness(double openness) {
  openness_ = openness;
  // The animation's first value is where it starts: a block that opens begins closed, and hidden.
  elements_.fieldView->setVisible(openness > 0);
  arrange();
}

void PopUpWindowView::showScrollIndicator() {
  if (isEnableTimer_) {
    QTimer::singleShot(theme_.options.durations.scrollIndicatorDelay, this,
                       &PopUpWindowView::startFlashing);
  } else if (timerForShowScrollIndicator_) {
    delete timerForShowScrollIndicator_;
    timerForShowScrollIndicator_ = nullptr;
  }
}

void PopUpWindowView::startFlashing() {
  if (!isEnableTimer_ || timerForShowScrollIndicator_) return;
  timerForShowScrollIndicator_ = new QTimer(this);
  connect(timerForShowScrollIndicator_, &QTimer::timeout, this, [this] {
    if (elements_.buttonsTableview) elements_.buttonsTableview->flashScrollIndicators();
    elements_.panelScroll->flashScrollIndicators();
  });
  timerForShowScrollIndicator_->start(theme_.options.durations.scrollIndicatorInterval);
}

/// A panel that turns out to be taller than the window shows that it scrolls, as a list does.
void PopUpWindowView::showThatPanelScrolls() {
  if (flashesPanel_ || elements_.buttonsTableview || !elements_.panelScroll->isScrollable()) return;
  flashesPanel_ = true;
  showScrollIndicator();
}

void PopUpWindowView::scrollViewDidScroll(double offset) {
  if (offset <= 1.0) return;
  isEnableTimer_ = false;
  showScrollIndicator();
}

void PopUpWindowView::arrange() {
  const double screen =
      std::min<double>(theme_.options.screenWidth.value_or(width()), PopupState::widestScreen);
  const double margins = PopupState::margins(screen);
  const int panel = std::max(static_cast<int>(screen - margins), kSmallestPanel);
  PopupLayout layout(elements_, PopupHeights::of(*state_), theme_.options.keepsFreeTextRoom);
  placePanel(panel, layout.arrange(panel, openness_));
}

/// Keeps the submit button in sight at the foot of a panel that scrolls, where there is enough room
/// for it. Returns the height that it takes there, 0 when it scrolls with the rest.
int PopUpWindowView::pinSubmit(int panelHeight) {
  PopupButton* submit = elements_.submitButton;
  if (!submit) return 0;
  const int foot = submit->height() + 2 * kGap;
  if (panelHeight < foot + kSmallestScrolled) return 0;
  putSubmitInto(elements_.popupView);
  submit->move(kGap, panelHeight - kGap - submit->height());
  return foot;
}

void PopUpWindowView::unpinSubmit() {
  if (elements_.submitButton) putSubmitInto(elements_.contentView);
}

void PopUpWindowView::putSubmitInto(QWidget* parent) {
  PopupButton* submit = elements_.submitButton;
  if (submit->parentWidget() == parent) return;
  const bool focused = submit->hasFocus();
  const QPoint place = submit->pos();
  submit->setParent(parent);
  submit->move(place);
  submit->show();
  if (focused) submit->setFocus(Qt::OtherFocusReason);
}

void PopUpWindowView::placePanel(int width, int contentHeight) {
  const auto [bandTop, bandBottom] = visibleBand_.value_or(std::pair(0, height()));
  const int highest = bandTop + kEdge + kCloseButton + kCloseGap;
  const int room = std::max(bandBottom - kEdge - highest, kSmallestPanel);
  const int panelHeight = std::min(contentHeight, room);
  const int lowest = std::max(bandBottom - kEdge - panelHeight, highest);
  const int top = std::clamp((height() - panelHeight) / 2, highest, lowest);
  const QRect panel((this->width() - width) / 2, top, width, panelHeight);
  const bool scrolls = contentHeight > panelHeight;
  const int inset = scrolls ? kScrolledInset : 0;
  elements_.popupView->setGeometry(panel);
  const int foot = scrolls ? pinSubmit(panelHeight) : 0;
  if (foot == 0) unpinSubmit();
  elements_.contentView->resize(width, contentHeight - foot);
  elements_.panelScroll->setGeometry(0, inset, width, panelHeight - inset - std::max(inset, foot));
  const QRect close(panel.right() + 1 - kCloseButton, panel.y() - kCloseGap - kCloseButton,
                    kCloseButton, kCloseButton);
  elements_.closeButton->setGeometry(QStyle::visualRect(layoutDirection(), panel, close));
  showThatPanelScrolls();
  update();
}

void PopUpWindowView::resizeEvent(QResizeEvent*) {
  arrange();
}

void PopUpWindowView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.setOpacity(opacity_);
  PanelShadow::paint(painter, elements_.popupView->geometry(), PopupPanel::cornerRadius);
}

}  // namespace kifo
