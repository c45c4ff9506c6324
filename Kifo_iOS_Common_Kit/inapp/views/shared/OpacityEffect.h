#pragma once

#include <QElapsedTimer>
#include <QGraphicsEffect>
#include <QPixmap>

namespace kifo {

/// Shows a widget with its children as a picture of itself that is more or less opaque. The picture
/// is taken when it is first needed, when the widget has another size, and when it has grown old.
///
/// **Threading:** UI thread only. **Ownership:** belongs to the widget, which must be the one that
/// it is set on.
class OpacityEffect : public QGraphicsEffect {
  Q_OBJECT
  Q_PROPERTY(double opacity READ opacity)

 public:
  explicit OpacityEffect(QWidget& widget);

  /// 0 to 1.
  void setOpacity(double opacity);
  [[nodiscard]] double opacity() const { return opacity_; }
  void takePicture();
  [[nodiscard]] bool hasPicture() const { return !picture_.isNull(); }

 protected:
  void draw(QPainter* painter) override;

 private:
  [[nodiscard]] bool isFresh() const;

  QWidget& widget_;
  QPixmap picture_;
  QElapsedTimer age_;
  double opacity_ = 1;
  bool posing_ = false;
};

}  // namespace kifo
