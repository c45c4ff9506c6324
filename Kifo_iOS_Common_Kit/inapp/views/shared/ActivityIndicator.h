#pragma once

#include <QBasicTimer>
#include <QColor>
#include <QWidget>

namespace kifo {

/// A small wheel that rotates while something loads; a still one with reduced motion.
///
/// **Threading:** UI thread only.
class ActivityIndicator : public QWidget {
  Q_OBJECT

 public:
  static constexpr int size = 20;  ///< Width and height.

  ActivityIndicator(const QColor& color, bool still, QWidget* parent);

  void startAnimating();
  void stopAnimating();
  [[nodiscard]] bool isAnimating() const { return animating_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  QBasicTimer timer_;
  QColor color_;
  int step_ = 0;
  bool still_ = false;
  bool animating_ = false;
};

}  // namespace kifo
