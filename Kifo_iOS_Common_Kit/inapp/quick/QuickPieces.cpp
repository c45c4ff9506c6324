#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPieces.h"

#include <map>
#include <optional>
#include <utility>

#include <QCursor>
#include <QKeyEvent>
#include <QPainter>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelShadow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"

namespace kifo {
namespace {

using Part = QuickPiece::Part;

constexpr std::int64_t kLimit = 1 << 30;  ///< Whole as an int and as a float.
constexpr int kPages = 10;                ///< Page keys cross the range in this many steps.
constexpr int kGlideMilliseconds = 140;
constexpr double kSwipe = 0.2;         ///< Of the width, to turn a page.
constexpr double kSwipeThreshold = 8;  ///< Logical pixels before a press counts as a swipe.
constexpr int kRevealMargin = 8;
constexpr double kNotch = 72;  ///< What one notch of a wheel scrolls.
constexpr int kIndicatorInset = 2;
constexpr int kFlashMilliseconds = 1000;
constexpr int kAppearedMilliseconds = 150;
constexpr double kSmallFocusCorner = 8;

QRectF rect(const PopupBox& box) {
  return QRectF(box.x, box.y, box.width, box.height);
}

/// The piece of the panel that a part is or belongs to; none for what the panel lies in.
std::optional<PopupPiece> pieceOf(Part part) {
  static const std::map<Part, PopupPiece> pieces = {
      {Part::Title, PopupPiece::title},
      {Part::Picture, PopupPiece::picture},
      {Part::Carousel, PopupPiece::picture},
      {Part::Pages, PopupPiece::pageIndicator},
      {Part::Description, PopupPiece::description},
      {Part::Coupon, PopupPiece::couponLabel},
      {Part::Copy, PopupPiece::copyButton},
      {Part::Question, PopupPiece::question},
      {Part::List, PopupPiece::list},
      {Part::ListRow, PopupPiece::list},
      {Part::Emojis, PopupPiece::emojis},
      {Part::Emoji, PopupPiece::emojis},
      {Part::EmojiText, PopupPiece::emojis},
      {Part::Minimum, PopupPiece::minimum},
      {Part::Score, PopupPiece::score},
      {Part::Maximum, PopupPiece::maximum},
      {Part::Slider, PopupPiece::slider},
      {Part::FieldView, PopupPiece::fieldView},
      {Part::FieldLabel, PopupPiece::fieldLabel},
      {Part::Field, PopupPiece::field},
      {Part::Counter, PopupPiece::counter},
      {Part::Submit, PopupPiece::submit},
  };
  const auto found = pieces.find(part);
  return found == pieces.end() ? std::nullopt : std::optional(found->second);
}

bool isText(PopupPiece piece) {
  switch (piece) {
    case PopupPiece::title:
    case PopupPiece::description:
    case PopupPiece::question:
    case PopupPiece::fieldLabel:
      return true;
    default:
      return false;
  }
}

}  // namespace

QuickPiece::QuickPiece(QQuickItem* parent) : QQuickPaintedItem(parent) {}

void QuickPiece::setPart(Part part) {
  part_ = part;
  Q_EMIT partChanged();
}

void QuickPiece::setRow(int row) {
  row_ = row;
  Q_EMIT rowChanged();
}

void QuickPiece::componentComplete() {
  QQuickPaintedItem::componentComplete();
  for (QQuickItem* item = parentItem(); item && !popup_; item = item->parentItem()) {
    popup_ = qobject_cast<QuickPopup*>(item);
  }
  if (!popup_) return;
  connect(popup_, &QuickPopup::laidOut, this, &QuickPiece::follow);
  connect(popup_, &QuickPopup::changed, this, &QuickPiece::refresh);
  connect(popup_, &QuickPopup::remade, this, &QuickPiece::refresh);
  connect(popup_, &QuickPopup::pieceChanged, this, [this](PopupPiece piece) {
    if (pieceOf(part_) == piece) refresh();
  });
  const bool isEdges = part_ == PanelEdges || part_ == ListEdges;
  if (isEdges) connect(popup_, &QuickPopup::scrolled, this, [this] { update(); });
  follow();
}

void QuickPiece::follow() {
  const QRectF place = box();
  setPosition(place.topLeft());
  setSize(place.size());
  setVisible(isThere());
  Q_EMIT changed();
}

void QuickPiece::refresh() {
  setVisible(isThere());
  update();
  Q_EMIT changed();
}

QRectF QuickPiece::box() const {
  const PopupParts& p = parts();
  const PanelPlace& place = p.place();
  switch (part_) {
    case Shadow: {
      constexpr double kReach = 2.0 * PanelShadow::reach;
      return rect(place.panel).adjusted(-kReach, -kReach, kReach, kReach);
    }
    case Panel:
      return rect(place.panel);
    case Body:
      return {0, 0, 1.0 * place.panel.width, 1.0 * place.panel.height};
    case Close:
      return rect(place.close);
    case PanelScroll:
    case PanelEdges:
      return rect(place.scroll);
    case ListEdges:
      return rect(p.boxes().of(PopupPiece::list));
    case ListRow:
    case Emoji:
      return row_ < popup_->rows() ? parts().rows()[static_cast<std::size_t>(row_)].box : QRectF();
    case EmojiText: {
      const PopupBox& emojis = p.boxes().of(PopupPiece::emojis);
      return {0, 1.0 * emojis.y, p.place().panel.width * 1.0, emojis.height + 60.0};
    }
    case Slider:
      return rect(p.boxes().of(PopupPiece::slider))
          .adjusted(0, -ScoreLook::margin, 0, ScoreLook::margin);
    case Submit:
      return rect(place.isSubmitFixed ? place.submit : p.boxes().of(PopupPiece::submit));
    default:
      return rect(p.boxes().of(*pieceOf(part_)));
  }
}

bool QuickPiece::isThere() const {
  const PopupParts& p = parts();
  switch (part_) {
    case Picture:
      return p.has(PopupPiece::picture) && !p.has(PopupPiece::pageIndicator);
    case Carousel:
      return p.has(PopupPiece::pageIndicator);
    case List:
    case ListEdges:
      return p.has(PopupPiece::list) && popup_->rows() > 0;
    case EmojiText:
      return popup_->namedEmoji() >= 0;
    case FieldView:
      return p.has(PopupPiece::fieldView) && popup_->openness() > 0;
    default:
      break;
  }
  const auto piece = pieceOf(part_);
  return !piece || (p.has(*piece) && !(isText(*piece) && p.isEmpty(*piece)));
}

QString QuickPiece::label() const {
  if (!popup_) return {};
  const PopUpTexts& texts = parts().theme().options.texts;
  const PopupContent& content = parts().content();
  switch (part_) {
    case Body:
      return content.name;
    case Close:
      return texts.close;
    case Picture:
      return texts.image;
    case Carousel:
    case Pages:
      return texts.page.arg(popup_->state().currentIndex + 1).arg(popup_->pages());
    case List:
    case Emojis:
      return content.groupName;
    case ListRow:
    case Emoji:
      return row_ < popup_->rows() ? parts().rows()[static_cast<std::size_t>(row_)].text.name
                                   : QString();
    case Slider:
      return content.sliderName;
    case Field:
      return content.fieldName;
    case Copy: {
      const auto& item = popup_->state().appCommunicationItem;
      if (!popup_->isCopied() || content.copy.caption.isEmpty()) return content.copy.name;
      return PopupContent::copied(*item->coupon).caption;
    }
    case Submit:
      return content.submit.name;
    case EmojiText:
      return popup_->namedEmoji() < 0
                 ? QString()
                 : parts().rows()[static_cast<std::size_t>(popup_->namedEmoji())].text.caption;
    default: {
      const auto piece = pieceOf(part_);
      return piece ? parts().text(*piece) : QString();
    }
  }
}

QString QuickPiece::hint() const {
  if (!popup_ || part_ != Submit || !parts().submitLook().isDimmed) return {};
  return parts().theme().options.texts.chooseFirst;
}

bool QuickPiece::isOption() const {
  return part_ == Emoji || (part_ == ListRow && popup_ && !popup_->isPlain());
}

bool QuickPiece::isChosen() const {
  return popup_ && isOption() && row_ < popup_->rows() && popup_->isChosen(row_);
}

void QuickPiece::paint(QPainter* painter) {
  if (!popup_) return;
  PopupParts& p = parts();
  const PopupTheme& theme = p.theme();
  const QRectF bounds = boundingRect();
  switch (part_) {
    case Shadow: {
      constexpr double kReach = 2.0 * PanelShadow::reach;
      return PanelShadow::paint(*painter, bounds.adjusted(kReach, kReach, -kReach, -kReach),
                                kPanelCorner);
    }
    case Panel:
      return paintPanel(*painter, theme, bounds, false);
    case Body:
      if (!touch().hasKeyboard) return;
      painter->setRenderHint(QPainter::Antialiasing);
      return paintFocusRing(*painter, bounds, kPanelCorner, theme.panel, theme.accent);
    case Close:
      paintCloseButton(*painter, bounds, Qt::white, QColor(Qt::white), false, touch());
      return;
    case Picture:
    case Carousel:
      return paintPictures(*painter);
    case Pages:
      return paintPages(*painter, theme, bounds, popup_->pages(), popup_->state().currentIndex,
                        p.isMirrored());
    case Coupon:
      p.couponLook().paint(*painter, bounds);
      return p.paintText(PopupPiece::couponLabel, *painter, bounds);
    case Copy:
      return p.copyLook().paint(*painter, bounds, touch(), bounds);
    case Submit:
      return p.submitLook().paint(*painter, bounds, touch(), bounds);
    case ListRow: {
      const PopupParts::Row& each = p.rows()[static_cast<std::size_t>(row_)];
      if (popup_->isPlain()) return each.buttonLook.paint(*painter, bounds, touch(), bounds);
      each.optionLook.paint(*painter, bounds.toRect(), isChosen(), p.isMirrored(), touch());
      return p.paintRowText(each, *painter, bounds);
    }
    case Emoji: {
      EmojiLook look = p.rows()[static_cast<std::size_t>(row_)].emoji;
      look.isLoading = popup_->isLoading(-1 - row_);
      return look.paint(*painter, theme, bounds, isChosen(), touch());
    }
    case EmojiText:
      return paintEmojiText(*painter);
    case Field:
      return paintField(*painter, theme, bounds, false,
                        !childItems().isEmpty() && childItems().first()->hasActiveFocus());
    case PanelEdges:
    case ListEdges:
      return paintEdges(*painter);
    case PanelScroll:
    case List:
    case Emojis:
    case FieldView:
    case Slider:
      return;
    default:
      if (const auto piece = pieceOf(part_)) p.paintText(*piece, *painter, bounds);
  }
}

void QuickPiece::paintPictures(QPainter& painter) const {
  const PopupTheme& theme = parts().theme();
  const QRectF bounds = boundingRect();
  const bool isList = popup_->pages() > 1;
  const double offset = popup_->pageOffset();
  const int first = static_cast<int>(std::floor(offset));
  const int last = static_cast<int>(std::ceil(offset));
  for (int page = std::max(first, 0); page <= last && (page == 0 || page < popup_->pages());
       ++page) {
    const double pages = parts().isMirrored() ? offset - page : page - offset;
    painter.save();
    painter.translate(std::lround(pages * bounds.width()), 0);
    const QImage image = popup_->picture(page);
    const bool isLoading = popup_->isLoading(page);
    if (!image.isNull()) {
      paintPicture(painter, bounds, image);
    } else if (isList || popup_->state().preferences.image) {
      paintNoPicture(painter, theme, bounds, isLoading);
    }
    painter.restore();
    if (!isLoading || !image.isNull()) continue;
    painter.save();
    painter.translate(std::lround(pages * bounds.width()), 0);
    paintSpinner(painter, theme.ink, bounds, popup_->spinnerStep());
    painter.restore();
  }
  if (touch().hasKeyboard) {
    painter.setRenderHint(QPainter::Antialiasing);
    paintFocusRing(painter, bounds, kSmallFocusCorner, theme.panel, theme.accent);
  }
}

void QuickPiece::paintEdges(QPainter& painter) const {
  const auto* scroll = parentItem()->findChild<QuickScroll*>(
      part_ == PanelEdges ? QStringLiteral("panelScroll") : QStringLiteral("buttonsTableview"),
      Qt::FindDirectChildrenOnly);
  if (!scroll) return;
  const PopupTheme& theme = parts().theme();
  const QRectF bounds = boundingRect();
  const ScrollState state{scroll->contentY(), scroll->mostY(), scroll->height()};
  painter.save();
  paintScrollShade(painter, bounds, state, theme.panel, theme.ink, !scroll->wasScrolled());
  painter.restore();
  const int x = parts().isMirrored() ? kIndicatorInset
                                     : static_cast<int>(bounds.width()) -
                                           kScrollIndicatorThickness - kIndicatorInset;
  painter.translate(x, kIndicatorInset);
  const double height = std::max(bounds.height() - 2 * kIndicatorInset, 0.0);
  paintScrollIndicator(painter, QRectF(0, 0, kScrollIndicatorThickness, height), state, theme.ink,
                       scroll->strength());
}

/// The text of the emoji picked last, below it.
void QuickPiece::paintEmojiText(QPainter& painter) const {
  if (popup_->namedEmoji() < 0) return;
  const PopupParts::Row& emoji = parts().rows()[static_cast<std::size_t>(popup_->namedEmoji())];
  const QRectF all = rect(parts().boxes().of(PopupPiece::emojis));
  WrappedText text;
  text.setText(emoji.text.caption);
  text.setFont(parts().theme().font(TextRole::bound));
  const int wide = std::min(text.naturalWidth(), static_cast<int>(all.width()));
  const double middle = all.x() + emoji.box.center().x();
  const double left =
      std::clamp(middle - wide / 2.0, all.x(), std::max(all.right() - wide, all.x()));
  const QRectF place(std::floor(left), emoji.box.bottom(), wide, text.heightFor(wide));
  text.draw(painter, place, parts().theme().ink, place);
}

QuickControl::QuickControl(QQuickItem* parent) : QuickPiece(parent) {
  setAcceptedMouseButtons(Qt::LeftButton);
  setAcceptHoverEvents(true);
  setKeepMouseGrab(true);
  setCursor(Qt::PointingHandCursor);
}

bool QuickControl::isFocusStop() const {
  if (!popup() || !isVisible() || !isEnabled()) return false;
  if (part() == Body) return popup()->isPressable();
  return !isOption() || row() == popup()->stopRow();
}

void QuickControl::press() {
  switch (part()) {
    case Close:
      return popup()->closeButtonAction();
    case Submit:
      return popup()->submitButtonPressed();
    case Copy:
      return popup()->isCopied() ? void() : popup()->copyButtonPressed();
    case ListRow:
    case Emoji:
      return popup()->pressRow(row());
    case Body:
      return popup()->touchesBegan();
    default:
      return;
  }
}

/// A press on the panel's body is the overlay's: it may become a drag.
void QuickControl::componentComplete() {
  QuickPiece::componentComplete();
  if (part() != Body) return;
  setAcceptedMouseButtons(Qt::NoButton);
  setAcceptHoverEvents(false);
  unsetCursor();
}

void QuickControl::setPressed(bool pressed) {
  if (pressed == touch_.isPressed) return;
  touch_.isPressed = pressed;
  update();
}

void QuickControl::mousePressEvent(QMouseEvent* event) {
  event->accept();
  pan_.press(event->globalPosition().toPoint());
  dragged_ = false;
  const QPointer<QuickControl> self(this);
  forceActiveFocus(Qt::MouseFocusReason);
  if (self) setPressed(true);
}

void QuickControl::mouseMoveEvent(QMouseEvent* event) {
  const int travelled = pan_.move(event->globalPosition().toPoint());
  if (travelled != 0 && scrollAround(this, travelled)) dragged_ = true;
  setPressed(!dragged_ && contains(event->position()));
}

void QuickControl::mouseReleaseEvent(QMouseEvent*) {
  const bool presses = touch_.isPressed && !dragged_;
  setPressed(false);
  if (presses) press();
}

void QuickControl::mouseUngrabEvent() {
  setPressed(false);
}

void QuickControl::hoverEnterEvent(QHoverEvent* event) {
  event->accept();
  touch_.isHovered = true;
  update();
}

void QuickControl::hoverLeaveEvent(QHoverEvent* event) {
  event->accept();
  touch_.isHovered = false;
  update();
}

/// In a group that is one question only the option focused last is a stop of the Tab key.
bool QuickControl::rove(int key) {
  const bool mirrored = parts().isMirrored();
  int next = row();
  if (key == Qt::Key_Down || key == (mirrored ? Qt::Key_Left : Qt::Key_Right)) {
    ++next;
  } else if (key == Qt::Key_Up || key == (mirrored ? Qt::Key_Right : Qt::Key_Left)) {
    --next;
  } else if (key == Qt::Key_Home) {
    next = 0;
  } else if (key == Qt::Key_End) {
    next = popup()->rows() - 1;
  } else {
    return false;
  }
  for (QQuickItem* sibling : parentItem()->childItems()) {
    auto* option = qobject_cast<QuickControl*>(sibling);
    if (option && option->part() == part() && option->row() == next) {
      option->forceActiveFocus(Qt::TabFocusReason);
      break;
    }
  }
  return true;
}

void QuickControl::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  const bool isRow = part() == ListRow || part() == Emoji;
  if (isRow && rove(key)) return;
  const bool enters = key == Qt::Key_Return || key == Qt::Key_Enter;
  const bool presses = enters || key == Qt::Key_Space;
  if (!presses) return event->ignore();
  if (event->isAutoRepeat()) return;
  // Space presses as it is let go, as it does in any button.
  if (enters || part() == Body) return press();
  setPressed(true);
}

