#pragma once

#include <vector>

#include <QWidget>

namespace kifo {

class KifoEmojiCollectionViewCell;
class RovingFocus;

/// The emojis side by side, in the middle of the panel; in further rows when they do not fit one.
///
/// **Threading:** UI thread only.
class PopupEmojiRow : public QWidget {
  Q_OBJECT

 public:
  explicit PopupEmojiRow(QWidget* parent);

  void add(KifoEmojiCollectionViewCell* cell);
  [[nodiscard]] const std::vector<KifoEmojiCollectionViewCell*>& cells() const { return cells_; }
  [[nodiscard]] int heightFor(int width) const;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  [[nodiscard]] int columns(int width) const;

  std::vector<KifoEmojiCollectionViewCell*> cells_;
  RovingFocus* roving_;
};

}  // namespace kifo
