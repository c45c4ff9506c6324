#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupEmojiRow.h"

#include <algorithm>

#include <QTimer>

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupGeometry.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoEmojiCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/OptionButton.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/RovingFocus.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/TextLabel.h"

namespace kifo {
namespace {

constexpr std::chrono::milliseconds kTextShown{1500};

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

int PopupEmojiRow::heightFor(int width) const {
  return emojisHeight(static_cast<int>(cells_.size()), width);
}

void PopupEmojiRow::resizeEvent(QResizeEvent*) {
  const auto boxes =
      emojiBoxes(static_cast<int>(cells_.size()), width(), layoutDirection() == Qt::RightToLeft);
  for (std::size_t i = 0; i < cells_.size(); ++i) {
    cells_[i]->setGeometry(boxes[i].x, boxes[i].y, boxes[i].width, boxes[i].height);
  }
}

}  // namespace kifo