void QuickControl::keyReleaseEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Space || event->isAutoRepeat()) return event->ignore();
  const bool presses = touch_.isPressed;
  setPressed(false);
  if (presses) press();
}

void QuickControl::focusInEvent(QFocusEvent* event) {
  if (event->reason() != Qt::ActiveWindowFocusReason) {
    byKeyboard_ = event->reason() != Qt::MouseFocusReason;
  }
  touch_.hasKeyboard = byKeyboard_;
  if (part() == ListRow || part() == Emoji) popup()->setStopRow(row());
  update();
}

void QuickControl::focusOutEvent(QFocusEvent*) {
  touch_.hasKeyboard = false;
  setPressed(false);
  update();
}

QuickSlider::QuickSlider(QQuickItem* parent) : QuickControl(parent) {
  glide_.setEasingCurve(QEasingCurve::OutCubic);
  connect(&glide_, &QVariantAnimation::valueChanged, this,
          [this](const QVariant& value) { moveTo(value.toFloat()); });
}

void QuickSlider::componentComplete() {
  QuickControl::componentComplete();
  if (!popup()) return;
  const auto& item = popup()->state().appCommunicationItem;
  const auto whole = [](std::optional<std::int64_t> value) {
    return static_cast<int>(std::clamp<std::int64_t>(value.value_or(0), -kLimit, kLimit));
  };
  look_.minimum = item ? whole(item->minScore) : 0;
  look_.maximum = std::max(item ? whole(item->maxScore) : 0, look_.minimum);
  look_.position = static_cast<float>(look_.minimum);
  glide_.setDuration(parts().theme().milliseconds(std::chrono::milliseconds(kGlideMilliseconds)));
}

