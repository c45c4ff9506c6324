#include "Kifo_iOS_Common_Kit/inapp/views/alert/AlertList.h"

#include <QPainter>

#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {

AlertList::AlertList(QWidget* parent) : QWidget(parent) {}

void AlertList::setContents(const QString& heading, const std::vector<TypeData>& rows,
                            const KifoAppearance& appearance, const AlertColors& colors) {
  qDeleteAll(findChildren<TextLabel*>(Qt::FindDirectChildrenOnly));
  heading_ = nullptr;
  rows_.clear();
  line_ = colors.line;
  font_ = appearance.kTextFont;
  const QFont strong = AlertLayout::rowFont(appearance);
  if (!heading.isEmpty()) heading_ = addLabel(heading, strong, colors.text);
  for (const TypeData& row : rows) {
    rows_.push_back(
        {addLabel(row.header, strong, colors.text), addLabel(row.value, font_, colors.text)});
  }
}

TextLabel* AlertList::addLabel(const QString& text, const QFont& font, const QColor& color) {
  auto* label = new TextLabel(this);
  label->setText(text);
  label->setFace(font, color, WrappedText::Alignment::leading);
  label->setVisible(true);
  return label;
}

void AlertList::place(const AlertPlaces& places) {
  setGeometry(places.list);
  if (heading_ != nullptr) heading_->setGeometry(places.heading);
  for (std::size_t i = 0; i < rows_.size(); ++i) {
    const AlertPlaces::Row& where = places.rows[i];
    Row& row = rows_[i];
    row.header->setGeometry(where.header);
    row.value->setGeometry(where.value);
    row.value->setFace(
        font_, row.value->textColor(),
        where.isBeside ? WrappedText::Alignment::trailing : WrappedText::Alignment::leading);
    row.line = where.line;
  }
  update();
}

void AlertList::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  for (const Row& row : rows_) {
    if (row.line >= 0) painter.fillRect(0, row.line, width(), 1, line_);
  }
}

}  // namespace kifo
