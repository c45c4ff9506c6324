#include "bench/popups/WatchedApplication.h"

#include <time.h>

#include <QEventLoop>
#include <QMetaEnum>
#include <QTimer>
#include <QWidget>

namespace kifo::bench {
namespace {

int argumentCount = 1;
char programName[] = "kifo_popup_bench";
char* programArguments[] = {programName, nullptr};

double cpuMicroseconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

}  // namespace

WatchedApplication::WatchedApplication() : QApplication(argumentCount, programArguments) {}

bool WatchedApplication::notify(QObject* receiver, QEvent* event) {
  if (depth_ == 0) return timed(receiver, event);
  const QPointer<QWidget> painted =
      event->type() == QEvent::Paint ? qobject_cast<QWidget*>(receiver) : nullptr;
  ++depth_;
  const bool result = QApplication::notify(receiver, event);
  --depth_;
  if (painted) wasPainted(painted);
  return result;
}

/// An event that the event loop itself delivers, with all that it leads to.
bool WatchedApplication::timed(QObject* receiver, QEvent* event) {
  const auto type = event->type();
  const char* name = receiver->metaObject()->className();
  const double cpu = cpuMicroseconds();
  ++depth_;
  const bool result = QApplication::notify(receiver, event);
  --depth_;
  const double spent = cpuMicroseconds() - cpu;
  if (framed_ && !frame_) frame_ = Clock::now();
  if (spent > longest_.cpu) {
    const QString what = QString::fromLatin1(QMetaEnum::fromType<QEvent::Type>().valueToKey(type)) +
                         QStringLiteral(" of ") + QString::fromLatin1(name);
    longest_ = {spent, what};
  }
  return result;
}

void WatchedApplication::wasPainted(QWidget* widget) {
  const bool awaited = !awaited_.isEmpty() && !framed_ && widget->objectName() == awaited_;
  if (awaited && (!accepts_ || accepts_(widget))) framed_ = widget;
}

WatchedApplication::Clock::time_point WatchedApplication::frameOf(
    const QString& name, const std::function<bool(QWidget*)>& accepts) {
  awaited_ = name;
  accepts_ = accepts;
  framed_ = nullptr;
  frame_.reset();
  while (!frame_) processEvents(QEventLoop::WaitForMoreEvents);
  awaited_.clear();
  return *frame_;
}

void WatchedApplication::spin(std::chrono::milliseconds duration) {
  QEventLoop loop;
  QTimer::singleShot(duration, &loop, &QEventLoop::quit);
  loop.exec();
}

void WatchedApplication::spinUntilGone(QWidget* widget) {
  if (!widget) return;
  QEventLoop loop;
  QObject::connect(widget, &QObject::destroyed, &loop, &QEventLoop::quit);
  loop.exec();
}

}  // namespace kifo::bench
