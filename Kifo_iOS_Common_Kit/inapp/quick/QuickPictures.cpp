#include "Kifo_iOS_Common_Kit/inapp/quick/QuickPictures.h"

#include <algorithm>
#include <cmath>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageLoader.h"

namespace kifo {
namespace {

constexpr int kWidestPicture = 480;  ///< Logical pixels: the panel at its widest.
constexpr std::chrono::milliseconds kSpinnerStep{100};
constexpr auto kEmojiTag = "Kifo KifoEmojiCollectionViewCell:";
constexpr auto kPageTag = "Kifo KifoImageCollectionViewCell:";

void printInvalid(const char* tag, const std::string& url) {
  Console::print(tag, "Failed to present attachment due to an invalid url: " + url);
}

}  // namespace

QuickPictures::QuickPictures(PopupState& state, const PopUpOptions& options, QObject* popup)
    : QObject(popup), state_(state), options_(options) {
  connect(&pageTimer_, &QTimer::timeout, this, &QuickPictures::turnByItself);
  connect(&spinner_, &QTimer::timeout, this, [this] {
    spinnerStep_ = (spinnerStep_ + 1) % kSpinnerSteps;
    Q_EMIT pieceChanged(PopupPiece::picture);
  });
  slide_.setEasingCurve(QEasingCurve::InOutCubic);
  connect(&slide_, &QVariantAnimation::valueChanged, this, [this](const QVariant& value) {
    offset_ = value.toDouble();
    Q_EMIT pieceChanged(PopupPiece::picture);
  });
}

void QuickPictures::load(PopupParts& parts, double scale) {
  const int pixels = static_cast<int>(std::ceil(kWidestPicture * scale));
  loader_ = options_.imageLoader ? options_.imageLoader
                                 : std::make_shared<ImageLoader>(QSize(pixels, pixels));
  if (parts.has(PopupPiece::emojis)) fetchEmojis(parts);
  const bool isList = pages() > 1;
  // The spelling is kept for compatibility.
  Console::print(PopupState::LOG_TAG, isList ? "image list avaliable" : "image list unavaliable");
  if (isList) {
    slideTo(0);
    pageTimer_.start(options_.durations.carouselInterval);
  } else if (const auto& image = state_.preferences.image; image && ImageLoader::isUrl(*image)) {
    fetch(*image, 0);
  }
}

void QuickPictures::fetch(const std::string& url, int page) {
  if (isLoading(page) || !loader_->kept(url).isNull()) return;
  loading_.push_back(page);
  if (!options_.reducedMotion) spinner_.start(kSpinnerStep);
  loader_->load(url, this, [this, page](const QImage& image) {
    std::erase(loading_, page);
    if (loading_.empty()) spinner_.stop();
    if (page < 0) Q_EMIT emojiCame(-1 - page, image);
    Q_EMIT pieceChanged(page < 0 ? PopupPiece::emojis : PopupPiece::picture);
  });
}

void QuickPictures::fetchEmojis(PopupParts& parts) {
  for (std::size_t row = 0; row < parts.rows().size(); ++row) {
    const auto& url = parts.rows()[row].button->imageUrl;
    if (!url) continue;
    if (!ImageLoader::isUrl(*url)) {
      printInvalid(kEmojiTag, *url);
    } else if (const QImage kept = loader_->kept(*url); !kept.isNull()) {
      Q_EMIT emojiCame(static_cast<int>(row), kept);
    } else {
      fetch(*url, -1 - static_cast<int>(row));
    }
  }
}

QImage QuickPictures::picture(int page) const {
  if (pages() > 1) {
    const auto& url = state_.images[static_cast<std::size_t>(page)];
    return ImageLoader::isUrl(url) ? loader_->kept(url) : QImage();
  }
  return state_.preferences.image ? loader_->kept(*state_.preferences.image) : QImage();
}

bool QuickPictures::isLoading(int page) const {
  return std::ranges::find(loading_, page) != loading_.end();
}

void QuickPictures::slideTo(double offset) {
  offset_ = offset;
  // The neighbours of what is seen are fetched ahead.
  const int first = std::max(static_cast<int>(std::floor(offset)) - 1, 0);
  const int last = std::min(static_cast<int>(std::ceil(offset)) + 1, pages() - 1);
  for (int page = first; page <= last; ++page) {
    const std::string& url = state_.images[static_cast<std::size_t>(page)];
    if (ImageLoader::isUrl(url)) {
      fetch(url, page);
    } else if (page > lastChecked_) {
      printInvalid(kPageTag, url);
    }
    lastChecked_ = std::max(lastChecked_, page);
  }
  Q_EMIT pieceChanged(PopupPiece::picture);
}

void QuickPictures::showPage(int page, bool animated) {
  state_.currentIndex = page;
  Q_EMIT pieceChanged(PopupPiece::pageIndicator);
  slide_.stop();
  const double from = offset_;
  slideTo(page);
  const bool still = options_.reducedMotion || options_.durations.scroll.count() <= 0;
  if (!animated || still) return;
  offset_ = from;
  slide_.setStartValue(from);
  slide_.setEndValue(static_cast<double>(page));
  slide_.setDuration(static_cast<int>(options_.durations.scroll.count()));
  slide_.start();
}

void QuickPictures::turnByItself() {
  const int next = state_.nextPage();
  showPage(next, next != 0);
}

void QuickPictures::turnTo(int page) {
  if (pageTimer_.isActive()) pageTimer_.start();  // the page that was chosen stays its whole time
  showPage(std::clamp(page, 0, std::max(pages() - 1, 0)), true);
}

}  // namespace kifo
