#pragma once

#include <QApplication>
#include <QPointer>
#include <QString>
#include <chrono>
#include <functional>
#include <optional>

namespace kifo::bench {

/// An application that times every event from outside: nothing of what is measured knows of it.
///
/// **Threading:** UI thread only.
class WatchedApplication : public QApplication {
 public:
  using Clock = std::chrono::steady_clock;

  /// One event with all that it led to before the event loop had its turn again.
  struct Stretch {
    double cpu = 0;   ///< Microseconds of this thread's own time.
    double wall = 0;  ///< Microseconds that passed; more than `cpu` when the thread had to wait.
    long pages = 0;   ///< How many pages of memory the kernel had to find for it.
    QString what;     ///< The event and who got it.
  };

  WatchedApplication();

  /// Microseconds that the calling thread has worked.
  static double ownTime();

  bool notify(QObject* receiver, QEvent* event) override;

  /// Waits for the first frame in which the widget of that name is painted and `accepts` it;
  /// returns when that frame was done.
  Clock::time_point frameOf(const QString& name, const std::function<bool(QWidget*)>& accepts = {});
  [[nodiscard]] QWidget* framed() const { return framed_; }

  void forgetStretches() { hardest_ = longest_ = {}; }
  /// The one with the most work in it.
  [[nodiscard]] const Stretch& hardest() const { return hardest_; }
  /// The one that took longest, be it only that the thread was not let run.
  [[nodiscard]] const Stretch& longest() const { return longest_; }

  /// Lets the event loop run.
  static void spin(std::chrono::milliseconds duration);
  static void spinUntilGone(QWidget* widget);

 private:
  bool timed(QObject* receiver, QEvent* event);
  void wasPainted(QWidget* widget);

  QString awaited_;
  std::function<bool(QWidget*)> accepts_;
  QPointer<QWidget> framed_;
  std::optional<Clock::time_point> frame_;
  Stretch hardest_;
  Stretch longest_;
  int depth_ = 0;
};

}  // namespace kifo::bench
