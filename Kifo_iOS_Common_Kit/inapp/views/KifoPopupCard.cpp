#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupCard.h"

#include <QEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyle>
#include <algorithm>
#include <cmath>
#include <limits>

#include "Kifo_iOS_Common_Kit/inapp/views/KifoButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupCloseButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupColors.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupDisc.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupIconView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupLabel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupList.h"
#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupSheet.h"

namespace kifo {
namespace {

constexpr int kWidestForText = 400;  // Wider lines are tiring to read.
constexpr int kWideningStep = 40;
constexpr int kBelowTitle = 4;
constexpr int kBorder = 1;
constexpr int kRoomForCircle = 220;  // A lower room is for the words.

int whole(double length) {
  return static_cast<int>(std::lround(std::clamp(length, 0.0, 10000.0)));
}

}  // namespace

KifoPopupCard::KifoPopupCard()
    : labelTitle(new KifoPopupLabel), viewText(new KifoPopupLabel), scroll_(new QScrollArea(this)) {
  scroll_->setObjectName(QLatin1String(KifoPopupSheet::kScrollName));
  scroll_->setFrameShape(QFrame::NoFrame);
  scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll_->setFocusPolicy(Qt::NoFocus);
  scroll_->viewport()->setObjectName(QLatin1String(KifoPopupSheet::kViewportName));
  contentView = new QWidget;
  contentView->setObjectName(QLatin1String(KifoPopupSheet::kContentName));
  contentView->installEventFilter(this);
  scroll_->setWidget(contentView);
  // After setWidget, which turns it on.
  contentView->setAutoFillBackground(false);
  scroll_->viewport()->setAutoFillBackground(false);
  labelTitle->setParent(contentView);
  viewText->setParent(contentView);
  list = new KifoPopupList(contentView);
  circleBG = new KifoPopupDisc(this);
  circleView = new KifoPopupDisc(circleBG);
  circleIconView = new KifoPopupIconView(circleView);
  closeImage = new KifoPopupCloseButton(this);
  closeImage->setVisible(false);
}

void KifoPopupCard::addField(QWidget* field) {
  field->setObjectName(QLatin1String(KifoPopupSheet::kFieldName));
  fields_.push_back(field);
  field->setVisible(true);
  Q_EMIT outgrown();
}

QLineEdit* KifoPopupCard::addTextField(const QString& title) {
  auto* field = new QLineEdit(contentView);
  field->setPlaceholderText(title);
  field->setAccessibleName(title);
  connect(field, &QLineEdit::textEdited, this, &KifoPopupCard::edited);
  inputs.push_back(field);
  addField(field);
  return field;
}

QPlainTextEdit* KifoPopupCard::addTextView() {
  auto* field = new QPlainTextEdit(contentView);
  field->setFrameShape(QFrame::NoFrame);
  field->setTabChangesFocus(true);
  connect(field, &QPlainTextEdit::textChanged, this, &KifoPopupCard::edited);
  input.push_back(field);
  addField(field);
  return field;
}

KifoButton* KifoPopupCard::addButton(const QString& title) {
  auto* button = new KifoButton(title, contentView);
  buttons.push_back(button);
  button->setVisible(true);
  Q_EMIT outgrown();
  return button;
}

void KifoPopupCard::removeButton(KifoButton* button) {
  std::erase(buttons, button);
  button->setVisible(false);
  button->deleteLater();
}

void KifoPopupCard::setCustomSubview(QWidget* view) {
  if (view == custom_) return;
  if (custom_ != nullptr) custom_->setParent(nullptr);
  custom_ = view;
  if (view == nullptr) return;
  customSize_ = view->testAttribute(Qt::WA_Resized) ? view->size() : QSize(0, 0);
  view->setParent(contentView);
  view->setVisible(true);
}

void KifoPopupCard::dress(const KifoAppearance& appearance, const QColor& color,
                          const QColor& buttonText) {
  appearance_ = appearance;
  const QColor card = appearance.contentViewColor;
  const QColor ink = KifoPopupColors::readable(appearance.subTitleColor, card);
  // A line or a ring in a colour that the card swallows would not be seen.
  const QColor accent = KifoPopupColors::contrast(color, card) < 1.3 ? ink : color;
  setStyleSheet(KifoPopupSheet::forCard(appearance, accent));
  labelTitle->setLook(appearance.kTitleFont, KifoPopupColors::readable(appearance.titleColor, card),
                      Qt::AlignHCenter);
  labelTitle->setMinimumScale(appearance.kTitleMinimumScaleFactor);
  viewText->setLook(appearance.kTextFont, ink, appearance.textViewAlignment);
  circleBG->setColor(appearance.circleBackgroundColor);
  circleView->setColor(color);
  for (KifoButton* button : buttons) dressButton(button, color, buttonText);
  update();
}

void KifoPopupCard::dressButton(KifoButton* button, const QColor& color, const QColor& text) const {
  KifoButton::Look look;
  look.background = button->customBackgroundColor.isValid() ? button->customBackgroundColor : color;
  look.text = KifoPopupColors::readable(
      button->customTextColor.isValid() ? button->customTextColor : text, look.background);
  const QColor card = appearance_.contentViewColor;
  if (KifoPopupColors::contrast(look.background, card) < 1.2) {
    look.border = KifoPopupColors::mixed(look.text, card, 0.3);
  }
  look.font = appearance_.kButtonFont;
  look.cornerRadius = appearance_.buttonCornerRadius;
  look.leastHeight = whole(appearance_.kButtonHeight);
  button->setLook(look);
}

int KifoPopupCard::overhang() const {
  if (!circleShown_) return 0;
  const double radius = appearance_.kCircleHeight / 2 + appearance_.kCircleBackgroundTopPosition;
  return whole(radius - appearance_.kCircleTopPosition);
}

int KifoPopupCard::contentTop() const {
  if (!circleShown_) return whole(appearance_.margin.titleTop / 2);
  return whole(std::max(appearance_.margin.titleTop,
                        appearance_.kCircleHeight / 2 + appearance_.kCircleTopPosition + 2));
}

int KifoPopupCard::titleInset() const {
  const int margin = whole(appearance_.margin.horizontal);
  return circleShown_ || closeImage->isHidden() ? margin : std::max(margin, closeImage->width());
}

int KifoPopupCard::widthOfButtonRow() const {
  int widest = 0;
  for (const KifoButton* button : buttons) widest = std::max(widest, button->sizeHint().width());
  const int count = static_cast<int>(buttons.size());
  return count * widest + std::max(0, count - 1) * whole(appearance_.margin.buttonSpacing);
}

int KifoPopupCard::chooseWidth(int widest) const {
  const int margins = 2 * whole(appearance_.margin.horizontal);
  int width = whole(appearance_.kWindowWidth);
  if (custom_ != nullptr) {
    int least = std::max(custom_->minimumWidth(), custom_->minimumSizeHint().width());
    if (!custom_->sizeHint().isValid()) least = std::max(least, customSize_.width());
    width = std::max(width, least + margins);
  }
  if (appearance_.buttonsLayout == KifoAlertButtonLayout::horizontal) {
    const int row = widthOfButtonRow() + margins;
    if (row <= widest) width = std::max(width, row);
  }
  while (width + kWideningStep <= std::min(widest, kWidestForText) &&
         viewText->heightForWidth(width - margins) > appearance_.kTextHeight) {
    width += kWideningStep;
  }
  return std::clamp(width, 1, std::max(1, widest));
}

int KifoPopupCard::heightOfCustomSubview(int width) const {
  const QSize hint = custom_->sizeHint();
  int height = hint.isValid() ? hint.height() : customSize_.height();
  if (custom_->sizePolicy().hasHeightForWidth()) height = custom_->heightForWidth(width);
  return std::clamp(height, custom_->minimumHeight(), custom_->maximumHeight());
}

std::vector<KifoPopupCard::Row> KifoPopupCard::rows(int width) const {
  const Margin& margin = appearance_.margin;
  const int inner = std::max(1, width - 2 * whole(margin.horizontal));
  std::vector<Row> rows;
  const int textHeight = viewText->heightForWidth(inner);
  if (!labelTitle->text().isEmpty()) {
    const int height = labelTitle->heightForWidth(std::max(1, width - 2 * titleInset()));
    rows.push_back({labelTitle, std::max(height, whole(appearance_.kTitleHeight)), 0});
  }
  if (textHeight > 0) {
    if (!rows.empty()) rows.back().gap = kBelowTitle;
    rows.push_back({viewText, textHeight, 0});
  }
  if (!rows.empty()) rows.back().gap = whole(margin.textViewBottom);
  const int spacing = whole(margin.textFieldSpacing);
  if (!list->isEmpty()) rows.push_back({list, list->heightForWidth(inner), spacing});
  for (QWidget* field : fields_) {
    const bool single = qobject_cast<QLineEdit*>(field) != nullptr;
    rows.push_back({field,
                    whole(single ? appearance_.kTextFieldHeight : appearance_.kTextViewdHeight),
                    spacing});
  }
  if (custom_ != nullptr) rows.push_back({custom_, heightOfCustomSubview(inner), spacing});
  return rows;
}

int KifoPopupCard::arrangeContents(int width, int slack, bool move) {
  const int margin = whole(appearance_.margin.horizontal);
  const bool titled = !labelTitle->text().isEmpty();
  int y = titled ? 0 : slack / 2;
  for (const Row& row : rows(width)) {
    const int inset = row.part == labelTitle ? titleInset() : margin;
    if (move) row.part->setGeometry(inset, y, std::max(1, width - 2 * inset), row.height);
    y += row.height + row.gap + (row.part == labelTitle ? slack / 2 : 0);
  }
  return arrangeButtons(y + slack - slack / 2, width, move) + whole(appearance_.margin.bottom);
}

int KifoPopupCard::arrangeButtons(int top, int width, bool move) {
  const int margin = whole(appearance_.margin.horizontal);
  const int spacing = whole(appearance_.margin.buttonSpacing);
  const int inner = std::max(1, width - 2 * margin);
  const int count = static_cast<int>(buttons.size());
  const bool inRow =
      appearance_.buttonsLayout == KifoAlertButtonLayout::horizontal && widthOfButtonRow() <= inner;
  if (!inRow) {
    int y = top;
    for (KifoButton* button : buttons) {
      const int height = button->heightForWidth(inner);
      if (move) button->setGeometry(margin, y, inner, height);
      y += height + spacing;
    }
    return count == 0 ? top : y - spacing;
  }
  int height = 0;
  for (int i = 0; i < count; ++i) {
    // The edges are rounded and not the widths, so that the row ends where the text does.
    const int left = margin + i * (inner + spacing) / count;
    const int right = margin + (i + 1) * (inner + spacing) / count - spacing;
    KifoButton* button = buttons[i];
    height = std::max(height, button->heightForWidth(right - left));
    if (!move) continue;
    const QRect place(left, top, right - left, button->heightForWidth(right - left));
    button->setGeometry(QStyle::visualRect(layoutDirection(), QRect(0, 0, width, 1), place));
  }
  return top + height;
}

void KifoPopupCard::arrange(const QSize& room) {
  const int width = chooseWidth(room.width());
  circleShown_ = circleWanted_;
  int natural = contentTop() + arrangeContents(width, 0, false);
  if (circleShown_ && overhang() + natural > room.height() && room.height() < kRoomForCircle) {
    circleShown_ = false;
    natural = contentTop() + arrangeContents(width, 0, false);
  }
  const int highest = std::max(1, room.height() - overhang());
  // Without buttons below it there would be nothing but emptiness under the text.
  const int least = buttons.empty() ? 0 : whole(appearance_.kWindowHeight);
  const int wanted = std::max(natural, least);
  const int height = std::min(wanted, highest);
  const bool tooHigh = natural > highest;
  const int contentWidth = tooHigh ? width - KifoPopupSheet::kScrollBarWidth : width;
  resize(width, overhang() + height);
  scroll_->setVerticalScrollBarPolicy(tooHigh ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
  scroll_->setGeometry(0, overhang() + contentTop(), width,
                       std::max(0, height - contentTop() - kBorder));
  const int slack = std::max(0, height - natural);
  const int contentHeight = arrangeContents(contentWidth, slack, true);
  contentView->resize(contentWidth, contentHeight);
  placeCircle(width);
  QRect corner(width - closeImage->width(), overhang(), closeImage->width(), closeImage->height());
  closeImage->move(QStyle::visualRect(layoutDirection(), QRect(0, 0, width, 1), corner).topLeft());
  update();
}

void KifoPopupCard::placeCircle(int width) {
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

void KifoPopupCard::reveal(QWidget* part) {
  if (scrolls() && contentView->isAncestorOf(part)) scroll_->ensureWidgetVisible(part, 0, 12);
}

QRect KifoPopupCard::panel() const {
  return rect().adjusted(0, overhang(), 0, 0);
}

bool KifoPopupCard::scrolls() const {
  return scroll_->verticalScrollBar()->maximum() > 0;
}

std::pair<int, int> KifoPopupCard::placeInReading(const QWidget* widget) const {
  while (widget != nullptr && widget->parentWidget() != contentView)
    widget = widget->parentWidget();
  if (widget == nullptr) return {std::numeric_limits<int>::max(), 0};
  const QRect place = widget->geometry();
  return {place.top(), isRightToLeft() ? -place.right() : place.left()};
}

bool KifoPopupCard::readsBefore(const QWidget* former, const QWidget* latter) const {
  return placeInReading(former) < placeInReading(latter);
}

QPainterPath KifoPopupCard::outline() const {
  QPainterPath path;
  const double radius = appearance_.contentViewCornerRadius;
  path.addRoundedRect(panel(), radius, radius);
  if (!circleShown_) return path;
  QPainterPath disc;
  disc.addEllipse(circleBG->geometry());
  return path.united(disc);
}

void KifoPopupCard::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(appearance_.contentViewBorderColor, kBorder));
  painter.setBrush(appearance_.contentViewColor);
  const double radius = appearance_.contentViewCornerRadius;
  painter.drawRoundedRect(QRectF(panel()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
}

void KifoPopupCard::enterEvent(QEnterEvent* event) {
  QWidget::enterEvent(event);
  Q_EMIT pointerInside(true);
}

void KifoPopupCard::leaveEvent(QEvent* event) {
  QWidget::leaveEvent(event);
  Q_EMIT pointerInside(false);
}

void KifoPopupCard::forget(const QObject* part) {
  std::erase(inputs, part);
  std::erase(input, part);
  std::erase(buttons, part);
  std::erase(fields_, part);
}

bool KifoPopupCard::eventFilter(QObject* watched, QEvent* event) {
  if (watched != contentView) return QWidget::eventFilter(watched, event);
  if (event->type() == QEvent::LayoutRequest) Q_EMIT outgrown();
  if (event->type() == QEvent::ChildRemoved) forget(static_cast<QChildEvent*>(event)->child());
  return QWidget::eventFilter(watched, event);
}

}  // namespace kifo
