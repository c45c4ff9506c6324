#include "Kifo_iOS_Common_Kit/inapp/views/popup/PopupImageView.h"

#include <QPainter>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelLooks.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/ActivityIndicator.h"

namespace kifo {
PopupImageView::PopupImageView(const PopupTheme& theme, QWidget* parent)
    : QWidget(parent),
      theme_(theme),
      activityIndicatorView_(new ActivityIndicator(theme.ink, theme.options.reducedMotion, this)) {}

void PopupImageView::setLoading() {
  asked_ = true;
  image_ = {};
  activityIndicatorView_->startAnimating();
  update();
}

void PopupImageView::setImage(const QImage& image) {
  image_ = image;
  activityIndicatorView_->stopAnimating();
  update();
}

void PopupImageView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  if (!image_.isNull()) return paintPicture(painter, rect(), image_);
  if (asked_) paintNoPicture(painter, theme_, rect(), activityIndicatorView_->isAnimating());
}

void PopupImageView::resizeEvent(QResizeEvent*) {
  activityIndicatorView_->move((width() - ActivityIndicator::size) / 2,
                               (height() - ActivityIndicator::size) / 2);
}

}  // namespace kifo
