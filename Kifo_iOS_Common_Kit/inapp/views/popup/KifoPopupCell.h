#pragma once

#include <functional>
#include <memory>

#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupContent.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

class PopupButton;

/// A row of a plain popup: one button of the campaign.
///
/// **Threading:** UI thread only. **Ownership:** shares the button with the item.
class KifoPopupCell : public QWidget {
  Q_OBJECT

 public:
  using Action = std::function<void(std::shared_ptr<AppCommunicationItemButton>)>;

  static constexpr const char* identifier = "KifoPopupCell";
  static constexpr int surfaceInset = 3;  ///< Leaves a surface of 44 in a row of 50.

  KifoPopupCell(const PopupTheme& theme, std::shared_ptr<AppCommunicationItemButton> button,
                int index, const OptionText& text, QWidget* parent);

  [[nodiscard]] int index() const { return index_; }
  /// The control that is pressed; its caption is the row's title.
  [[nodiscard]] PopupButton* titleLbl() const { return titleLbl_; }
  [[nodiscard]] QWidget* lineView() const { return lineView_; }
  [[nodiscard]] int heightFor(int width) const;
  /// The line below; only rows without a surface of their own have one, and not the last.
  void setLineVisible(bool visible);

  Action actionItem;  ///< Called with the row's button when it is pressed.

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  std::shared_ptr<AppCommunicationItemButton> button_;
  int index_;
  PopupButton* titleLbl_;
  QWidget* lineView_;
};

}  // namespace kifo
