#include "Kifo_iOS_Common_Kit/inapp/popup/PopupGeometry.h"

#include <algorithm>
#include <cmath>

namespace kifo {
namespace {

constexpr int kGap = 8;
constexpr int kWideGap = 10;
constexpr int kTextInset = 10;
constexpr int kCopyInset = 12;  ///< 4 within the list, which is 8 within the panel.
constexpr int kCounterWidth = 40;
constexpr int kCounterGap = 9;    ///< Leaves the counter 11 of the block's 100.
constexpr int kCouponInset = 20;  ///< Keeps the code clear of its border.
constexpr int kSmallestCode = 12;
constexpr int kSmallestBound = 9;
constexpr int kTextMargin = 6;    ///< Above and below a text that outgrows its height.
constexpr int kSurfaceInset = 3;  ///< Of a button's surface within its row.

constexpr int kEdge = 8;  ///< Least distance of panel and close button from the window's edge.
constexpr int kCloseButton = 40;
constexpr int kCloseGap = 8;  ///< From the close button down to the panel.
constexpr int kSmallestPanel = 120;
constexpr int kSmallestScrolled = 160;  ///< What scrolls above a submit button that stays.
constexpr int kScrolledInset = 14;  ///< Keeps scrolled content clear of the panel's round corners.

constexpr int kBesideRows = 8;  ///< The scroll indicator and its distance from the rows.

constexpr int kEmojiInset = 8;
constexpr int kEmojiSpacing = 10;      ///< The least between two emojis.
constexpr int kWideEmojiSpacing = 36;  ///< What they stand apart where there is space.
constexpr int kEmojiCell = static_cast<int>(PopupHeights::emojiCellSize);

int whole(double height) {
  return static_cast<int>(std::lround(height));
}

/// Puts the pieces one under the other; a class so that the steps share what all of them need.
class Arranger {
 public:
  Arranger(const PopupMeasures& measures, const PopupHeights& heights, const PopupArrangement& how)
      : m_(measures), h_(heights), how_(how), width_(how.width) {}

  PopupBoxes arrange() {
    title();
    pictures();
    put(PopupPiece::description, kGap, kTextInset,
        textHeight(PopupPiece::description, width_ - 2 * kTextInset, h_.popupDescriptionHeight));
    coupon();
    body();
    y_ += kGap;
    field();
    foot();
    return boxes_;
  }

 private:
  /// A text that fits keeps the height it is given; one that does not gets a margin as well.
  int textHeight(PopupPiece piece, int width, double height) const {
    const int needed = m_.heightFor(piece, width);
    return needed <= whole(height) ? whole(height) : needed + kTextMargin;
  }

  /// Puts the piece below what is there and moves on.
  void put(PopupPiece piece, int gap, int inset, int height) {
    y_ += gap;
    boxes_.of(piece) = {inset, y_, std::max(width_ - 2 * inset, 0), height};
    y_ += height;
  }

  PopupBox visual(const PopupBox& box, int across) const {
    return how_.isMirrored ? box.mirroredIn(across) : box;
  }

  void title() {
    put(PopupPiece::title, kGap, kGap,
        textHeight(PopupPiece::title, width_ - 2 * kGap, h_.popupTitleHeight));
  }

  void pictures() {
    put(PopupPiece::picture, kGap, 0, whole(h_.imageViewHeight));
    if (!m_.has(PopupPiece::pageIndicator)) return;
    put(PopupPiece::pageIndicator, kGap, kGap, whole(PopupHeights::indicatorHeight));
  }

  void coupon() {
    if (!m_.has(PopupPiece::couponLabel)) return;
    m_.shrinkToFit(PopupPiece::couponLabel, width_ - 2 * kCouponInset, kSmallestCode);
    put(PopupPiece::couponLabel, kGap, kGap,
        std::max(whole(PopupHeights::couponLabelHeight),
                 m_.heightFor(PopupPiece::couponLabel, width_ - 2 * kGap)));
    put(PopupPiece::copyButton, kGap, kCopyInset,
        std::max(whole(PopupHeights::couponCopyButtonHeight),
                 m_.heightFor(PopupPiece::copyButton, width_ - 2 * kCopyInset)));
  }

