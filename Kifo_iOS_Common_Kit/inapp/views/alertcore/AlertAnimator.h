#pragma once

#include <QObject>
#include <QPoint>
#include <QRect>
#include <QVariantAnimation>

#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/AlertMotion.h"
#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoAnimationStyle.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Brings an alert's card in and takes it out. Either way it goes on from where the card is, so
/// that one may interrupt the other at any time.
///
/// Coming in, the card moves over the last 200 pixels at most, slowing down, while it and the
/// dimming fade in; going out, it moves back and fades. With the spring it moves past its place and
/// back.
///
/// **Threading:** UI thread only. **Errors:** none; a duration of zero or reduced motion ends at
/// once, before the call returns.
class KIFO_SHARED AlertAnimator : public QObject {
  Q_OBJECT
 public:
  explicit AlertAnimator(QObject* parent = nullptr);

  void enter(KifoAnimationStyle style, bool spring, const AlertMotion& motion);
  void leave(const AlertMotion& motion);
  /// Hides the card at once and without a signal, for the next `enter`.
  void reset();

  /// How much of the card and of the dimming is to be seen, 0 to 1.
  [[nodiscard]] double opacity() const;
  /// How far the card is from `place`, where it ends, in `window`.
  [[nodiscard]] QPoint offset(const QRect& place, const QRect& window) const;
  [[nodiscard]] bool isRunning() const { return animation_.state() == QAbstractAnimation::Running; }
  [[nodiscard]] const QVariantAnimation& animation() const { return animation_; }

 Q_SIGNALS:
  /// Before anything of it can be seen.
  void began();
  void moved();
  void entered();
  void left();

 private:
  void run(double end, std::chrono::milliseconds duration, const QEasingCurve& curve);
  void arrive();

  QVariantAnimation animation_{this};
  KifoAnimationStyle style_ = KifoAnimationStyle::noAnimation;
  double position_ = 0;  ///< 0: out; 1: in its place; more: past it.
  double goal_ = 0;
};

}  // namespace kifo