void QuickSlider::paint(QPainter* painter) {
  ScoreLook look = look_;
  look.isMirrored = parts().isMirrored();
  look.paint(*painter, parts().theme(), boundingRect(), touch());
}

void QuickSlider::setValue(double value) {
  glide_.stop();
  moveTo(static_cast<float>(std::trunc(value)));
}

void QuickSlider::moveTo(float position) {
  position =
      std::clamp(position, static_cast<float>(look_.minimum), static_cast<float>(look_.maximum));
  if (position == look_.position) return;
  look_.position = position;
  look_.isTouched = true;
  popup()->setScore(position);
  update();
  Q_EMIT valueChanged();
}

void QuickSlider::mousePressEvent(QMouseEvent* event) {
  event->accept();
  forceActiveFocus(Qt::MouseFocusReason);
  glide_.stop();
  look_.isTouched = true;
  touch_.isPressed = true;
  popup()->holdScore(true);
  mouseMoveEvent(event);
  update();
}

void QuickSlider::mouseMoveEvent(QMouseEvent* event) {
  ScoreLook look = look_;
  look.isMirrored = parts().isMirrored();
  if (touch_.isPressed) moveTo(look.positionAt(event->position().x(), width()));
}

/// The thumb glides to the whole score that is shown, which is the one that is sent.
void QuickSlider::mouseReleaseEvent(QMouseEvent*) {
  if (!std::exchange(touch_.isPressed, false)) return;
  popup()->holdScore(false);
  update();
  if (glide_.duration() == 0) return moveTo(static_cast<float>(value()));
  glide_.setStartValue(look_.position);
  glide_.setEndValue(static_cast<float>(value()));
  glide_.start();
}