  void score() {
    const int value = std::max(whole(PopupHeights::scoreValueLabelHeight),
                               m_.heightFor(PopupPiece::score, width_));
    const int third = (width_ - 2 * kGap) / 3;  // the bounds and the score share the row
    m_.shrinkToFit(PopupPiece::score, third, kSmallestBound);
    put(PopupPiece::score, kWideGap, 0, value);
    const PopupBox row = boxes_.of(PopupPiece::score);
    for (const PopupPiece end : {PopupPiece::minimum, PopupPiece::maximum}) {
      m_.shrinkToFit(end, third - kGap, kSmallestBound);
      const int width = m_.naturalWidth(end) + 2;
      const int x = end == PopupPiece::maximum ? width_ - kGap - width : kGap;
      boxes_.of(end) = visual({x, row.y, width, row.height}, width_);
    }
    put(PopupPiece::slider, kWideGap, kGap, whole(PopupHeights::sliderHeight));
  }

  void body() {
    const bool asked = !m_.isEmpty(PopupPiece::question);
    if (asked || !m_.has(PopupPiece::list)) {
      put(PopupPiece::question, kWideGap, kTextInset,
          textHeight(PopupPiece::question, width_ - 2 * kTextInset, h_.popupQuestionHeight));
    }
    if (m_.has(PopupPiece::slider)) return score();
    const int inside = width_ - 2 * kGap;
    if (m_.has(PopupPiece::emojis)) {
      put(PopupPiece::emojis, kGap, kGap,
          std::max(whole(PopupHeights::emojiCellSize), m_.heightFor(PopupPiece::emojis, inside)));
    }
    if (!m_.has(PopupPiece::list)) return;
    rows_ = m_.heightFor(PopupPiece::list, inside);
    put(PopupPiece::list, kGap, kGap, h_.listHeightFor(rows_));
  }

  /// Places the pieces of the free-text block within it and returns its height when it is open.
  int openField(int width) {
    int y = 0;
    const bool asked = !m_.isEmpty(PopupPiece::fieldLabel);
    if (asked) {
      const int label = textHeight(PopupPiece::fieldLabel, width, PopupHeights::textFieldHeight);
      boxes_.of(PopupPiece::fieldLabel) = {0, kGap, width, label};
      y = kGap + label;
    }
    const int line = m_.heightFor(PopupPiece::field, width) + kTextMargin;
    const int height = std::max(whole(PopupHeights::textFieldLabelHeight), line);
    boxes_.of(PopupPiece::field) = {0, y, width, height};
    y += height + kCounterGap;
    const int least = m_.heightFor(PopupPiece::counter, kCounterWidth);
    const int wide = std::max(kCounterWidth, m_.naturalWidth(PopupPiece::counter) + 2);
    const int block = std::max(y + least, whole(h_.openFieldHeight(asked)));
    boxes_.of(PopupPiece::counter) = visual({width - wide, y, wide, block - y}, width);
    return block;
  }

  void field() {
    if (!m_.has(PopupPiece::fieldView)) return;
    const int inside = width_ - 2 * kGap;
    put(PopupPiece::fieldView, 0, kGap, whole(openField(inside) * how_.openness));
  }

  void foot() {
    const int inside = width_ - 2 * kGap;
    const int submit =
        m_.has(PopupPiece::submit)
            ? std::max(whole(h_.submitButtonHeight), m_.heightFor(PopupPiece::submit, inside))
            : 0;
    const double spared = how_.keepsFreeTextRoom ? 0 : (1 - how_.openness) * h_.fieldViewHeight;
    const int height = std::max(whole(h_.totalHeight - spared), y_ + kGap + submit + kGap);
    boxes_.height = height;
    boxes_.of(PopupPiece::submit) = {kGap, height - kGap - submit, inside, submit};
    PopupBox& list = boxes_.of(PopupPiece::list);
    if (!m_.has(PopupPiece::list) || !h_.isPlain || rows_ > list.height) return;
    // What there is to spare goes above the buttons, which are as far from the foot as from the
    // sides.
    boxes_.isListAtFoot = true;
    const int foot = height - (submit > 0 ? submit + 2 * kGap : kGap);
    list.y = std::max(foot + kSurfaceInset - list.height, list.y);
  }

