#pragma once

#include <optional>

#include <QColor>
#include <QImage>
#include <QRectF>
#include <QString>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupTheme.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/WrappedText.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

class QPainter;

/// What the controls of popups and alerts look like, whichever toolkit they belong to. Each fills
/// its `bounds`, in logical pixels.
///
/// **Threading:** UI thread only.
namespace kifo {

/// How a control is being used, as far as that is seen.
struct Touch {
  bool isPressed = false;
  bool isHovered = false;
  bool hasKeyboard = false;  ///< It has the focus, and the keyboard brought it.
};

/// Shows that the keyboard is at a control of the colour `surface` that fills `bounds` with corners
/// of `radius`; `accent` colours the ring where it stands out.
KIFO_SHARED void paintFocusRing(QPainter& painter, const QRectF& bounds, double radius,
                                const QColor& surface, const QColor& accent);

/// A push button in a campaign's colours: a filled, rounded surface with its caption, or the
/// caption alone when the campaign gives no surface.
class KIFO_SHARED ButtonLook {
 public:
  ButtonLook(const PopupTheme& theme, TextRole role, Qt::LayoutDirection direction);

  WrappedText caption;
  std::optional<QColor> surface;
  std::optional<QColor> text;  ///< Ink when empty.
  double radius = 8;
  int inset = 0;          ///< Of the surface within the control, above and below.
  bool isDimmed = false;  ///< Looks as if it could not be used yet.

  [[nodiscard]] QColor captionColor() const;
  [[nodiscard]] int heightFor(int width) const;
  void paint(QPainter& painter, const QRectF& bounds, const Touch& touch, const QRectF& clip) const;

 private:
  [[nodiscard]] QColor seenSurface() const;
  void paintSurface(QPainter& painter, const QRectF& bounds, const Touch& touch) const;

  PopupTheme theme_;
  TextRole role_;
};

/// The surface and the radio mark of a survey's row; the text lies over it.
class KIFO_SHARED OptionLook {
 public:
  /// `surface`: the campaign's colour of the row, if it gives one.
  OptionLook(const PopupTheme& theme, const std::optional<QColor>& surface);

  /// What the text is painted on.
  [[nodiscard]] QColor seenSurface() const;
  /// The height of a row whose text needs `text`.
  [[nodiscard]] static int heightFor(int text);
  /// The width of the text in a row.
  [[nodiscard]] static int textWidth(int width);
  [[nodiscard]] static QRect textRect(const QRect& bounds, bool isMirrored);
  void paint(QPainter& painter, const QRect& bounds, bool isChosen, bool isMirrored,
             const Touch& touch) const;

 private:
  [[nodiscard]] QColor restingSurface(bool isChosen) const;
  void paintSurface(QPainter& painter, const QRectF& bounds, bool isChosen,
                    const Touch& touch) const;
  void paintMark(QPainter& painter, const QRectF& mark, bool isChosen) const;

  PopupTheme theme_;
  std::optional<QColor> surface_;
};

/// One emoji: its picture, otherwise the beginning of its text or its number, on a disc.
struct KIFO_SHARED EmojiLook {
  static constexpr double selectedAlpha = 1.0;
  static constexpr double otherAlpha = 0.4;
  static constexpr int button = 30;  ///< Width and height of the emoji itself.

  QImage image;
  QString substitute;
  bool isLoading = false;

  /// What stands in for a picture.
  static QString substituteOf(const QString& text, int row);
  void paint(QPainter& painter, const PopupTheme& theme, const QRectF& bounds, bool isChosen,
             const Touch& touch) const;

 private:
  void paintSubstitute(QPainter& painter, const PopupTheme& theme, const QRectF& place) const;
  void paintEmoji(QPainter& painter, const PopupTheme& theme, const QRectF& place) const;
};

/// The score slider: a thick track that begins at the middle line of its bounds, and a thumb,
/// hollow until it is first touched. Ranges of up to ten scores have a tick for each.
struct KIFO_SHARED ScoreLook {
  /// Above and below the bounds, for the focus ring and the larger thumb; the control is so much
  /// higher than its bounds.
  static constexpr int margin = 6;

  int minimum = 0;
  int maximum = 0;
  float position = 0;
  bool isTouched = false;
  bool isMirrored = false;

  /// The track within `bounds`: full width, 10 high, from the middle line down instead of centred
  /// on it. Kept for compatibility.
  static QRectF trackRect(const QRectF& bounds);
  /// The position that a finger at `x` of a control `width` wide takes the thumb to.
  [[nodiscard]] float positionAt(double x, double width) const;
  /// `control`: the bounds with the margin.
  void paint(QPainter& painter, const PopupTheme& theme, const QRectF& control,
             const Touch& touch) const;

 private:
  [[nodiscard]] double across(double score, const QRectF& track) const;
  void paintTrack(QPainter& painter, const PopupTheme& theme, const QRectF& track) const;
  void paintTicks(QPainter& painter, const PopupTheme& theme, const QRectF& track) const;
};

/// The button that closes a popup or an alert: a disc of diameter 32 in the middle of its bounds.
/// Without a `disc` colour of its own it is seen only while it is touched. Paints the ground and,
/// where the host gives no image, a cross; returns where the host's image goes.
KIFO_SHARED QRectF paintCloseButton(QPainter& painter, const QRectF& bounds, const QColor& behind,
                                    const std::optional<QColor>& disc, bool hasImage,
                                    const Touch& touch);

}  // namespace kifo
