#pragma once

#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupImageView.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

class ImageLoader;

/// One page of the carousel.
///
/// **Threading:** UI thread only.
class KifoImageCollectionViewCell : public QWidget {
  Q_OBJECT

 public:
  static constexpr const char* identifier = "KifoImageCollectionViewCell";
  static constexpr std::string_view LOG_TAG = "Kifo KifoImageCollectionViewCell:";

  KifoImageCollectionViewCell(const PopupTheme& theme, QWidget* parent);

  /// Shows the picture at `url` once it has come. A text that is no URL is named on the console and
  /// leaves the cell as it is.
  void configure(const std::string& url, ImageLoader& loader);

  [[nodiscard]] PopupImageView* imageView() const { return imageView_; }
  [[nodiscard]] ActivityIndicator* activityIndicatorView() const {
    return imageView_->activityIndicatorView();
  }

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  PopupImageView* imageView_;
};

}  // namespace kifo
