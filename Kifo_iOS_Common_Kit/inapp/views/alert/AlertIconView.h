#pragma once

#include <QBasicTimer>
#include <QColor>
#include <QIcon>
#include <QWidget>
#include <optional>

#include "Kifo_iOS_Common_Kit/inapp/views/alert/KifoPopupStyle.h"

namespace kifo {

/// What stands inside an alert's circle: the host's image, the style's drawn icon, or a turning
/// indicator. The indicator's clock runs only while it can be seen.
///
/// **Threading:** UI thread only.
class AlertIconView : public QWidget {
  Q_OBJECT
 public:
  explicit AlertIconView(QWidget* parent = nullptr);

  /// Shows `image`, in `tint` if that is valid.
  void showImage(const QIcon& image, const QColor& tint);
  void showIcon(KifoPopupStyle style, const QColor& color);
  void showIndicator(const QColor& color);
  [[nodiscard]] bool isTurning() const { return clock_.isActive(); }
  [[nodiscard]] QColor color() const { return color_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void timerEvent(QTimerEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  enum class Content { image, icon, indicator };

  void setContent(Content content, const QColor& color);
  void paintImage(QPainter& painter) const;
  void paintIndicator(QPainter& painter) const;
  void runClock();

  Content content_ = Content::icon;
  QIcon image_;
  KifoPopupStyle style_ = KifoPopupStyle::info;
  QColor color_;
  QBasicTimer clock_;
  int step_ = 0;
};

}  // namespace kifo
