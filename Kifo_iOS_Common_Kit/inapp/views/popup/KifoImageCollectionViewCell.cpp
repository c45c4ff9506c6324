#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoImageCollectionViewCell.h"

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageLoader.h"

namespace kifo {

KifoImageCollectionViewCell::KifoImageCollectionViewCell(const PopupTheme& theme, QWidget* parent)
    : QWidget(parent), imageView_(new PopupImageView(theme, this)) {
  setObjectName(identifier);
  imageView_->setObjectName("imageView");
}

void KifoImageCollectionViewCell::configure(const std::string& url, ImageLoader& loader) {
  if (!ImageLoader::isUrl(url)) {
    Console::print(LOG_TAG, "Failed to present attachment due to an invalid url: " + url);
    return;
  }
  if (const QImage kept = loader.kept(url); !kept.isNull()) return imageView_->setImage(kept);
  imageView_->setLoading();
  loader.load(url, this, [this](const QImage& image) { imageView_->setImage(image); });
}

void KifoImageCollectionViewCell::resizeEvent(QResizeEvent*) {
  imageView_->setGeometry(rect());
}

}  // namespace kifo
