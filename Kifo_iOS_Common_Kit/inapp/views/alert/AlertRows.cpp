#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertRows.h"

#include <QFontInfo>
#include <QLineEdit>
#include <QStyle>
#include <algorithm>
#include <cmath>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertList.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {
namespace {

constexpr int kWidestForText = 400;  // Wider lines are tiring to read.
constexpr int kWideningStep = 40;
constexpr int kBelowTitle = 4;

}  // namespace

AlertRows::AlertRows(const KifoAppearance& appearance, const AlertParts& parts, int titleInset)
    : appearance_(appearance),
      parts_(parts),
      margin_(whole(appearance.margin.horizontal)),
      titleInset_(std::max(titleInset, margin_)) {}

int AlertRows::whole(double length) {
  return static_cast<int>(std::lround(std::clamp(length, 0.0, 10000.0)));
}

int AlertRows::inner(int width) const {
  return std::max(1, width - 2 * margin_);
}

int AlertRows::chooseWidth(int widest) const {
  int width = std::max(whole(appearance_.kWindowWidth), leastWidthOfCustomSubview());
  if (appearance_.buttonsLayout == KifoAlertButtonLayout::horizontal) {
    const int row = widthOfButtonRow() + 2 * margin_;
    if (row <= widest) width = std::max(width, row);
  }
  while (width + kWideningStep <= std::min(widest, kWidestForText) &&
         parts_.viewText->heightForWidth(inner(width)) > appearance_.kTextHeight) {
    width += kWideningStep;
  }
  return std::clamp(width, 1, std::max(1, widest));
}

int AlertRows::widthOfButtonRow() const {
  int widest = 0;
  for (const KifoButton* button : parts_.buttons) {
    widest = std::max(widest, button->sizeHint().width());
  }
  const int count = static_cast<int>(parts_.buttons.size());
  return count * widest + std::max(0, count - 1) * whole(appearance_.margin.buttonSpacing);
}

int AlertRows::leastWidthOfCustomSubview() const {
  const QWidget* view = parts_.customSubview;
  if (view == nullptr) return 0;
  int least = std::max(view->minimumWidth(), view->minimumSizeHint().width());
  if (!view->sizeHint().isValid()) least = std::max(least, parts_.customSize.width());
  return least + 2 * margin_;
}

int AlertRows::heightOfCustomSubview(int width) const {
  const QWidget* view = parts_.customSubview;
  const QSize hint = view->sizeHint();
  int height = hint.isValid() ? hint.height() : parts_.customSize.height();
  if (view->sizePolicy().hasHeightForWidth()) height = view->heightForWidth(width);
  return std::clamp(height, view->minimumHeight(), view->maximumHeight());
}

void AlertRows::addText(std::vector<Row>& rows, int width) const {
  TextLabel* title = parts_.labelTitle;
  if (!title->text().isEmpty()) {
    const int room = std::max(1, width - 2 * titleInset_);
    title->shrinkToFit(
        room, QFontInfo(appearance_.kTitleFont).pixelSize() * appearance_.kTitleMinimumScaleFactor);
    const int height = title->heightForWidth(room);
    rows.push_back({title, std::max(height, whole(appearance_.kTitleHeight)), kBelowTitle});
  }
  if (!parts_.viewText->text().isEmpty()) {
    rows.push_back({parts_.viewText, parts_.viewText->heightForWidth(inner(width)), 0});
  }
  if (!rows.empty()) rows.back().gap = whole(appearance_.margin.textViewBottom);
}

std::vector<AlertRows::Row> AlertRows::rows(int width) const {
  std::vector<Row> rows;
  addText(rows, width);
  const int spacing = whole(appearance_.margin.textFieldSpacing);
  if (!parts_.list->isEmpty()) {
    rows.push_back({parts_.list, parts_.list->heightForWidth(inner(width)), spacing});
  }
  for (QWidget* field : parts_.fields) {
    const bool single = qobject_cast<QLineEdit*>(field) != nullptr;
    const double height = single ? appearance_.kTextFieldHeight : appearance_.kTextViewdHeight;
    rows.push_back({field, whole(height), spacing});
  }
  if (parts_.customSubview != nullptr) {
    rows.push_back({parts_.customSubview, heightOfCustomSubview(inner(width)), spacing});
  }
  return rows;
}

int AlertRows::arrange(int width, int slack, bool move) const {
  // What there is to spare goes half above everything and half above the buttons, so that the title
  // and the text stay together.
  const QWidget* title = parts_.labelTitle;
  int y = slack / 2;
  for (const Row& row : rows(width)) {
    const int inset = row.part == title ? titleInset_ : margin_;
    if (move) row.part->setGeometry(inset, y, std::max(1, width - 2 * inset), row.height);
    y += row.height + row.gap;
  }
  return arrangeButtons(y + slack - slack / 2, width, move) + whole(appearance_.margin.bottom);
}

int AlertRows::arrangeButtons(int top, int width, bool move) const {
  if (parts_.buttons.empty()) return top;
  const bool inRow = appearance_.buttonsLayout == KifoAlertButtonLayout::horizontal &&
                     widthOfButtonRow() <= inner(width);
  return inRow ? arrangeRow(top, width, move) : arrangeColumn(top, width, move);
}

int AlertRows::arrangeColumn(int top, int width, bool move) const {
  const int spacing = whole(appearance_.margin.buttonSpacing);
  int y = top;
  for (KifoButton* button : parts_.buttons) {
    const int height = button->heightForWidth(inner(width));
    if (move) button->setGeometry(margin_, y, inner(width), height);
    y += height + spacing;
  }
  return y - spacing;
}

int AlertRows::arrangeRow(int top, int width, bool move) const {
  const int spacing = whole(appearance_.margin.buttonSpacing);
  const int count = static_cast<int>(parts_.buttons.size());
  const int stretch = inner(width) + spacing;
  int height = 0;
  for (int i = 0; i < count; ++i) {
    // The edges are rounded and not the widths, so that the row ends where the text does.
    const int left = margin_ + i * stretch / count;
    const int right = margin_ + (i + 1) * stretch / count - spacing;
    KifoButton* button = parts_.buttons[i];
    const QRect place(left, top, right - left, button->heightForWidth(right - left));
    height = std::max(height, place.height());
    if (!move) continue;
    button->setGeometry(
        QStyle::visualRect(button->layoutDirection(), QRect(0, 0, width, 1), place));
  }
  return top + height;
}

}  // namespace kifo
