#pragma once

#include <functional>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupTheme.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/PopupScrollArea.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/RovingFocus.h"

namespace kifo {

/// The rows of a plain popup or of a survey, one under the other.
///
/// **Threading:** UI thread only.
class PopupListView : public PopupScrollArea {
  Q_OBJECT

 public:
  /// A row, the control in it that takes the focus, and the height that its text needs at a width.
  struct Row {
    QWidget* cell;
    QWidget* control;
    std::function<int(int width)> heightFor;
  };

  PopupListView(const PopupTheme& theme, RovingFocus::Stops stops, double cellHeight,
                QWidget* parent);

  /// The parent of the cells.
  [[nodiscard]] QWidget* content() const { return widget(); }
  void add(Row row);
  /// The height of all rows at a width; each has the cell height, or more where its text needs it.
  [[nodiscard]] int contentHeightFor(int width) const;
  /// Whether rows that do not fill the list stand at its foot.
  void setAtFoot(bool atFoot);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void placeRows();
  [[nodiscard]] int rowHeight(int row, int width) const;

  std::vector<Row> rows_;
  RovingFocus* roving_;
  int cellHeight_;
  bool atFoot_ = false;
};

}  // namespace kifo
