#pragma once

#include <QImage>
#include <QWidget>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PopupTheme.h"

namespace kifo {

class ActivityIndicator;

/// A picture, fitted into its place with its aspect kept. While it loads there is a quiet
/// placeholder with a turning wheel; when it cannot be had, the placeholder stays and the wheel
/// goes; when none was asked for there is nothing. Its size never depends on the picture.
///
/// **Threading:** UI thread only.
class PopupImageView : public QWidget {
  Q_OBJECT

 public:
  PopupImageView(const PopupTheme& theme, QWidget* parent);

  void setLoading();
  /// A null image is a failure.
  void setImage(const QImage& image);
  [[nodiscard]] const QImage& image() const { return image_; }
  [[nodiscard]] ActivityIndicator* activityIndicatorView() const { return activityIndicatorView_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  PopupTheme theme_;
  QImage image_;
  bool asked_ = false;
  ActivityIndicator* activityIndicatorView_;
};

}  // namespace kifo
