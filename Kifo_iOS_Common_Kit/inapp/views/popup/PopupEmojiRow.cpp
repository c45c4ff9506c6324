#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupEmojiRow.h"

#include <algorithm>

#include <QEvent>
#include <QStyle>
#include <QTimer>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupHeights.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoEmojiCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/OptionButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/RovingFocus.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {
namespace {

constexpr int kInset = 8;
constexpr std::chrono::milliseconds kTextShown{1500};
constexpr int kSpacing = 10;      ///< The least between two emojis.
constexpr int kWideSpacing = 36;  ///< What they stand apart when there is room.
constexpr int kCell = static_cast<int>(PopupHeights::emojiCellSize);

}  // namespace

PopupEmojiRow::PopupEmojiRow(const PopupTheme& theme, QWidget* parent)
    : QWidget(parent),
      roving_(new RovingFocus(RovingFocus::Stops::one, this)),
      theme_(theme),
      textTimer_(new QTimer(this)) {
  textTimer_->setSingleShot(true);
  textTimer_->setInterval(kTextShown);
  connect(textTimer_, &QTimer::timeout, this, [this] { text_->hide(); });
}

void PopupEmojiRow::showText(const KifoEmojiCollectionViewCell& cell) {
  const auto& text = cell.appCommunicationItemButton()->text;
  if (!text_) {
    text_ = new TextLabel(parentWidget());
    text_->setObjectName("emojiText");
    text_->setAttribute(Qt::WA_TransparentForMouseEvents);
  }
  text_->setText(QString::fromStdString(text.value_or("")).trimmed());
  if (text_->text().isEmpty()) return text_->hide();
  text_->setFace(theme_.font(TextRole::bound), theme_.ink);
  const int wide = std::min(text_->naturalWidth(), width());
  const int middle = x() + cell.geometry().center().x();
  const int left = std::clamp(middle - wide / 2, x(), std::max(x() + width() - wide, x()));
  text_->setGeometry(left, y() + cell.geometry().bottom() + 1, wide, text_->heightForWidth(wide));
  text_->show();
  text_->raise();
  textTimer_->start();
}

void PopupEmojiRow::add(KifoEmojiCollectionViewCell* cell) {
  cells_.push_back(cell);
  roving_->add(cell->emojiButton());
}

int PopupEmojiRow::columns(int width) const {
  const int fitting = (width - 2 * kInset + kSpacing) / (kCell + kSpacing);
  return std::clamp(fitting, 1, std::max(static_cast<int>(cells_.size()), 1));
}

int PopupEmojiRow::heightFor(int width) const {
  const int perRow = columns(width);
  return (static_cast<int>(cells_.size()) + perRow - 1) / perRow * kCell;
}

void PopupEmojiRow::resizeEvent(QResizeEvent*) {
  const int perRow = columns(width());
  const int room = width() - 2 * kInset - perRow * kCell;
  const int spacing = perRow > 1 ? std::clamp(room / (perRow - 1), 0, kWideSpacing) : 0;
  const int used = perRow * kCell + (perRow - 1) * spacing;
  for (std::size_t i = 0; i < cells_.size(); ++i) {
    const int column = static_cast<int>(i) % perRow;
    const QRect place((width() - used) / 2 + column * (kCell + spacing),
                      static_cast<int>(i) / perRow * kCell, kCell, kCell);
    cells_[i]->setGeometry(QStyle::visualRect(layoutDirection(), rect(), place));
  }
}

}  // namespace kifo
