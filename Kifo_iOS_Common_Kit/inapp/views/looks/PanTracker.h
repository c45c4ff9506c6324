#pragma once

#include <cstdlib>

#include <QPoint>

namespace kifo {

/// Tells a press from the start of a drag. Fed with the global positions of one pointer.
///
/// **Threading:** UI thread only.
class PanTracker {
 public:
  void press(QPoint position) {
    last_ = start_ = position;
    panning_ = false;
  }

  /// How far the content is to follow vertically; 0 while the pointer has not left its press.
  int move(QPoint position) {
    panning_ = panning_ || std::abs(position.y() - start_.y()) > kThreshold;
    if (!panning_) return 0;
    const int travelled = last_.y() - position.y();
    last_ = position;
    return travelled;
  }

  [[nodiscard]] bool isPanning() const { return panning_; }

 private:
  static constexpr int kThreshold = 10;  ///< Logical pixels.

  QPoint start_;
  QPoint last_;
  bool panning_ = false;
};

}  // namespace kifo
