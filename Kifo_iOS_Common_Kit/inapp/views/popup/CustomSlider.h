#pragma once

#include <cstdint>

#include <QSlider>
#include <QVariantAnimation>

#include "Kifo_iOS_Common_Kit/inapp/views/looks/ControlLooks.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// The score slider: a thick track that begins at the middle line of its bounds, and a thumb that
/// follows the finger between whole scores and glides to the whole score when it is released. Until
/// it is first touched the thumb is hollow: there is no answer yet. Ranges of up to ten scores
/// have a tick for each.
///
/// **Threading:** UI thread only.
class CustomSlider : public QSlider {
  Q_OBJECT

 public:
  CustomSlider(const PopupTheme& theme, QWidget* parent);

  /// The range of scores. Scores beyond 2^30 count as that; a maximum below the minimum counts as
  /// the minimum.
  void setScores(std::int64_t minimum, std::int64_t maximum);

  /// Where the thumb stands, between `minimum` and `maximum`. The whole part is `value`.
  [[nodiscard]] float position() const { return position_; }

  /// What is painted.
  [[nodiscard]] ScoreLook look() const;
  /// Whether the user has moved or pressed the thumb.
  [[nodiscard]] bool isTouched() const { return touched_; }

 Q_SIGNALS:
  /// The thumb moved, by whatever means.
  void valueDidChange(float position);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void sliderChange(SliderChange change) override;

 private:
  [[nodiscard]] double span() const { return static_cast<double>(maximum()) - minimum(); }
  void moveTo(float position);
  void glideToWhole();

  PopupTheme theme_;
  float position_ = 0;
  QVariantAnimation glide_;
  bool byKeyboard_ = false;
  bool touched_ = false;
};

}  // namespace kifo