/// A wheel that only passes by scrolls the panel and leaves the score alone.
void QuickSlider::wheelEvent(QWheelEvent* event) {
  if (!hasActiveFocus()) return event->ignore();
  setValue(value() + (event->angleDelta().y() > 0 ? 1 : -1));
}

void QuickSlider::keyPressEvent(QKeyEvent* event) {
  const double page = std::max(1.0, std::floor((maximumValue() - minimumValue()) / kPages));
  const double forwards = parts().isMirrored() ? -1 : 1;
  touch_.hasKeyboard = true;
  update();
  switch (event->key()) {
    case Qt::Key_Right:
      return setValue(value() + forwards);
    case Qt::Key_Left:
      return setValue(value() - forwards);
    case Qt::Key_Up:
      return setValue(value() + 1);
    case Qt::Key_Down:
      return setValue(value() - 1);
    case Qt::Key_PageUp:
      return setValue(value() + page);
    case Qt::Key_PageDown:
      return setValue(value() - page);
    case Qt::Key_Home:
      return setValue(minimumValue());
    case Qt::Key_End:
      return setValue(maximumValue());
    default:
      event->ignore();
  }
}

void QuickCarousel::mousePressEvent(QMouseEvent* event) {
  event->accept();
  forceActiveFocus(Qt::MouseFocusReason);
  swiping_ = false;
  swipeStart_ = event->position().x();
  swipeOffset_ = popup()->pageOffset();
}

