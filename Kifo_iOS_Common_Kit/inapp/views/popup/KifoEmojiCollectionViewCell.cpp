#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoEmojiCollectionViewCell.h"

#include <QMouseEvent>
#include <QPainter>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageLoader.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/OptionButton.h"

namespace kifo {
KifoEmojiCollectionViewCell::KifoEmojiCollectionViewCell(
    const PopupTheme& theme, std::shared_ptr<AppCommunicationItemButton> emoji, int row,
    const OptionText& text, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      appCommunicationItemButton_(std::move(emoji)),
      indexPath_(row),
      emojiButton_(new OptionButton(this)) {
  setObjectName(identifier);
  setCursor(Qt::PointingHandCursor);
  emojiButton_->setObjectName("emojiButton");
  look_.substitute = EmojiLook::substituteOf(text.caption, row);
  emojiButton_->setAccessibleName(text.name);
  connect(emojiButton_, &QAbstractButton::clicked, this,
          &KifoEmojiCollectionViewCell::emojiSelectAction);
}

double KifoEmojiCollectionViewCell::alpha() const {
  return emojiButton_->isChecked() ? selectedAlpha : otherAlpha;
}

void KifoEmojiCollectionViewCell::setChosen(bool chosen) {
  emojiButton_->setChosen(chosen);
}

void KifoEmojiCollectionViewCell::load(ImageLoader& loader) {
  const auto& url = appCommunicationItemButton_->imageUrl;
  if (!url) return;
  if (!ImageLoader::isUrl(*url)) {
    Console::print(LOG_TAG, "Failed to present attachment due to an invalid url: " + *url);
    return;
  }
  look_.isLoading = true;
  loader.load(*url, this, [this](const QImage& image) {
    look_.isLoading = false;
    look_.image = image;
    update();
  });
}

void KifoEmojiCollectionViewCell::emojiSelectAction() {
  if (const auto select = selectItem) select(appCommunicationItemButton_);
}

void KifoEmojiCollectionViewCell::resizeEvent(QResizeEvent*) {
  constexpr int kSide = EmojiLook::button;
  emojiButton_->setGeometry((width() - kSide) / 2, (height() - kSide) / 2, kSide, kSide);
}

void KifoEmojiCollectionViewCell::mousePressEvent(QMouseEvent* event) {
  event->setAccepted(event->button() == Qt::LeftButton);
}

void KifoEmojiCollectionViewCell::mouseReleaseEvent(QMouseEvent* event) {
  if (!rect().contains(event->position().toPoint())) return;
  emojiButton_->setFocus(Qt::MouseFocusReason);
  emojiButton_->click();
}

void KifoEmojiCollectionViewCell::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  Touch touch = emojiButton_->touch();
  touch.isHovered = underMouse();
  look_.paint(painter, theme_, rect(), emojiButton_->isChecked(), touch);
}

}  // namespace kifo
