#pragma once

#include <deque>
#include <map>

#include <QImage>
#include <QRectF>
#include <QString>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupGeometry.h"
#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/ControlLooks.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupContent.h"

class QPainter;
class QPalette;

namespace kifo {

/// What a popup in a scene consists of: measures, arranges and paints its parts. The items of the
/// scene only say where they are used.
///
/// **Threading:** UI thread, and the render thread while the UI thread waits for it.
/// **Ownership:** belongs to its popup, which owns the state too.
class PopupParts : public PopupMeasures {
 public:
  /// What the popup takes up around its panel: the shadow, and above it the close button with the
  /// frame of the focus.
  static constexpr double surround = 56;

  /// A row of the list, or an emoji.
  struct Row {
    Row(const PopupTheme& theme, const OptionText& option, PopupState::Button choice, int row,
        Qt::LayoutDirection direction);

    PopupState::Button button;
    OptionText text;
    ButtonLook buttonLook;  ///< Of a plain popup.
    OptionLook optionLook;  ///< Of a survey.
    TextLook textLook;      ///< Of a survey.
    WrappedText wrapped;    ///< Of a survey.
    EmojiLook emoji;
    QRectF box;
  };

  PopupParts(const PopupState& state, const PopUpOptions& options, const QPalette& window,
             Qt::LayoutDirection direction);

  [[nodiscard]] const PopupTheme& theme() const { return theme_; }
  [[nodiscard]] const PopupContent& content() const { return content_; }
  [[nodiscard]] const PopupBoxes& boxes() const { return boxes_; }
  [[nodiscard]] const PanelPlace& place() const { return place_; }
  /// The part of the window that the popup takes up.
  [[nodiscard]] QRectF extent() const;
  [[nodiscard]] std::deque<Row>& rows() { return rows_; }
  [[nodiscard]] bool isMirrored() const { return isMirrored_; }
  [[nodiscard]] ButtonLook& submitLook() { return submit_; }
  [[nodiscard]] ButtonLook& copyLook() { return copy_; }
  [[nodiscard]] const CouponLook& couponLook() const { return content_.couponLook; }

  /// Lays out for a band of the window; `openness` is the free-text block's.
  void arrange(const PopupBand& band, double openness);
  /// Shows `look` in place of the text of `piece`.
  void setText(PopupPiece piece, const TextLook& look);
  [[nodiscard]] QString text(PopupPiece piece) const;
  /// The part of `piece`'s box in which its text stands is `bounds`.
  void paintText(PopupPiece piece, QPainter& painter, const QRectF& bounds) const;
  void paintRowText(const Row& row, QPainter& painter, const QRectF& bounds) const;

  [[nodiscard]] bool has(PopupPiece piece) const override;
  [[nodiscard]] bool isEmpty(PopupPiece piece) const override;
  [[nodiscard]] int heightFor(PopupPiece piece, int width) const override;
  [[nodiscard]] int naturalWidth(PopupPiece piece) const override;
  void shrinkToFit(PopupPiece piece, int width, int leastPixels) const override;

 private:
  struct Text {
    TextLook look;
    mutable WrappedText wrapped;
  };

  void makeTexts();
  void makeRows();
  [[nodiscard]] int rowHeight(int row, int width) const;
  [[nodiscard]] int marginOf(PopupPiece piece) const;

  const PopupState& state_;
  const bool isMirrored_;
  const Qt::LayoutDirection direction_;
  PopupTheme theme_;
  PopupContent content_;
  std::map<PopupPiece, Text> texts_;
  ButtonLook copy_;
  ButtonLook submit_;
  std::deque<Row> rows_;
  PopupBoxes boxes_;
  PanelPlace place_;
};

}  // namespace kifo