void QuickCarousel::mouseMoveEvent(QMouseEvent* event) {
  const double travelled = event->position().x() - swipeStart_;
  swiping_ = swiping_ || std::abs(travelled) > kSwipeThreshold;
  if (!swiping_) return;
  const double pages = travelled / std::max(width(), 1.0);
  const double wanted = swipeOffset_ + (parts().isMirrored() ? pages : -pages);
  popup()->slideTo(std::clamp(wanted, 0.0, std::max(popup()->pages() - 1, 0) * 1.0));
}

/// A press without a swipe is one of the popup's body.
void QuickCarousel::mouseReleaseEvent(QMouseEvent*) {
  if (!std::exchange(swiping_, false)) return popup()->touchesBegan();
  const int current = popup()->state().currentIndex;
  const double turned = popup()->pageOffset() - current;
  popup()->turnTo(current + (turned > kSwipe ? 1 : turned < -kSwipe ? -1 : 0));
}

void QuickCarousel::keyPressEvent(QKeyEvent* event) {
  const int forwards = parts().isMirrored() ? -1 : 1;
  const int current = popup()->state().currentIndex;
  if (event->key() == Qt::Key_Right) return popup()->turnTo(current + forwards);
  if (event->key() == Qt::Key_Left) return popup()->turnTo(current - forwards);
  event->ignore();
}

