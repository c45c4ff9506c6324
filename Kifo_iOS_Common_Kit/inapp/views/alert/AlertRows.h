#pragma once

#include <QPointer>
#include <QSize>
#include <QWidget>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoAppearance.h"

namespace kifo {

class KifoButton;
class TextLabel;
class AlertList;

/// What stands below the circle of an alert's card, by its place from top to bottom.
struct AlertParts {
  TextLabel* labelTitle = nullptr;
  TextLabel* viewText = nullptr;
  AlertList* list = nullptr;
  std::vector<QWidget*> fields;  ///< In the order in which they were added.
  QPointer<QWidget> customSubview;
  QSize customSize;  ///< What the host gave that view; for one that asks for no size itself.
  std::vector<KifoButton*> buttons;
};

/// The arithmetic of an alert's card: how wide it wants to be, and which part lies where.
///
/// **Threading:** UI thread only. **Ownership:** refers to what it is given.
class AlertRows {
 public:
  /// `titleInset`: the least space on either side of the title.
  AlertRows(const KifoAppearance& appearance, const AlertParts& parts, int titleInset);

  /// The width of the card where `widest` is to be had.
  [[nodiscard]] int chooseWidth(int widest) const;
  /// The height that the rows need at `width`.
  [[nodiscard]] int height(int width) const { return arrange(width, 0, false); }
  /// Lays the rows out with `slack` pixels to spare around the text; returns their height with it.
  int place(int width, int slack) const { return arrange(width, slack, true); }

  /// `length` in whole pixels; 0 to 10000.
  static int whole(double length);

 private:
  struct Row {
    QWidget* part;
    int height;
    int gap;  ///< Below it.
  };

  [[nodiscard]] std::vector<Row> rows(int width) const;
  void addText(std::vector<Row>& rows, int width) const;
  int arrange(int width, int slack, bool move) const;
  int arrangeButtons(int top, int width, bool move) const;
  int arrangeColumn(int top, int width, bool move) const;
  int arrangeRow(int top, int width, bool move) const;
  [[nodiscard]] int inner(int width) const;
  [[nodiscard]] int widthOfButtonRow() const;
  [[nodiscard]] int leastWidthOfCustomSubview() const;
  [[nodiscard]] int heightOfCustomSubview(int width) const;

  const KifoAppearance& appearance_;
  const AlertParts& parts_;
  int margin_;
  int titleInset_;
};

}  // namespace kifo
