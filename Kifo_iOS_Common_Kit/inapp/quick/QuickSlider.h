#pragma once

#include <cmath>

#include <QVariantAnimation>

#include "Kifo_iOS_Common_Kit/inapp/quick/QuickControl.h"

namespace kifo {

/// The score's slider.
///
/// **Threading:** UI thread; painting on the render thread while the UI thread waits.
/// **Ownership:** belongs to its popup.
class QuickSlider : public kifo::QuickControl {
  Q_OBJECT
  QML_NAMED_ELEMENT(PopupSlider)
  Q_PROPERTY(double value READ value WRITE setValue NOTIFY valueChanged)
  Q_PROPERTY(double minimumValue READ minimumValue CONSTANT)
  Q_PROPERTY(double maximumValue READ maximumValue CONSTANT)
  Q_PROPERTY(double stepSize READ stepSize CONSTANT)

 public:
  explicit QuickSlider(QQuickItem* parent = nullptr);

  [[nodiscard]] double value() const { return std::trunc(static_cast<double>(look_.position)); }
  void setValue(double value);
  [[nodiscard]] double minimumValue() const { return look_.minimum; }
  [[nodiscard]] double maximumValue() const { return look_.maximum; }
  [[nodiscard]] double stepSize() const { return 1; }

  void paint(QPainter* painter) override;

 Q_SIGNALS:
  void valueChanged();

 protected:
  void componentComplete() override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void moveTo(float position);

  ScoreLook look_;
  QVariantAnimation glide_;
};

}  // namespace kifo
