#pragma once

namespace kifo {

/// The empty space inside a `KifoPopup` card, in logical pixels. **Threading:** a plain value.
struct Margin {
  double titleTop = 30;  ///< From the card's upper edge to the title; half of it without a circle.
  double textViewBottom = 12;    ///< Below the text, above whatever comes next.
  double buttonSpacing = 10;     ///< Between two buttons, in a column as in a row.
  double textFieldSpacing = 15;  ///< Below each field, list and custom view.
  double bottom = 14;            ///< Below the last row.
  double horizontal = 12;        ///< Left and right of every row.
};

}  // namespace kifo
