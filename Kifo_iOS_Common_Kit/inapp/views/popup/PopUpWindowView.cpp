#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindowView.h"

#include <QApplication>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupHeights.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelShadow.h"
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
      content_(PopupContent::of(state, theme_)),
      elements_(PopupElements::build(state, content_, theme_, this)),
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
  const QFont font = grows ? PopupContent::heldScore(theme_) : content_.score.font;
  elements_.scoreValueLabel->setFace(font, content_.score.color);
  if (!grows) arrange();  // which makes a long number fit again
}

void PopUpWindowView::textFieldDidChange() {
  state_->freeText = elements_.textField->text().toStdString();
  elements_.textFieldCountLabel->setLook(PopupContent::counter(theme_, state_->freeText));
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
  const OptionText copied = PopupContent::copied(*item->coupon);
  elements_.copyButton->setEnabled(false);
  elements_.copyButton->setCaption(copied.caption);
  elements_.copyButton->setColors(copied.surface, copied.text);
}

void PopUpWindowView::enableSubmitButton() {
  if (!elements_.submitButton) return;
  elements_.submitButton->setDimmed(false);
  elements_.submitButton->setColors(content_.submit.surface.value_or(Qt::white),
                                    content_.submit.text);
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
  const bool isMirrored = layoutDirection() == Qt::RightToLeft;
  const int panel = panelWidth(theme_.options.screenWidth.value_or(width()));
  const PopupBoxes boxes = PopupLayout(elements_).arrange(
      PopupHeights::of(*state_), {.width = panel,
                                  .openness = openness_,
                                  .keepsFreeTextRoom = theme_.options.keepsFreeTextRoom,
                                  .isMirrored = isMirrored});
  const auto [top, bottom] = visibleBand_.value_or(std::pair(0, height()));
  show(placePanel({width(), height(), top, bottom}, panel, boxes, elements_.submitButton != nullptr,
                  isMirrored));
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

void PopUpWindowView::show(const PanelPlace& place) {
  const auto rect = [](const PopupBox& box) { return QRect(box.x, box.y, box.width, box.height); };
  elements_.popupView->setGeometry(rect(place.panel));
  if (PopupButton* submit = elements_.submitButton) {
    putSubmitInto(place.isSubmitFixed ? static_cast<QWidget*>(elements_.popupView)
                                      : elements_.contentView);
    if (place.isSubmitFixed) submit->setGeometry(rect(place.submit));
  }
  elements_.contentView->resize(place.panel.width, place.contentHeight);
  elements_.panelScroll->setGeometry(rect(place.scroll));
  elements_.closeButton->setGeometry(rect(place.close));
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
  PanelShadow::paint(painter, elements_.popupView->geometry(), kPanelCorner);
}

}  // namespace kifo
