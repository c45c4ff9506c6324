#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertList.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <algorithm>

#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {
namespace {

constexpr int kRowPadding = 7;
constexpr int kColumnGap = 12;

}  // namespace

AlertList::AlertList(QWidget* parent) : QWidget(parent) {}

void AlertList::setContents(const QString& heading, const std::vector<TypeData>& rows,
                            const Look& look) {
  qDeleteAll(findChildren<TextLabel*>(Qt::FindDirectChildrenOnly));
  heading_ = nullptr;
  rows_.clear();
  look_ = look;
  QFont strong = look.font;
  strong.setBold(true);
  if (!heading.isEmpty()) heading_ = addLabel(heading, strong, WrappedText::Alignment::leading);
  for (const TypeData& row : rows) {
    rows_.push_back({addLabel(row.header, strong, WrappedText::Alignment::leading),
                     addLabel(row.value, look.font, WrappedText::Alignment::trailing)});
  }
  updateGeometry();
  // The new labels may need no other room than those before them: no resizing would place them.
  arrange();
}

TextLabel* AlertList::addLabel(const QString& text, const QFont& font,
                               WrappedText::Alignment alignment) {
  auto* label = new TextLabel(this);
  label->setText(text);
  label->setFace(font, look_.text, alignment);
  label->setVisible(true);
  return label;
}

int AlertList::headingHeight(int width) const {
  return heading_ == nullptr ? 0 : heading_->heightForWidth(width) + kRowPadding;
}

AlertList::Places AlertList::places(const Row& row, int top, int width) const {
  const int headerWidth = row.header->naturalWidth();
  const int y = top + kRowPadding;
  if (headerWidth + kColumnGap + row.value->naturalWidth() <= width) {
    const int height = std::max(row.header->heightForWidth(headerWidth),
                                row.value->heightForWidth(width - headerWidth - kColumnGap));
    return {{0, y, headerWidth, height},
            {headerWidth + kColumnGap, y, width - headerWidth - kColumnGap, height}};
  }
  const int headerHeight = row.header->heightForWidth(width);
  return {{0, y, width, headerHeight},
          {0, y + headerHeight, width, row.value->heightForWidth(width)}};
}

int AlertList::heightForWidth(int width) const {
  int bottom = headingHeight(width);
  for (const Row& row : rows_) bottom = places(row, bottom, width).value.bottom() + 1 + kRowPadding;
  return bottom;
}

void AlertList::arrange() {
  const auto put = [this](TextLabel* label, const QRect& place) {
    label->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
  };
  int bottom = headingHeight(width());
  if (heading_ != nullptr) put(heading_, {0, 0, width(), heading_->heightForWidth(width())});
  for (const Row& row : rows_) {
    const Places where = places(row, bottom, width());
    const bool beside = where.value.left() > 0;
    row.value->setFace(look_.font, look_.text,
                       beside ? WrappedText::Alignment::trailing : WrappedText::Alignment::leading);
    put(row.header, where.header);
    put(row.value, where.value);
    bottom = where.value.bottom() + 1 + kRowPadding;
  }
  update();
}

void AlertList::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  arrange();
}

void AlertList::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::LayoutDirectionChange) arrange();
}

void AlertList::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  for (const Row& row : rows_) {
    if (heading_ == nullptr && row.header == rows_.front().header) continue;
    painter.fillRect(0, row.header->y() - kRowPadding, width(), 1, look_.line);
  }
}

}  // namespace kifo
