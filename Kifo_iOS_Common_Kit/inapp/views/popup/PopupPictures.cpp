#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupPictures.h"

#include <cmath>

#include <QTimer>
#include <QWidget>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageLoader.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/KifoEmojiCollectionViewCell.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PageIndicator.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopUpWindowView.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupCarousel.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupEmojiRow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupImageView.h"

namespace kifo {
namespace {

constexpr int kWidestPicture = 480;  ///< Logical pixels: the panel at its widest.

std::shared_ptr<ImageLoader> loaderFor(const PopUpOptions& options, const QWidget& window) {
  if (options.imageLoader) return options.imageLoader;
  const int pixels = static_cast<int>(std::ceil(kWidestPicture * window.devicePixelRatioF()));
  return std::make_shared<ImageLoader>(QSize(pixels, pixels));
}

}  // namespace

PopupPictures::PopupPictures(PopUpWindowView& view, const PopUpOptions& options, QWidget* window)
    : QObject(window), view_(view), loader_(loaderFor(options, *window)) {}

void PopupPictures::load() {
  const PopupElements& e = view_.elements();
  if (e.emojiCollectionView) {
    for (auto* cell : e.emojiCollectionView->cells()) cell->load(*loader_);
  }
  const bool isList = e.popupImageViewList != nullptr;
  // The spelling is kept for compatibility.
  Console::print(PopupState::LOG_TAG, isList ? "image list avaliable" : "image list unavaliable");
  if (isList) {
    loadCarousel();
  } else {
    loadSingle();
  }
}

void PopupPictures::loadCarousel() {
  const PopupElements& e = view_.elements();
  const std::vector<std::string>& images = view_.state().images;
  e.popupImageViewList->setImages(images, loader_);
  e.pageIndicator->setNumberOfPages(static_cast<int>(images.size()));
  connect(e.popupImageViewList, &PopupCarousel::pageTurned, this, [this](int page) {
    if (timer_) timer_->start();  // the page that the user chose stays its whole time
    Q_EMIT pageTurned(page);
  });
  QTimer::singleShot(0, this, &PopupPictures::startTimer);
}

void PopupPictures::loadSingle() {
  const auto& image = view_.state().preferences.image;
  PopupImageView* place = view_.elements().popupImageView;
  if (!image || !ImageLoader::isUrl(*image) || !place) return;
  place->setLoading();
  loader_->load(*image, place, [place](const QImage& picture) { place->setImage(picture); });
}

void PopupPictures::startTimer() {
  if (stopped_ || timer_) return;
  timer_ = new QTimer(this);
  connect(timer_, &QTimer::timeout, this, &PopupPictures::due);
  timer_->start(view_.theme().options.durations.carouselInterval);
}

void PopupPictures::stopTimer() {
  stopped_ = true;
  if (!timer_) return;
  timer_->stop();
  timer_->deleteLater();
  timer_ = nullptr;
}

void PopupPictures::scrollTo(int page, bool animated) {
  PopupCarousel* list = view_.elements().popupImageViewList;
  if (!list) return;
  list->setPagingEnabled(false);
  list->scrollToItem(page, 0, CollectionView::ScrollPosition::centeredHorizontally, animated);
  list->setPagingEnabled(true);
}

}  // namespace kifo