QuickScroll::QuickScroll(QQuickItem* parent) : QuickPiece(parent) {
  setClip(true);
  fade_.setDuration(kFlashMilliseconds);
  fade_.setKeyValues({{0.0, 0.0}, {0.15, 1.0}, {0.6, 1.0}, {1.0, 0.0}});
  connect(&fade_, &QVariantAnimation::valueChanged, this, &QuickScroll::scrolled);
}

void QuickScroll::componentComplete() {
  QuickPiece::componentComplete();
  if (!popup()) return;
  popup()->addScroll(this);
  connect(popup(), &QuickPopup::laidOut, this, [this] { scrollBy(0); });
}

double QuickScroll::contentHeight() const {
  if (!popup()) return 0;
  if (part() == PanelScroll) return parts().place().contentHeight;
  const auto& rows = parts().rows();
  return rows.empty() ? 0 : rows.back().box.bottom();
}

double QuickScroll::strength() const {
  if (mostY() <= 0) return 0;
  if (parts().theme().options.reducedMotion) return 1;
  return fade_.state() == QAbstractAnimation::Running ? fade_.currentValue().toDouble() : 0;
}

bool QuickScroll::scrollBy(double pixels) {
  const double before = contentY_;
  contentY_ = std::clamp(contentY_ + pixels, 0.0, mostY());
  const bool moved = contentY_ != before;
  if (moved) {
    wasScrolled_ = true;
    // Scrolling keeps the bar fully visible: its time stands at the end of the fade in.
    if (fade_.state() != QAbstractAnimation::Running) fade_.start();
    fade_.setCurrentTime(kAppearedMilliseconds);
  }
  Q_EMIT scrolled();
  return moved;
}

void QuickScroll::reveal(const QQuickItem& descendant) {
  const double top = descendant.mapToItem(this, QPointF()).y();
  const double bottom = top + std::min(descendant.height(), height());
  if (top < kRevealMargin) scrollBy(top - kRevealMargin);
  if (bottom > height() - kRevealMargin) scrollBy(bottom + kRevealMargin - height());
}

void QuickScroll::flash() {
  if (mostY() <= 0 || parts().theme().options.reducedMotion) return;
  if (fade_.state() != QAbstractAnimation::Running) fade_.start();
}

void QuickScroll::wheelEvent(QWheelEvent* event) {
  const double pixels = event->pixelDelta().isNull() ? event->angleDelta().y() / 120.0 * kNotch
                                                     : event->pixelDelta().y();
  event->setAccepted(scrollBy(-pixels));
}

bool scrollAround(QQuickItem* from, double pixels) {
  for (QQuickItem* item = from; item; item = item->parentItem()) {
    auto* scroll = qobject_cast<QuickScroll*>(item);
    if (scroll && scroll->scrollBy(pixels)) return true;
  }
  return false;
}

}  // namespace kifo
