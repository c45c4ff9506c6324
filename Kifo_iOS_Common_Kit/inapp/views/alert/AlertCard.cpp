#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertCard.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <algorithm>
#include <limits>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertDisc.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertIconView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertList.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertStyleSheet.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/CloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupScrollArea.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {
namespace {

constexpr int kBorder = 1;
constexpr int kCloseButton = 36;
constexpr double kTint = 0.12;        ///< Of the alert's colour in a button that stands back.
constexpr double kSeenSurface = 1.1;  ///< Contrast below which a button needs an outline.
constexpr int kRoomForCircle = 220;   // A lower room is for the words.

int whole(double length) {
  return AlertRows::whole(length);
}

TextLabel::Alignment alignmentOf(Qt::Alignment alignment) {
  if (alignment & Qt::AlignLeft) return TextLabel::Alignment::leading;
  if (alignment & Qt::AlignRight) return TextLabel::Alignment::trailing;
  return TextLabel::Alignment::center;
}

}  // namespace

AlertCard::AlertCard() : scroll_(new PopupScrollArea(false, this)) {
  scroll_->setObjectName(QLatin1String(AlertStyleSheet::kScrollName));
  scroll_->viewport()->setObjectName(QLatin1String(AlertStyleSheet::kViewportName));
  contentView = new QWidget;
  contentView->setObjectName(QLatin1String(AlertStyleSheet::kContentName));
  contentView->installEventFilter(this);
  scroll_->setWidget(contentView);
  // After setWidget, which turns it on.
  contentView->setAutoFillBackground(false);
  labelTitle = new TextLabel(contentView);
  viewText = new TextLabel(contentView);
  list = new AlertList(contentView);
  circleBG = new AlertDisc(this);
  circleView = new AlertDisc(circleBG);
  circleIconView = new AlertIconView(circleView);
  closeImage = new CloseButton(this);
  closeImage->setAccessibleName(tr("Close"));
  closeImage->setFixedSize(kCloseButton, kCloseButton);
  closeImage->setVisible(false);
}

void AlertCard::addField(QWidget* field) {
  field->setObjectName(QLatin1String(AlertStyleSheet::kFieldName));
  fields.push_back(field);
  field->setVisible(true);
  Q_EMIT outgrown();
}

QLineEdit* AlertCard::addTextField(const QString& title) {
  auto* field = new QLineEdit(contentView);
  field->setPlaceholderText(title);
  field->setAccessibleName(title);
  connect(field, &QLineEdit::textEdited, this, &AlertCard::edited);
  inputs.push_back(field);
  addField(field);
  return field;
}

QPlainTextEdit* AlertCard::addTextView() {
  auto* field = new QPlainTextEdit(contentView);
  field->setFrameShape(QFrame::NoFrame);
  field->setTabChangesFocus(true);
  connect(field, &QPlainTextEdit::textChanged, this, &AlertCard::edited);
  input.push_back(field);
  addField(field);
  return field;
}

KifoButton* AlertCard::addButton(const QString& title) {
  auto* button = new KifoButton(title, contentView);
  buttons.push_back(button);
  button->setVisible(true);
  Q_EMIT outgrown();
  return button;
}

void AlertCard::removeButton(KifoButton* button) {
  std::erase(buttons, button);
  button->setVisible(false);
  button->deleteLater();
}

void AlertCard::setCustomSubview(QWidget* view) {
  if (view == customSubview) return;
  if (customSubview != nullptr) customSubview->setParent(nullptr);
  customSubview = view;
  if (view == nullptr) return;
  customSize = view->testAttribute(Qt::WA_Resized) ? view->size() : QSize(0, 0);
  view->setParent(contentView);
  view->setVisible(true);
}

void AlertCard::dress(const KifoAppearance& appearance, const QColor& color,
                      const QColor& buttonText) {
  appearance_ = appearance;
  const QColor card = appearance.contentViewColor;
  const QColor ink = textOn(card, appearance.subTitleColor, appearance.kTextFont);
  // A line or a ring in a colour that the card swallows would not be seen.
  const QColor accent = contrastRatio(color, card) < Contrast::mark ? ink : color;
  setStyleSheet(AlertStyleSheet::forCard(appearance, accent));
  scroll_->setColors(card, ink);
  labelTitle->setFace(appearance.kTitleFont,
                      textOn(card, appearance.titleColor, appearance.kTitleFont));
  viewText->setFace(appearance.kTextFont, ink, alignmentOf(appearance.textViewAlignment));
  circleBG->setColor(appearance.circleBackgroundColor);
  circleView->setColor(color);
  for (KifoButton* button : buttons) dressButton(button, color, buttonText);
  update();
}

void AlertCard::dressButton(KifoButton* button, const QColor& color, const QColor& text) const {
  KifoButton::Look look;
  const QColor card = appearance_.contentViewColor;
  const bool standsBack = button == closingButton && buttons.size() > 1;
  look.background = button->customBackgroundColor.isValid() ? button->customBackgroundColor
                    : standsBack                            ? mixed(card, color, kTint)
                                                            : color;
  look.text = textOn(look.background,
                     button->customTextColor.isValid() ? button->customTextColor
                     : standsBack                      ? color
                                                       : text,
                     appearance_.kButtonFont);
  if (contrastRatio(look.background, card) < kSeenSurface) {
    look.border = mixed(card, look.text, 0.3);
  }
  look.font = appearance_.kButtonFont;
  look.cornerRadius = appearance_.buttonCornerRadius;
  look.leastHeight = whole(appearance_.kButtonHeight);
  button->setLook(look);
}