  const PopupMeasures& m_;
  const PopupHeights& h_;
  const PopupArrangement& how_;
  const int width_;
  int y_ = 0;
  int rows_ = 0;  ///< The height of the list's rows.
  PopupBoxes boxes_;
};

int emojiColumns(int count, int width) {
  const int fitting = (width - 2 * kEmojiInset + kEmojiSpacing) / (kEmojiCell + kEmojiSpacing);
  return std::clamp(fitting, 1, std::max(count, 1));
}

}  // namespace

PopupBoxes arrangePieces(const PopupMeasures& measures, const PopupHeights& heights,
                         const PopupArrangement& how) {
  return Arranger(measures, heights, how).arrange();
}

int panelWidth(double across) {
  const double screen = std::min(across, PopupState::widestScreen);
  return std::max(static_cast<int>(screen - PopupState::margins(screen)), kSmallestPanel);
}

PanelPlace placePanel(const PopupBand& band, int width, const PopupBoxes& boxes, bool hasSubmit,
                      bool isMirrored) {
  PanelPlace place;
  const int highest = band.top + kEdge + kCloseButton + kCloseGap;
  const int available = std::max(band.bottom - kEdge - highest, kSmallestPanel);
  const int height = std::min(boxes.height, available);
  const int lowest = std::max(band.bottom - kEdge - height, highest);
  const int top = std::clamp((band.height - height) / 2, highest, lowest);
  place.panel = {(band.width - width) / 2, top, width, height};

  const bool scrolls = boxes.height > height;
  const int inset = scrolls ? kScrolledInset : 0;
  PopupBox submit = boxes.of(PopupPiece::submit);
  const int needed = submit.height + 2 * kGap;
  place.isSubmitFixed = scrolls && hasSubmit && height >= needed + kSmallestScrolled;
  const int foot = place.isSubmitFixed ? needed : 0;
  submit.y = height - kGap - submit.height;
  place.submit = submit;
  place.contentHeight = boxes.height - foot;
  place.scroll = {0, inset, width, height - inset - std::max(inset, foot)};

  const PopupBox close{width - kCloseButton, -kCloseGap - kCloseButton, kCloseButton, kCloseButton};
  place.close = isMirrored ? close.mirroredIn(width) : close;
  place.close.x += place.panel.x;
  place.close.y += place.panel.y;
  return place;
}

int rowsHeight(int rows, const std::function<int(int, int)>& heightAt, int width) {
  int height = 0;
  for (int row = 0; row < rows; ++row) height += heightAt(row, width);
  return height;
}

std::vector<PopupBox> rowBoxes(int rows, const std::function<int(int, int)>& heightAt,
                               const PopupBox& list, bool isAtFoot, bool isMirrored) {
  const int needed = rowsHeight(rows, heightAt, list.width);
  const int across = list.width - (needed > list.height ? kBesideRows : 0);
  int y = isAtFoot ? std::max(list.height - needed, 0) : 0;
  std::vector<PopupBox> boxes;
  for (int row = 0; row < rows; ++row) {
    const int height = heightAt(row, across);
    boxes.push_back({isMirrored ? list.width - across : 0, y, across, height});
    y += height;
  }
  return boxes;
}

int emojisHeight(int count, int width) {
  const int perRow = emojiColumns(count, width);
  return (count + perRow - 1) / perRow * kEmojiCell;
}

std::vector<PopupBox> emojiBoxes(int count, int width, bool isMirrored) {
  const int perRow = emojiColumns(count, width);
  const int spare = width - 2 * kEmojiInset - perRow * kEmojiCell;
  const int spacing = perRow > 1 ? std::clamp(spare / (perRow - 1), 0, kWideEmojiSpacing) : 0;
  const int used = perRow * kEmojiCell + (perRow - 1) * spacing;
  std::vector<PopupBox> boxes;
  for (int i = 0; i < count; ++i) {
    const PopupBox box{(width - used) / 2 + i % perRow * (kEmojiCell + spacing),
                       i / perRow * kEmojiCell, kEmojiCell, kEmojiCell};
    boxes.push_back(isMirrored ? box.mirroredIn(width) : box);
  }
  return boxes;
}

}  // namespace kifo
