#pragma once

#include <functional>
#include <memory>

#include <QWidget>
#include <string_view>

#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupContent.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

class ImageLoader;
class OptionButton;

/// One emoji that can be picked. The whole cell takes the press; what is not picked is pale.
///
/// **Threading:** UI thread only. **Ownership:** shares the emoji with the item.
/// **Errors:** without its picture it shows the beginning of its text, or its number.
class KifoEmojiCollectionViewCell : public QWidget {
  Q_OBJECT

 public:
  using Action = std::function<void(std::shared_ptr<AppCommunicationItemButton>)>;

  static constexpr const char* identifier = "KifoEmojiCollectionViewCell";
  static constexpr std::string_view LOG_TAG = "Kifo KifoEmojiCollectionViewCell:";
  static constexpr double selectedAlpha = EmojiLook::selectedAlpha;
  static constexpr double otherAlpha = EmojiLook::otherAlpha;

  KifoEmojiCollectionViewCell(const PopupTheme& theme,
                              std::shared_ptr<AppCommunicationItemButton> emoji, int row,
                              const OptionText& text, QWidget* parent);

  [[nodiscard]] const std::shared_ptr<AppCommunicationItemButton>& appCommunicationItemButton()
      const {
    return appCommunicationItemButton_;
  }
  [[nodiscard]] int indexPath() const { return indexPath_; }  ///< The row.
  [[nodiscard]] OptionButton* emojiButton() const { return emojiButton_; }
  /// How opaque the emoji is drawn: 1.0 when it is the picked one, 0.4 otherwise.
  [[nodiscard]] double alpha() const;
  void setChosen(bool chosen);

  /// Fetches the emoji's picture; says so on the console when its URL is none.
  void load(ImageLoader& loader);

  void emojiSelectAction();

  Action actionItem;
  Action selectItem;  ///< Called with the emoji when it is picked.

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  PopupTheme theme_;
  std::shared_ptr<AppCommunicationItemButton> appCommunicationItemButton_;
  int indexPath_;
  EmojiLook look_;
  OptionButton* emojiButton_;
};

}  // namespace kifo
