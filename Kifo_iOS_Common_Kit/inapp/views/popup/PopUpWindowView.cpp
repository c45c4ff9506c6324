#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindowView.h"

#include <algorithm>
#include <cmath>

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/CustomSlider.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/FreeTextField.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupLayout.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupListView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupPanel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PanelShadow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupCloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupLabel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/WidgetOpacity.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

constexpr int kEdge =
    8;  ///< Least distance from the panel and the close button to the window's edge.
constexpr int kCloseButton = 40;
constexpr int kCloseGap = 8;  ///< From the close button down to the panel.
constexpr int kSmallestPanel = 120;
constexpr int kScrolledInset = 14;  ///< Keeps scrolled content clear of the panel's round corners.

}  // namespace

PopUpWindowView::PopUpWindowView(const PopupHeights& heights, PopupPreferences preferences,
                                 const PopUpOptions& options, QWidget* parent)
    : QWidget(parent),
      heights_(heights),
      popupPreferences_(std::move(preferences)),
      theme_(PopupTheme::of(popupPreferences_, options, parent ? parent->parentWidget() : nullptr)),
      elements_(PopupElements::build(popupPreferences_, theme_, this)),
      openness_(asksForFreeText(popupPreferences_) ? 1 : 0) {
  if (elements_.fieldView) elements_.fieldView->setVisible(openness_ > 0);
  connect(&opening_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { setOpenness(value.toDouble()); });
  wire();
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

void PopUpWindowView::setPlace(const QRect& geometry, const PopupHeights& heights, int visibleTop,
                               int visibleBottom) {
  heights_ = heights;
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
  sliderValue_ = value;
  elements_.scoreValueLabel->setLabel(QString::number(static_cast<qint64>(value)));
}

void PopUpWindowView::textFieldDidChange() {
  const QString text = elements_.textField->text();
  freeText_ = text.toStdString();
  elements_.textFieldCountLabel->setLabel(FreeTextRule::count(text));
}

void PopUpWindowView::copyButtonPressed() {
  const auto& item = popupPreferences_.appCommunicationItem;
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
  const auto& submit = *popupPreferences_.submitButton;
  elements_.submitButton->setDimmed(false);
  elements_.submitButton->setColors(colorOf(submit.color).value_or(Qt::white),
                                    colorOf(submit.textColor));
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
  connect(timerForShowScrollIndicator_, &QTimer::timeout, elements_.buttonsTableview,
          &PopupListView::flashScrollIndicators);
  timerForShowScrollIndicator_->start(theme_.options.durations.scrollIndicatorInterval);
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
  PopupLayout arrangement(elements_, heights_, theme_.options.keepsFreeTextRoom);
  placePanel(panel, arrangement.arrange(panel, openness_));
}

void PopUpWindowView::placePanel(int width, int contentHeight) {
  const auto [bandTop, bandBottom] = visibleBand_.value_or(std::pair(0, height()));
  const int highest = bandTop + kEdge + kCloseButton + kCloseGap;
  const int room = std::max(bandBottom - kEdge - highest, kSmallestPanel);
  const int panelHeight = std::min(contentHeight, room);
  const int lowest = std::max(bandBottom - kEdge - panelHeight, highest);
  const int top = std::clamp((height() - panelHeight) / 2, highest, lowest);
  const QRect panel((this->width() - width) / 2, top, width, panelHeight);
  const int inset = contentHeight > panelHeight ? kScrolledInset : 0;
  elements_.popupView->setGeometry(panel);
  elements_.contentView->resize(width, contentHeight);
  elements_.panelScroll->setGeometry(0, inset, width, panelHeight - 2 * inset);
  const QRect close(panel.right() + 1 - kCloseButton, panel.y() - kCloseGap - kCloseButton,
                    kCloseButton, kCloseButton);
  elements_.closeButton->setGeometry(QStyle::visualRect(layoutDirection(), panel, close));
  update();
}

void PopUpWindowView::resizeEvent(QResizeEvent*) {
  arrange();
}

void PopUpWindowView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.setOpacity(opacity_);
  if (theme_.panelFill.alpha() < 255) {  // the shadow must not be seen through the panel
    QPainterPath outside;
    outside.addRect(rect());
    outside.addRoundedRect(elements_.popupView->geometry(), PopupPanel::cornerRadius,
                           PopupPanel::cornerRadius);
    painter.setClipPath(outside);
  }
  PanelShadow::paint(painter, elements_.popupView->geometry(), PopupPanel::cornerRadius);
}

}  // namespace kifo
