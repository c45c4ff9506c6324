#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupHeights.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

/// Where everything of a popup stands: one calculation for every toolkit, which measures its texts.
/// All lengths are whole logical pixels.
///
/// **Threading:** pure functions and plain values.
namespace kifo {

struct PopupBox {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;

  [[nodiscard]] int bottom() const { return y + height; }
  /// The same box in a parent `across` wide that reads from right to left.
  [[nodiscard]] PopupBox mirroredIn(int across) const {
    return {across - x - width, y, width, height};
  }
};

/// What a panel is made of, in the order of reading.
enum class PopupPiece {
  title,
  picture,  ///< The single one or the carousel.
  pageIndicator,
  description,
  couponLabel,
  copyButton,
  question,
  list,
  emojis,
  minimum,
  score,
  maximum,
  slider,
  fieldView,   ///< The free-text block; holds the next three.
  fieldLabel,  ///< Within the block.
  field,       ///< Within the block.
  counter,     ///< Within the block.
  submit,
};
constexpr std::size_t kPopupPieces = static_cast<std::size_t>(PopupPiece::submit) + 1;

/// What the calculation asks of a toolkit.
class KIFO_SHARED PopupMeasures {
 public:
  virtual ~PopupMeasures() = default;

  /// Whether the campaign's kind has the piece.
  [[nodiscard]] virtual bool has(PopupPiece piece) const = 0;
  /// Whether the piece's text is empty.
  [[nodiscard]] virtual bool isEmpty(PopupPiece piece) const = 0;
  /// The height that the piece's content needs at this width: lines of text, rows, or for the field
  /// one line.
  [[nodiscard]] virtual int heightFor(PopupPiece piece, int width) const = 0;
  /// The width of the piece's text on one line.
  [[nodiscard]] virtual int naturalWidth(PopupPiece piece) const = 0;
  /// Makes the piece's type smaller, but not below `leastPixels`, until it fits on one line.
  virtual void shrinkToFit(PopupPiece piece, int width, int leastPixels) const = 0;
};

struct PopupBoxes {
  std::array<PopupBox, kPopupPieces> pieces;  ///< Within the panel's content.
  int height = 0;                             ///< Of the content, the submit button included.
  bool isListAtFoot = false;                  ///< Rows that do not fill the list stand at its foot.

  [[nodiscard]] PopupBox& of(PopupPiece piece) { return pieces[static_cast<std::size_t>(piece)]; }
  [[nodiscard]] const PopupBox& of(PopupPiece piece) const {
    return pieces[static_cast<std::size_t>(piece)];
  }
};

/// How a panel is to be arranged.
struct PopupArrangement {
  int width = 0;                   ///< Of the panel.
  double openness = 0;             ///< Of the free-text block, 0 to 1.
  bool keepsFreeTextRoom = false;  ///< The panel stays as high while the block is closed.
  bool isMirrored = false;         ///< Reads from right to left.
};

/// Every piece has its height of `heights`, or as much more as its content needs. The content's
/// height is the campaign's total, less the free-text block's as far as it is closed, or what the
/// pieces need when that is more. The submit button stands at the bottom.
KIFO_SHARED PopupBoxes arrangePieces(const PopupMeasures& measures, const PopupHeights& heights,
                                     const PopupArrangement& how);

/// The width of the panel on a screen `across` wide.
KIFO_SHARED int panelWidth(double across);

/// The part of the window that the panel may use.
struct PopupBand {
  int width = 0;   ///< Of the window.
  int height = 0;  ///< Of the window.
  int top = 0;     ///< An on-screen keyboard leaves what lies from here
  int bottom = 0;  ///< down to here.
};

struct PanelPlace {
  PopupBox panel;              ///< Within the window.
  PopupBox close;              ///< Within the window.
  PopupBox scroll;             ///< What is seen of the content; within the panel.
  int contentHeight = 0;       ///< Of what scrolls.
  bool isSubmitFixed = false;  ///< The submit button stays in sight below what scrolls.
  PopupBox submit;             ///< Within the panel, if it is fixed.
};

/// Puts a panel of that width in the middle of the band. One that is taller scrolls below the close
/// button, and its submit button stays in sight where there is enough space.
KIFO_SHARED PanelPlace placePanel(const PopupBand& band, int width, const PopupBoxes& boxes,
                                  bool hasSubmit, bool isMirrored);

/// The rows of a list that is `list` large; `heightAt(row, width)` is what a row needs. A list that
/// scrolls leaves space for its indicator beside the rows.
KIFO_SHARED std::vector<PopupBox> rowBoxes(int rows,
                                           const std::function<int(int row, int width)>& heightAt,
                                           const PopupBox& list, bool isAtFoot, bool isMirrored);
/// The height of all rows of that width.
KIFO_SHARED int rowsHeight(int rows, const std::function<int(int row, int width)>& heightAt,
                           int width);

/// `count` emojis side by side in the middle of `width`; in further rows when one is not enough.
KIFO_SHARED std::vector<PopupBox> emojiBoxes(int count, int width, bool isMirrored);
KIFO_SHARED int emojisHeight(int count, int width);

}  // namespace kifo