int AlertCard::overhang() const {
  if (!circleShown_) return 0;
  const double radius = appearance_.kCircleHeight / 2 + appearance_.kCircleBackgroundTopPosition;
  return whole(radius - appearance_.kCircleTopPosition);
}

int AlertCard::contentTop() const {
  if (!circleShown_) return whole(appearance_.margin.titleTop / 2);
  return whole(std::max(appearance_.margin.titleTop,
                        appearance_.kCircleHeight / 2 + appearance_.kCircleTopPosition + 2));
}

int AlertCard::titleInset() const {
  const int margin = whole(appearance_.margin.horizontal);
  return circleShown_ || closeImage->isHidden() ? margin : std::max(margin, closeImage->width());
}

AlertRows AlertCard::rows() const {
  return {appearance_, *this, titleInset()};
}

void AlertCard::arrange(const QSize& room) {
  const int width = rows().chooseWidth(room.width());
  circleShown_ = circleWanted_;
  int natural = contentTop() + rows().height(width);
  if (circleShown_ && overhang() + natural > room.height() && room.height() < kRoomForCircle) {
    circleShown_ = false;
    natural = contentTop() + rows().height(width);
  }
  const int least = whole(appearance_.kWindowHeight);
  const int height = std::min(std::max(natural, least), std::max(1, room.height() - overhang()));
  resize(width, overhang() + height);
  placeContents(width, height, natural);
  placeCircle(width);
  placeCross(width);
  outline_ = makeOutline();
  update();
}

void AlertCard::placeContents(int width, int height, int natural) {
  const bool tooHigh = natural > height;
  // Only what scrolls is kept off the border: contents that fit reach it with their own margin.
  const int border = tooHigh ? kBorder : 0;
  scroll_->setGeometry(0, overhang() + contentTop(), width,
                       std::max(0, height - contentTop() - border));
  const int contentWidth = tooHigh ? width - ScrollIndicator::thickness : width;
  contentView->resize(contentWidth, rows().place(contentWidth, std::max(0, height - natural)));
}

void AlertCard::placeCross(int width) {
  const QRect corner(QPoint(width - closeImage->width(), overhang()), closeImage->size());
  closeImage->move(QStyle::visualRect(layoutDirection(), QRect(0, 0, width, 1), corner).topLeft());
}

void AlertCard::placeCircle(int width) {
  circleBG->setVisible(circleShown_);
  const int ring = whole(appearance_.kCircleBackgroundTopPosition);
  const int circle = whole(appearance_.kCircleHeight);
  const int disc = circle + 2 * ring;
  const int top = overhang() - disc / 2 + whole(appearance_.kCircleTopPosition);
  circleBG->setGeometry((width - disc) / 2, std::max(0, top), disc, disc);
  circleBG->setRim(appearance_.contentViewBorderColor, overhang() - std::max(0, top));
  circleView->setGeometry(ring, ring, circle, circle);
  const int icon = whole(appearance_.kCircleIconHeight * iconScale_);
  circleIconView->setGeometry((circle - icon) / 2, (circle - icon) / 2, icon, icon);
}

void AlertCard::reveal(QWidget* part) {
  if (scrolls() && contentView->isAncestorOf(part)) scroll_->reveal(part);
}

QRect AlertCard::panel() const {
  return rect().adjusted(0, overhang(), 0, 0);
}

QRect AlertCard::disc() const {
  return circleShown_ ? circleBG->geometry() : QRect();
}

bool AlertCard::scrolls() const {
  return scroll_->isScrollable();
}

std::pair<int, int> AlertCard::placeInReading(const QWidget* widget) const {
  while (widget != nullptr && widget->parentWidget() != contentView)
    widget = widget->parentWidget();
  if (widget == nullptr) return {std::numeric_limits<int>::max(), 0};
  const QRect place = widget->geometry();
  return {place.top(), isRightToLeft() ? -place.right() : place.left()};
}

bool AlertCard::readsBefore(const QWidget* former, const QWidget* latter) const {
  return placeInReading(former) < placeInReading(latter);
}

QPainterPath AlertCard::makeOutline() const {
  QPainterPath path;
  const double radius = appearance_.contentViewCornerRadius;
  path.addRoundedRect(panel(), radius, radius);
  if (!circleShown_) return path;
  QPainterPath disc;
  disc.addEllipse(circleBG->geometry());
  return path.united(disc);
}

void AlertCard::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(appearance_.contentViewBorderColor, kBorder));
  painter.setBrush(appearance_.contentViewColor);
  const double radius = appearance_.contentViewCornerRadius;
  painter.drawRoundedRect(QRectF(panel()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

void AlertCard::enterEvent(QEnterEvent* event) {
  QWidget::enterEvent(event);
  Q_EMIT pointerInside(true);
}

void AlertCard::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  Q_EMIT pointerInside(false);
}

void AlertCard::forget(const QObject* part) {
  std::erase(inputs, part);
  std::erase(input, part);
  std::erase(buttons, part);
  std::erase(fields, part);
}

bool AlertCard::eventFilter(QObject* watched, QEvent* event) {
  if (watched != contentView) return QWidget::eventFilter(watched, event);
  if (event->type() == QEvent::LayoutRequest) Q_EMIT outgrown();
  if (event->type() == QEvent::ChildRemoved) forget(static_cast<QChildEvent*>(event)->child());
  return QWidget::eventFilter(watched, event);
}

}  // namespace kifo
