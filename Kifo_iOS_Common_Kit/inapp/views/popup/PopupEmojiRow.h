#pragma once

#include <vector>

#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupTheme.h"

class QTimer;

namespace kifo {

class KifoEmojiCollectionViewCell;
class RovingFocus;
class TextLabel;

/// The emojis side by side, in the middle of the panel; in further rows when they do not fit one.
///
/// **Threading:** UI thread only.
class PopupEmojiRow : public QWidget {
  Q_OBJECT

 public:
  PopupEmojiRow(const PopupTheme& theme, QWidget* parent);

  void add(KifoEmojiCollectionViewCell* cell);
  [[nodiscard]] const std::vector<KifoEmojiCollectionViewCell*>& cells() const { return cells_; }
  [[nodiscard]] int heightFor(int width) const;
  /// Shows the text of an emoji below it for a moment; nothing for one without a text.
  void showText(const KifoEmojiCollectionViewCell& cell);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  std::vector<KifoEmojiCollectionViewCell*> cells_;
  RovingFocus* roving_;
  PopupTheme theme_;
  TextLabel* text_ = nullptr;  ///< Lies over what follows the row.
  QTimer* textTimer_;
};

}  // namespace kifo
