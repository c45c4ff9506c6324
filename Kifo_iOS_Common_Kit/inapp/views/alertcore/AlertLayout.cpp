#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertLayout.h"

#include <QFontInfo>
#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelShadow.h"

namespace kifo {
namespace {

constexpr int kBorder = 1;
constexpr int kLeastForCircle =
    220;  ///< In a lower window the circle leaves its height to the text.
constexpr int kWidestForText = 400;  ///< Wider lines are tiring to read.
constexpr int kWideningStep = 40;
constexpr int kBelowTitle = 4;
constexpr int kRowPadding = 7;
constexpr int kColumnGap = 12;
constexpr int kButtonUpperPadding = 6;

}  // namespace

void AlertPlaces::paintShadow(QPainter& painter, double cornerRadius) const {
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  if (disc.isEmpty()) return PanelShadow::paint(painter, panel, cornerRadius);
  QPainterPath besideDisc;
  besideDisc.addRect(panel.adjusted(-PanelShadow::reach, -disc.height() - PanelShadow::reach,
                                    PanelShadow::reach, 2 * PanelShadow::reach));
  besideDisc.addEllipse(disc);
  painter.setClipPath(besideDisc);
  PanelShadow::paint(painter, panel, cornerRadius);
  const QRect above(0, disc.top() - PanelShadow::reach, card.width(),
                    panel.top() - disc.top() + PanelShadow::reach);
  painter.setClipRect(above);
  PanelShadow::paint(painter, disc, disc.width() / 2.0);
}

AlertLayout::AlertLayout(const KifoAppearance& appearance, const AlertContents& contents)
    : appearance_(appearance),
      contents_(contents),
      margin_(whole(appearance.margin.horizontal)),
      circleShown_(contents.hasCircle) {
  title_.setText(contents.title);
  title_.setAlignment(WrappedText::Alignment::center, contents.direction);
  text_.setText(contents.text);
  text_.setFont(appearance.kTextFont);
  text_.setAlignment(alignmentOf(appearance.textViewAlignment), contents.direction);
  header_.setFont(rowFont(appearance));
  header_.setAlignment(WrappedText::Alignment::leading, contents.direction);
  value_.setFont(appearance.kTextFont);
  value_.setAlignment(WrappedText::Alignment::leading, contents.direction);
}

WrappedText::Alignment AlertLayout::alignmentOf(Qt::Alignment alignment) {
  if (alignment & Qt::AlignLeft) return WrappedText::Alignment::leading;
  if (alignment & Qt::AlignRight) return WrappedText::Alignment::trailing;
  return WrappedText::Alignment::center;
}

int AlertLayout::whole(double length) {
  return static_cast<int>(std::lround(std::clamp(length, 0.0, 10000.0)));
}

int AlertLayout::buttonWidth(const QString& title, const QFont& font) {
  // One pixel more than measured: text of exactly the measured width may still be wrapped.
  return QFontMetrics(font).boundingRect(QRect(), Qt::AlignCenter, title).width() + 1 +
         2 * kButtonPadding;
}

int AlertLayout::buttonHeight(const QString& title, const QFont& font, int width, int least) {
  const QRect available(0, 0, std::max(1, width - 2 * kButtonPadding), 1 << 16);
  const int text = QFontMetrics(font).boundingRect(available, kButtonText, title).height();
  return std::max(least, text + 2 * kButtonUpperPadding);
}

QFont AlertLayout::rowFont(const KifoAppearance& appearance) {
  QFont font = appearance.kTextFont;
  font.setBold(true);
  return font;
}

QRect AlertLayout::mirrored(const QRect& rect, int width) const {
  if (contents_.direction != Qt::RightToLeft) return rect;
  return {width - rect.x() - rect.width(), rect.y(), rect.width(), rect.height()};
}

int AlertLayout::overhang() const {
  if (!circleShown_) return 0;
  const double radius = appearance_.kCircleHeight / 2 + appearance_.kCircleBackgroundTopPosition;
  return whole(radius - appearance_.kCircleTopPosition);
}

int AlertLayout::contentTop() const {
  if (!circleShown_) return whole(appearance_.margin.titleTop / 2);
  return whole(std::max(appearance_.margin.titleTop,
                        appearance_.kCircleHeight / 2 + appearance_.kCircleTopPosition + 2));
}

int AlertLayout::chooseWidth(int widest) const {
  int width = whole(appearance_.kWindowWidth);
  if (contents_.custom) width = std::max(width, contents_.custom->leastWidth + 2 * margin_);
  if (appearance_.buttonsLayout == KifoAlertButtonLayout::horizontal) {
    const int row = widthOfButtonRow() + 2 * margin_;
    if (row <= widest) width = std::max(width, row);
  }
  while (width + kWideningStep <= std::min(widest, kWidestForText) &&
         text_.heightFor(inner(width)) > appearance_.kTextHeight) {
    width += kWideningStep;
  }
  return std::clamp(width, 1, std::max(1, widest));
}

int AlertLayout::widthOfButtonRow() const {
  int widest = 0;
  for (const QString& title : contents_.buttons) {
    widest = std::max(widest, buttonWidth(title, appearance_.kButtonFont));
  }
  const int count = static_cast<int>(contents_.buttons.size());
  return count * widest + std::max(0, count - 1) * whole(appearance_.margin.buttonSpacing);
}

AlertPlaces AlertLayout::place(const QSize& available) {
  AlertPlaces places;
  circleShown_ = contents_.hasCircle;
  placeCard(places, available);
  placeCircle(places);
  const int side = kCloseButton;
  if (contents_.hasCross) {
    places.cross =
        mirrored({places.card.width() - side, places.panel.top(), side, side}, places.card.width());
  }
  return places;
}

void AlertLayout::placeCard(AlertPlaces& places, const QSize& available) {
  const int width = chooseWidth(available.width());
  int natural = contentTop() + placeContents(places, width, 0);
  if (circleShown_ && overhang() + natural > available.height() &&
      available.height() < kLeastForCircle) {
    circleShown_ = false;
    natural = contentTop() + placeContents(places, width, 0);
  }
  const int least = whole(appearance_.kWindowHeight);
  const int height =
      std::min(std::max(natural, least), std::max(1, available.height() - overhang()));
  places.card = {width, overhang() + height};
  places.panel = {0, overhang(), width, height};
  places.scrolls = natural > height;
  // Only what scrolls is kept off the border: contents that fit reach it with their own margin.
  const int border = places.scrolls ? kBorder : 0;
  places.viewport = {0, overhang() + contentTop(), width,
                     std::max(0, height - contentTop() - border)};
  const int contentWidth = places.scrolls ? width - kScrollBar : width;
  const int contentHeight = placeContents(places, contentWidth, std::max(0, height - natural));
  places.contents = {contentWidth, contentHeight};
}

void AlertLayout::placeCircle(AlertPlaces& places) const {
  const int ring = whole(appearance_.kCircleBackgroundTopPosition);
  const int circle = whole(appearance_.kCircleHeight);
  const int icon = whole(appearance_.kCircleIconHeight * contents_.iconScale);
  const int disc = circle + 2 * ring;
  const int top = overhang() - disc / 2 + whole(appearance_.kCircleTopPosition);
  if (!circleShown_) return;
  places.disc = {(places.card.width() - disc) / 2, std::max(0, top), disc, disc};
  places.circle = {ring, ring, circle, circle};
  places.icon = {(circle - icon) / 2, (circle - icon) / 2, icon, icon};
}

int AlertLayout::placeContents(AlertPlaces& places, int width, int slack) {
  // What there is to spare goes half above everything and half above the buttons, so that the title
  // and the text stay together.
  int y = placeTitle(places, slack / 2, width);
  const int spacing = whole(appearance_.margin.textFieldSpacing);
  const auto add = [&](int height) {
    const QRect rect(margin_, y, inner(width), height);
    y += height + spacing;
    return rect;
  };
  y = placeList(places, y, width);
  places.fields.clear();
  for (const bool isLine : contents_.fields) {
    places.fields.push_back(
        add(whole(isLine ? appearance_.kTextFieldHeight : appearance_.kTextViewdHeight)));
  }
  if (contents_.custom) places.custom = add(contents_.custom->heightFor(inner(width)));
  return placeButtons(places, y + slack - slack / 2, width) + whole(appearance_.margin.bottom);
}

int AlertLayout::placeTitle(AlertPlaces& places, int top, int width) {
  int y = top;
  int gap = 0;
  if (!title_.isEmpty()) {
    const int beside = circleShown_ || !contents_.hasCross ? margin_ : kCloseButton;
    const int inset = std::max(margin_, beside);
    const int available = std::max(1, width - 2 * inset);
    title_.setFont(appearance_.kTitleFont);
    title_.shrinkToFit(available, QFontInfo(appearance_.kTitleFont).pixelSize() *
                                      appearance_.kTitleMinimumScaleFactor);
    places.titleFont = title_.font();
    const int height = std::max(title_.heightFor(available), whole(appearance_.kTitleHeight));
    places.title = {inset, y, available, height};
    y += height;
    gap = kBelowTitle;
  }
  if (!text_.isEmpty()) {
    places.text = {margin_, y + gap, inner(width), text_.heightFor(inner(width))};
    y = places.text.bottom() + 1;
  }
  const bool isEmpty = title_.isEmpty() && text_.isEmpty();
  return isEmpty ? y : y + whole(appearance_.margin.textViewBottom);
}

AlertPlaces::Row AlertLayout::placeRow(const TypeData& row, int top, int width) {
  header_.setText(row.header);
  value_.setText(row.value);
  const int headerWidth = header_.naturalWidth();
  const int y = top + kRowPadding;
  AlertPlaces::Row where;
  where.isBeside = headerWidth + kColumnGap + value_.naturalWidth() <= width;
  if (where.isBeside) {
    const int valueWidth = width - headerWidth - kColumnGap;
    const int height = std::max(header_.heightFor(headerWidth), value_.heightFor(valueWidth));
    where.header = {0, y, headerWidth, height};
    where.value = {headerWidth + kColumnGap, y, valueWidth, height};
  } else {
    where.header = {0, y, width, header_.heightFor(width)};
    where.value = {0, y + where.header.height(), width, value_.heightFor(width)};
  }
  return where;
}

int AlertLayout::placeList(AlertPlaces& places, int top, int width) {
  places.rows.clear();
  if (contents_.heading.isEmpty() && contents_.rows.empty()) return top;
  const int listWidth = inner(width);
  int bottom = 0;
  if (!contents_.heading.isEmpty()) {
    header_.setText(contents_.heading);
    places.heading = {0, 0, listWidth, header_.heightFor(listWidth)};
    bottom = places.heading.height() + kRowPadding;
  }
  for (const TypeData& row : contents_.rows) {
    const bool isFirst = places.rows.empty() && contents_.heading.isEmpty();
    AlertPlaces::Row where = placeRow(row, bottom, listWidth);
    where.line = isFirst ? -1 : bottom;
    bottom = where.value.bottom() + 1 + kRowPadding;
    where.header = mirrored(where.header, listWidth);
    where.value = mirrored(where.value, listWidth);
    places.rows.push_back(where);
  }
  places.list = {margin_, top, listWidth, bottom};
  return top + bottom + whole(appearance_.margin.textFieldSpacing);
}

int AlertLayout::placeButtons(AlertPlaces& places, int top, int width) const {
  places.buttons.clear();
  if (contents_.buttons.empty()) return top;
  if (appearance_.buttonsLayout == KifoAlertButtonLayout::horizontal &&
      widthOfButtonRow() <= inner(width)) {
    return placeButtonRow(places, top, width);
  }
  const int spacing = whole(appearance_.margin.buttonSpacing);
  int y = top;
  for (const QString& title : contents_.buttons) {
    const int height = buttonHeight(title, appearance_.kButtonFont, inner(width),
                                    whole(appearance_.kButtonHeight));
    places.buttons.emplace_back(margin_, y, inner(width), height);
    y += height + spacing;
  }
  return y - spacing;
}

int AlertLayout::placeButtonRow(AlertPlaces& places, int top, int width) const {
  const int spacing = whole(appearance_.margin.buttonSpacing);
  const int count = static_cast<int>(contents_.buttons.size());
  const int stretch = inner(width) + spacing;
  int lowest = 0;
  for (int i = 0; i < count; ++i) {
    // The edges are rounded and not the widths, so that the row ends where the text does.
    const int left = margin_ + i * stretch / count;
    const int right = margin_ + (i + 1) * stretch / count - spacing;
    const int height =
        buttonHeight(contents_.buttons[static_cast<std::size_t>(i)], appearance_.kButtonFont,
                     right - left, whole(appearance_.kButtonHeight));
    lowest = std::max(lowest, height);
    places.buttons.push_back(mirrored({left, top, right - left, height}, width));
  }
  return top + lowest;
}

}  // namespace kifo
