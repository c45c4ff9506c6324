#include "Kifo_iOS_Common_Kit/inapp/views/looks/ControlLooks.h"

#include <algorithm>

#include <QPainter>
#include <QTextBoundaryFinder>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupPalette.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/QtColors.h"

namespace kifo {
namespace {

// Buttons.
constexpr int kSidePadding = 12;
constexpr int kTextPadding = 8;         ///< Above and below the caption within the surface.
constexpr double kDimmedSurface = 0.3;  ///< Of the surface's colour in the panel's.
constexpr double kDimmedText = 0.5;     ///< Of ink in the surface.
constexpr double kSeenBorder = 1.25;    ///< Below this contrast a surface needs an outline.

// Rows of a survey.
constexpr int kRowInset = 3;  ///< Between two rows' surfaces, above and below each.
constexpr int kMarkStart = 12;
constexpr int kMark = 22;  ///< Diameter.
constexpr int kTextStart = 46;
constexpr int kTextEnd = 12;
constexpr int kRowPadding = 6;
constexpr double kRowCorner = 8;
constexpr double kSeenSurface = 1.1;  ///< Contrast from which a surface is seen on the panel.
constexpr double kTint = 0.06;        ///< Of ink in a surface that would not be seen.

// Emojis.
constexpr double kHalo = 46;
constexpr double kGrown = 2;  ///< On each side of an emoji that is pointed at or chosen.
constexpr int kPictorialPixels = 24;
constexpr int kLetterPixels = 16;

// The score.
constexpr double kTrackHeight = 10;
constexpr double kThumb = 20;  ///< Diameter.
constexpr double kHeldThumb = 24;
constexpr int kMostTicks = 10;
constexpr double kRingGap = 8;  ///< From the thumb to the bounds of its focus ring.

// The close button.
constexpr double kDisc = 32;
constexpr double kArm = 5;  ///< From the cross's middle to its ends, along each axis.
constexpr double kImage = 16;

QRectF centred(const QRectF& place, double side) {
  QRectF inner(0, 0, side, side);
  inner.moveCenter(place.center());
  return inner;
}

QRect visual(const QRect& box, const QRect& bounds, bool isMirrored) {
  if (!isMirrored) return box;
  return {bounds.left() + bounds.right() + 1 - box.left() - box.width(), box.top(), box.width(),
          box.height()};
}

}  // namespace

void paintFocusRing(QPainter& painter, const QRectF& bounds, double radius, const QColor& surface,
                    const QColor& accent) {
  const FocusRing ring = FocusRing::on(toColor(surface), toColor(accent));
  painter.setBrush(Qt::NoBrush);
  double inset = FocusRing::inset + FocusRing::width / 2;
  for (const Color& color : {ring.outer, ring.inner}) {
    painter.setPen(QPen(toQColor(color), FocusRing::width));
    const double corner = std::max(radius - inset, 0.0);
    painter.drawRoundedRect(bounds.adjusted(inset, inset, -inset, -inset), corner, corner);
    inset += FocusRing::width;
  }
}

ButtonLook::ButtonLook(const PopupTheme& theme, TextRole role, Qt::LayoutDirection direction)
    : theme_(theme), role_(role) {
  caption.setFont(theme.font(role));
  caption.setAlignment(WrappedText::Alignment::center, direction);
}

QColor ButtonLook::seenSurface() const {
  const QColor seen = surface ? over(*surface, theme_.panel) : theme_.panel;
  return isDimmed ? mixed(theme_.panel, seen, kDimmedSurface) : seen;
}

QColor ButtonLook::captionColor() const {
  const QColor behind = seenSurface();
  if (isDimmed) return theme_.text(role_, mixed(behind, inkOn(behind), kDimmedText), behind);
  return theme_.text(role_, text.value_or(inkOn(behind)), behind);
}

int ButtonLook::heightFor(int width) const {
  return caption.heightFor(width - 2 * kSidePadding) + 2 * (kTextPadding + inset);
}

void ButtonLook::paintSurface(QPainter& painter, const QRectF& bounds, const Touch& touch) const {
  const QColor seen = seenSurface();
  const double touched = touch.isPressed ? 0.16 : touch.isHovered ? 0.08 : 0.0;
  painter.setPen(Qt::NoPen);
  if (surface || touched > 0) {
    const bool asGiven = surface && !isDimmed && touched == 0;
    painter.setBrush(asGiven ? *surface : mixed(seen, inkOn(seen), touched));
    painter.drawRoundedRect(bounds, radius, radius);
  }
  if (surface && contrastRatio(seen, theme_.panel) < kSeenBorder) {
    painter.setPen(QPen(theme_.shade(0.3), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(bounds.adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
  }
}

void ButtonLook::paint(QPainter& painter, const QRectF& bounds, const Touch& touch,
                       const QRectF& clip) const {
  const QRectF seen = bounds.adjusted(0, inset, 0, -inset);
  painter.setRenderHint(QPainter::Antialiasing);
  paintSurface(painter, seen, touch);
  caption.draw(painter, seen.adjusted(kSidePadding, 0, -kSidePadding, 0), captionColor(), clip);
  if (touch.hasKeyboard) paintFocusRing(painter, seen, radius, seenSurface(), theme_.accent);
}

OptionLook::OptionLook(const PopupTheme& theme, const std::optional<QColor>& surface)
    : theme_(theme), surface_(surface) {}

QColor OptionLook::seenSurface() const {
  return surface_ ? over(*surface_, theme_.panel) : theme_.panel;
}

int OptionLook::heightFor(int text) {
  return text + 2 * (kRowPadding + kRowInset);
}

int OptionLook::textWidth(int width) {
  return width - kTextStart - kTextEnd;
}

QRect OptionLook::textRect(const QRect& bounds, bool isMirrored) {
  return visual(bounds.adjusted(kTextStart, 0, -kTextEnd, 0), bounds, isMirrored);
}

/// A row whose colour is the panel's is tinted, so that it is seen as a row.
QColor OptionLook::restingSurface(bool isChosen) const {
  const QColor surface = seenSurface();
  if (isChosen) return mixed(surface, theme_.accentOn(surface), 0.1);
  const bool seen = contrastRatio(surface, theme_.panel) >= kSeenSurface;
  return seen ? surface : mixed(surface, inkOn(surface), kTint);
}

void OptionLook::paintSurface(QPainter& painter, const QRectF& bounds, bool isChosen,
                              const Touch& touch) const {
  const QColor surface = seenSurface();
  const double touched = touch.isPressed ? 0.1 : touch.isHovered ? 0.04 : 0.0;
  painter.setPen(Qt::NoPen);
  painter.setBrush(mixed(restingSurface(isChosen), inkOn(surface), touched));
  painter.drawRoundedRect(bounds, kRowCorner, kRowCorner);
  if (!isChosen) return;
  painter.setPen(QPen(mixed(surface, theme_.accentOn(surface), 0.6), 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(bounds.adjusted(0.5, 0.5, -0.5, -0.5), kRowCorner, kRowCorner);
}

void OptionLook::paintMark(QPainter& painter, const QRectF& mark, bool isChosen) const {
  const QColor surface = seenSurface();
  const QColor line = isChosen ? theme_.accentOn(surface) : mixed(surface, inkOn(surface), 0.55);
  painter.setPen(QPen(line, 2));
  painter.setBrush(Qt::NoBrush);
  painter.drawEllipse(mark.adjusted(1, 1, -1, -1));
  if (!isChosen) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(line);
  painter.drawEllipse(mark.adjusted(6, 6, -6, -6));
}

void OptionLook::paint(QPainter& painter, const QRect& bounds, bool isChosen, bool isMirrored,
                       const Touch& touch) const {
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF surface = QRectF(bounds).adjusted(0, kRowInset, 0, -kRowInset);
  paintSurface(painter, surface, isChosen, touch);
  const QRect mark(bounds.x() + kMarkStart, bounds.y() + (bounds.height() - kMark) / 2, kMark,
                   kMark);
  paintMark(painter, visual(mark, bounds, isMirrored), isChosen);
  if (!touch.hasKeyboard) return;
  paintFocusRing(painter, surface, kRowCorner, restingSurface(isChosen), theme_.accent);
}

QString EmojiLook::substituteOf(const QString& text, int row) {
  if (text.isEmpty()) return QString::number(row + 1);
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  const auto end = finder.toNextBoundary();
  return end > 0 ? text.left(end) : QString();
}

void EmojiLook::paintSubstitute(QPainter& painter, const PopupTheme& theme,
                                const QRectF& place) const {
  const bool pictorial = !substitute.isEmpty() && !substitute.front().isLetterOrNumber();
  painter.setPen(QPen(theme.ink, 1.5));
  painter.setBrush(Qt::NoBrush);
  if (!pictorial || isLoading) painter.drawEllipse(place.adjusted(1, 1, -1, -1));
  if (isLoading) return;
  QFont font = theme.font(TextRole::description);
  font.setPixelSize(pictorial ? kPictorialPixels : kLetterPixels);
  painter.setFont(font);
  painter.setPen(theme.ink);
  painter.drawText(place, Qt::AlignCenter, substitute);
}

void EmojiLook::paintEmoji(QPainter& painter, const PopupTheme& theme, const QRectF& place) const {
  if (image.isNull()) return paintSubstitute(painter, theme, place);
  const QSizeF fitted = QSizeF(image.size()).scaled(place.size(), Qt::KeepAspectRatio);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(QRectF(place.center() - QPointF(fitted.width(), fitted.height()) / 2, fitted),
                    image);
}

void EmojiLook::paint(QPainter& painter, const PopupTheme& theme, const QRectF& bounds,
                      bool isChosen, const Touch& touch) const {
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF halo = centred(bounds, kHalo);
  const double shade = isChosen || touch.isPressed ? 0.12 : touch.isHovered ? 0.09 : 0.05;
  painter.setPen(isChosen ? QPen(theme.accent, 2) : QPen(Qt::NoPen));
  painter.setBrush(theme.shade(shade));
  painter.drawEllipse(halo.adjusted(1, 1, -1, -1));
  painter.setOpacity(isChosen ? selectedAlpha : otherAlpha);
  const double grown = isChosen || touch.isHovered ? kGrown : 0;
  paintEmoji(painter, theme, centred(bounds, button + 2 * grown));
  painter.setOpacity(1);
  if (!touch.hasKeyboard) return;
  paintFocusRing(painter, halo.adjusted(-5, -5, 5, 5), kHalo, theme.panel, theme.accent);
}

QRectF ScoreLook::trackRect(const QRectF& bounds) {
  return {bounds.x(), bounds.y() + bounds.height() / 2, bounds.width(), kTrackHeight};
}

float ScoreLook::positionAt(double x, double width) const {
  const double way = std::max(width - kThumb, 1.0);
  double along = std::clamp((x - kThumb / 2) / way, 0.0, 1.0);
  if (isMirrored) along = 1 - along;
  return static_cast<float>(minimum + along * (static_cast<double>(maximum) - minimum));
}

double ScoreLook::across(double score, const QRectF& track) const {
  const double span = static_cast<double>(maximum) - minimum;
  const double fraction = span > 0 ? (score - minimum) / span : 0;
  const double along = isMirrored ? 1 - fraction : fraction;
  return track.x() + kThumb / 2 + along * (track.width() - kThumb);
}

void ScoreLook::paintTrack(QPainter& painter, const PopupTheme& theme, const QRectF& track) const {
  painter.setPen(Qt::NoPen);
  painter.setBrush(theme.shade(0.18));
  painter.drawRoundedRect(track, kTrackHeight / 2, kTrackHeight / 2);
  if (isTouched) {
    QRectF filled = track;
    const double thumb = across(static_cast<double>(position), track);
    if (isMirrored) {
      filled.setLeft(thumb);
    } else {
      filled.setRight(thumb);
    }
    painter.setBrush(theme.accent);
    painter.drawRoundedRect(filled, kTrackHeight / 2, kTrackHeight / 2);
  }
  if (static_cast<double>(maximum) - minimum <= kMostTicks) paintTicks(painter, theme, track);
}

void ScoreLook::paintTicks(QPainter& painter, const PopupTheme& theme, const QRectF& track) const {
  for (int score = minimum; score <= maximum; ++score) {
    const bool filled = isTouched && static_cast<float>(score) <= position;
    painter.setBrush(filled ? inkOn(theme.accent) : theme.shade(0.55));
    painter.drawEllipse(QPointF(across(score, track), track.center().y()), 1.5, 1.5);
  }
}

void ScoreLook::paint(QPainter& painter, const PopupTheme& theme, const QRectF& control,
                      const Touch& touch) const {
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF track = trackRect(control.adjusted(0, margin, 0, -margin));
  paintTrack(painter, theme, track);
  const QPointF centre(across(static_cast<double>(position), track), track.center().y());
  const double radius = (touch.isPressed ? kHeldThumb : kThumb) / 2 - 0.5;
  if (isTouched) {
    painter.setBrush(Qt::white);
    painter.setPen(QPen(QColor(0, 0, 0, touch.isHovered || touch.isPressed ? 120 : 70), 1));
    painter.drawEllipse(centre, radius, radius);
  } else {
    painter.setBrush(theme.panel);
    painter.setPen(QPen(theme.accent, 2));
    painter.drawEllipse(centre, radius - 1, radius - 1);
  }
  if (!touch.hasKeyboard) return;
  const double ring = kThumb / 2 + kRingGap;
  const QRectF bounds(centre - QPointF(ring, ring), QSizeF(2 * ring, 2 * ring));
  paintFocusRing(painter, bounds, ring, theme.panel, theme.accent);
}

QRectF paintCloseButton(QPainter& painter, const QRectF& bounds, const QColor& behind,
                        const std::optional<QColor>& disc, bool hasImage, const Touch& touch) {
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor ground = disc.value_or(behind);
  const QColor ink = inkOn(ground);
  const double touched = touch.isPressed ? 0.16 : touch.isHovered ? 0.08 : 0.0;
  const QColor seen = mixed(ground, ink, touched);
  const QRectF place = centred(bounds, kDisc);
  painter.setPen(disc ? QPen(QColor(0, 0, 0, 40), 1) : QPen(Qt::NoPen));
  painter.setBrush(disc || touched > 0 ? QBrush(seen) : QBrush(Qt::NoBrush));
  painter.drawEllipse(place);
  if (!hasImage) {
    const QPointF middle = place.center();
    painter.setPen(QPen(ink, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(middle - QPointF(kArm, kArm), middle + QPointF(kArm, kArm));
    painter.drawLine(middle - QPointF(kArm, -kArm), middle + QPointF(kArm, -kArm));
  }
  if (touch.hasKeyboard) paintFocusRing(painter, place, kDisc / 2, seen, ink);
  return centred(bounds, kImage);
}

}  // namespace kifo
