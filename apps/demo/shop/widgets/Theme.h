#pragma once

#include <QColor>
#include <QFont>
#include <QPainter>
#include <QPalette>

/// The shop's colours, type and the few shapes that all its widgets share.
namespace kifo::shop::theme {

inline const QColor kInk(0x25, 0x28, 0x30);
inline const QColor kMuted(0x6D, 0x70, 0x78);
inline const QColor kPaper(0xF7, 0xF4, 0xEF);
inline const QColor kCard(0xFF, 0xFF, 0xFF);
inline const QColor kLine(0xE7, 0xE1, 0xD8);
inline const QColor kAccent(0xC9, 0x4A, 0x26);
inline const QColor kGreen(0x2C, 0x65, 0x58);
inline const QColor kSand(0xF0, 0xE5, 0xD5);
inline const QColor kBlush(0xF6, 0xDE, 0xD2);
inline const QColor kSky(0xDB, 0xE8, 0xEC);
inline const QColor kMoss(0xDD, 0xE8, 0xDC);
inline const QColor kNight(0x2A, 0x33, 0x4D);

/// Text of `pixels` height; the shop's own family where it is installed, the desktop's elsewhere.
QFont text(int pixels, QFont::Weight weight = QFont::Normal);
/// The font of the shop's name and of headlines.
QFont display(int pixels);

QPalette palette();

/// A rounded card with a soft shadow, which deepens with `lift` from 0 to 1. `bounds` has space for
/// the shadow: the card lies `kShadow` inside.
void paintCard(QPainter& painter, const QRectF& bounds, const QColor& fill, double lift = 0.0);
inline constexpr double kShadow = 12.0;
inline constexpr double kRadius = 16.0;

/// The ring inside the edge of what has the keyboard's focus.
void paintFocusRing(QPainter& painter, const QRectF& shape, double radius, const QColor& color);

}  // namespace kifo::shop::theme
