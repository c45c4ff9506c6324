#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoEmojiCollectionViewCell.h"

#include <QMouseEvent>
#include <QPainter>
#include <QTextBoundaryFinder>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageLoader.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/OptionButton.h"

namespace kifo {
namespace {

constexpr int kButton = 30;
constexpr double kHalo = 46;
constexpr double kGrown = 2;  ///< On each side of an emoji that is pointed at or chosen.
constexpr int kPictorialPixels = 24;
constexpr int kLetterPixels = 16;

QString firstCharacter(const QString& text) {
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
  const auto end = finder.toNextBoundary();
  return end > 0 ? text.left(end) : QString();
}

}  // namespace

KifoEmojiCollectionViewCell::KifoEmojiCollectionViewCell(
    const PopupTheme& theme, std::shared_ptr<AppCommunicationItemButton> emoji, int row, int rows,
    QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      appCommunicationItemButton_(std::move(emoji)),
      indexPath_(row),
      emojiButton_(new OptionButton(this)) {
  setObjectName(identifier);
  setCursor(Qt::PointingHandCursor);
  emojiButton_->setObjectName("emojiButton");
  const QString text =
      QString::fromStdString(appCommunicationItemButton_->text.value_or("")).trimmed();
  substitute_ = text.isEmpty() ? QString::number(row + 1) : firstCharacter(text);
  emojiButton_->setAccessibleName(text.isEmpty() ? theme.options.texts.option.arg(row + 1).arg(rows)
                                                 : text);
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
    Console::print(logTag(identifier),
                   "Failed to present attachment due to an invalid url: " + *url);
    return;
  }
  loading_ = true;
  loader.load(*url, this, [this](const QImage& image) {
    loading_ = false;
    image_ = image;
    update();
  });
}

void KifoEmojiCollectionViewCell::emojiSelectAction() {
  if (const auto select = selectItem) select(appCommunicationItemButton_);
}

void KifoEmojiCollectionViewCell::resizeEvent(QResizeEvent*) {
  emojiButton_->setGeometry((width() - kButton) / 2, (height() - kButton) / 2, kButton, kButton);
}

void KifoEmojiCollectionViewCell::mousePressEvent(QMouseEvent* event) {
  event->setAccepted(event->button() == Qt::LeftButton);
}

void KifoEmojiCollectionViewCell::mouseReleaseEvent(QMouseEvent* event) {
  if (!rect().contains(event->position().toPoint())) return;
  emojiButton_->setFocus(Qt::MouseFocusReason);
  emojiButton_->click();
}

void KifoEmojiCollectionViewCell::paintSubstitute(QPainter& painter, const QRectF& place) const {
  const bool pictorial = !substitute_.isEmpty() && !substitute_.front().isLetterOrNumber();
  painter.setPen(QPen(theme_.ink, 1.5));
  painter.setBrush(Qt::NoBrush);
  if (!pictorial || loading_) painter.drawEllipse(place.adjusted(1, 1, -1, -1));
  if (loading_) return;
  QFont font = theme_.font(TextRole::description);
  font.setPixelSize(pictorial ? kPictorialPixels : kLetterPixels);
  painter.setFont(font);
  painter.setPen(theme_.ink);
  painter.drawText(place, Qt::AlignCenter, substitute_);
}

void KifoEmojiCollectionViewCell::paintEmoji(QPainter& painter) const {
  const bool grows = emojiButton_->isChecked() || underMouse();
  const double grown = grows ? kGrown : 0;
  const QRectF place = QRectF(emojiButton_->geometry()).adjusted(-grown, -grown, grown, grown);
  if (image_.isNull()) return paintSubstitute(painter, place);
  const QSizeF fitted = QSizeF(image_.size()).scaled(place.size(), Qt::KeepAspectRatio);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(QRectF(place.center() - QPointF(fitted.width(), fitted.height()) / 2, fitted),
                    image_);
}

void KifoEmojiCollectionViewCell::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool chosen = emojiButton_->isChecked();
  const QRectF halo(width() / 2.0 - kHalo / 2, height() / 2.0 - kHalo / 2, kHalo, kHalo);
  const double shade = chosen || emojiButton_->isDown() ? 0.12 : underMouse() ? 0.09 : 0.05;
  painter.setPen(chosen ? QPen(theme_.accent, 2) : QPen(Qt::NoPen));
  painter.setBrush(theme_.shade(shade));
  painter.drawEllipse(halo.adjusted(1, 1, -1, -1));
  painter.setOpacity(alpha());
  paintEmoji(painter);
  painter.setOpacity(1);
  if (emojiButton_->showsFocus()) {
    paintFocusRing(painter, halo.adjusted(-5, -5, 5, 5), kHalo, theme_.panel, theme_.accent);
  }
}

}  // namespace kifo
