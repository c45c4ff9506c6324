#pragma once

#include <functional>
#include <memory>

#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/ControlLooks.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupContent.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

class OptionButton;
class TextLabel;

/// A row of a survey: one choice with its radio mark.
///
/// **Threading:** UI thread only. **Ownership:** shares the choice with the item.
class KifoSurveyCell : public QWidget {
  Q_OBJECT

 public:
  using Action = std::function<void(std::shared_ptr<AppCommunicationItemButton>)>;

  static constexpr const char* identifier = "KifoSurveyCell";

  KifoSurveyCell(const PopupTheme& theme, std::shared_ptr<AppCommunicationItemButton> choice,
                 int row, const OptionText& text, QWidget* parent);

  [[nodiscard]] const std::shared_ptr<AppCommunicationItemButton>& appCommunicationItemButton()
      const {
    return appCommunicationItemButton_;
  }
  [[nodiscard]] int indexPath() const { return indexPath_; }  ///< The row.
  [[nodiscard]] OptionButton* selectButton() const { return selectButton_; }
  [[nodiscard]] TextLabel* titleLbl() const { return titleLbl_; }
  /// The name of the radio mark's picture: "largecircle.fill.circle" or "circle".
  [[nodiscard]] const char* radialButton() const;
  void setChosen(bool chosen);
  [[nodiscard]] int heightFor(int width) const;

  Action actionItem;
  Action selectItem;  ///< Called with the choice when the row is tapped.

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  std::shared_ptr<AppCommunicationItemButton> appCommunicationItemButton_;
  int indexPath_;
  OptionLook look_;
  TextLabel* titleLbl_;
  OptionButton* selectButton_;
};

}  // namespace kifo
