#pragma once

#include <QFont>
#include <QRect>
#include <QString>
#include <functional>
#include <optional>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoAppearance.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/TypeData.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/WrappedText.h"

class QPainter;

namespace kifo {

/// What an alert's card shows, as far as its layout depends on it.
struct AlertContents {
  /// The host's own view.
  struct Custom {
    int leastWidth = 0;
    std::function<int(int width)> heightFor;
  };

  QString title;
  QString text;
  QString heading;  ///< Of the list.
  std::vector<TypeData> rows;
  std::vector<bool> fields;      ///< In their order; whether the field has one line only.
  std::vector<QString> buttons;  ///< Titles as they are shown, from the top.
  std::optional<Custom> custom;
  bool hasCircle = true;
  bool hasCross = false;
  double iconScale = 1;  ///< How large the icon is in relation to the appearance's.
  Qt::LayoutDirection direction = Qt::LeftToRight;
};

/// Where each part of an alert's card lies, in logical pixels. A part that is absent has an empty
/// rectangle.
struct KIFO_SHARED AlertPlaces {
  struct Row {
    QRect header;
    QRect value;
    bool isBeside = true;  ///< The value stands beside its header, not below it.
    int line = -1;         ///< Where the line above the row runs; -1 for none.
  };

  // In the card's coordinates.
  QSize card;   ///< With the part of the circle that reaches above the panel.
  QRect panel;  ///< The card without that part.
  QRect disc;   ///< Behind the circle.
  QRect cross;
  QRect viewport;  ///< Where the contents are seen.
  bool scrolls = false;

  QRect circle;  ///< In the disc's coordinates.
  QRect icon;    ///< In the circle's.

  // In the contents' coordinates.
  QSize contents;
  QFont titleFont;
  QRect title;
  QRect text;
  QRect list;
  std::vector<QRect> fields;
  QRect custom;
  std::vector<QRect> buttons;

  // In the list's.
  QRect heading;
  std::vector<Row> rows;

  /// Paints the shadow, in the card's coordinates: only outside of the card and its circle, which
  /// are translucent while they fade.
  void paintShadow(QPainter& painter, double cornerRadius) const;
};

/// The arithmetic of an alert's card, the same for each toolkit.
///
/// From top to bottom: circle, title, text, list, fields in the order in which they were added, the
/// host's custom view, buttons. A card that is higher than the window scrolls; in a very low window
/// it goes without the circle.
///
/// **Threading:** UI thread only. **Ownership:** refers to what it is given.
class KIFO_SHARED AlertLayout {
 public:
  static constexpr int kCloseButton = 36;  ///< The side of the cross's target.
  static constexpr int kScrollBar = 4;     ///< The width of the sign of scrolling.
  static constexpr int kButtonPadding = 12;
  static constexpr int kButtonText = Qt::AlignCenter | Qt::TextWordWrap;

  AlertLayout(const KifoAppearance& appearance, const AlertContents& contents);

  /// Lays the card out in a window that has `available` for it.
  [[nodiscard]] AlertPlaces place(const QSize& available);

  /// `length` in whole pixels; 0 to 10000.
  static int whole(double length);
  /// The size that a button with that title asks for on one line.
  static int buttonWidth(const QString& title, const QFont& font);
  static int buttonHeight(const QString& title, const QFont& font, int width, int least);
  /// Left and right are leading and trailing.
  static WrappedText::Alignment alignmentOf(Qt::Alignment alignment);
  static QFont rowFont(const KifoAppearance& appearance);  ///< Of headings and headers.

 private:
  [[nodiscard]] int chooseWidth(int widest) const;
  [[nodiscard]] int inner(int width) const { return std::max(1, width - 2 * margin_); }
  [[nodiscard]] int widthOfButtonRow() const;
  void placeCard(AlertPlaces& places, const QSize& available);
  void placeCircle(AlertPlaces& places) const;
  /// Places the contents in `width` with `slack` pixels to spare; returns their height with it.
  int placeContents(AlertPlaces& places, int width, int slack);
  int placeTitle(AlertPlaces& places, int top, int width);
  int placeList(AlertPlaces& places, int top, int width);
  /// The row at `top` in a list of `width`, not mirrored.
  AlertPlaces::Row placeRow(const TypeData& row, int top, int width);
  int placeButtons(AlertPlaces& places, int top, int width) const;
  int placeButtonRow(AlertPlaces& places, int top, int width) const;
  [[nodiscard]] QRect mirrored(const QRect& rect, int width) const;
  [[nodiscard]] int overhang() const;
  [[nodiscard]] int contentTop() const;

  const KifoAppearance& appearance_;
  const AlertContents& contents_;
  const int margin_;
  bool circleShown_;
  WrappedText title_;
  WrappedText text_;
  WrappedText header_;
  WrappedText value_;
};

}  // namespace kifo
