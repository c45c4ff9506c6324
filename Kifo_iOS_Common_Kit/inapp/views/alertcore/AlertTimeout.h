#pragma once

#include <QObject>
#include <QTimer>
#include <optional>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// The clock of an alert's time-out: counts seconds for the buttons' titles, and can be held.
///
/// **Threading:** UI thread only.
class KIFO_SHARED AlertTimeout : public QObject {
  Q_OBJECT
 public:
  explicit AlertTimeout(QObject* parent = nullptr);

  /// Runs for `seconds`; zero, less or not a number stops it instead. `ticks`: whether somebody
  /// wants to be told each second.
  void start(double seconds, bool ticks);
  void stop();
  /// Signals each second from now on.
  void tickToo();
  /// Stops the clock or continues it with what was left.
  void setHeld(bool held);
  /// One second has passed: counts down and says so.
  void tick();

  /// Whole seconds until the end, rounded up; none while no time-out is set.
  [[nodiscard]] std::optional<int> secondsLeft() const;
  [[nodiscard]] bool isHeld() const { return held_; }
  [[nodiscard]] const QTimer& timeoutTimer() const { return timeoutTimer_; }
  [[nodiscard]] const QTimer& showTimeoutTimer() const { return showTimeoutTimer_; }

 Q_SIGNALS:
  void ticked();
  void ended();

 private:
  void run();

  QTimer timeoutTimer_;
  QTimer showTimeoutTimer_;
  std::chrono::milliseconds left_{0};  ///< While the clock is held.
  int seconds_ = 0;
  bool set_ = false;
  bool ticks_ = false;
  bool held_ = false;
};

}  // namespace kifo
