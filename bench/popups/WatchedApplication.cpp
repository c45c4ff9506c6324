#include "bench/popups/WatchedApplication.h"

#include <sys/resource.h>
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

double microsecondsOf(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

WatchedApplication::Stretch untilNow() {
  rusage used{};
  getrusage(RUSAGE_THREAD, &used);
  return {.cpu = microsecondsOf(CLOCK_THREAD_CPUTIME_ID),
          .wall = microsecondsOf(CLOCK_MONOTONIC),
          .pages = used.ru_minflt,
          .what = {}};
}

WatchedApplication::Stretch since(const WatchedApplication::Stretch& begin) {
  WatchedApplication::Stretch stretch = untilNow();
  stretch.cpu -= begin.cpu;
  stretch.wall -= begin.wall;
  stretch.pages -= begin.pages;
  return stretch;
}

}  // namespace

double WatchedApplication::ownTime() {
  return microsecondsOf(CLOCK_THREAD_CPUTIME_ID);
}

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
  const Stretch begin = untilNow();
  ++depth_;
  const bool result = QApplication::notify(receiver, event);
  --depth_;
  Stretch stretch = since(begin);
  if (framed_ && !frame_) frame_ = Clock::now();
  if (stretch.cpu <= hardest_.cpu && stretch.wall <= longest_.wall) return result;
  stretch.what = QString::fromLatin1(QMetaEnum::fromType<QEvent::Type>().valueToKey(type)) +
                 QStringLiteral(" of ") + QString::fromLatin1(name);
  if (stretch.cpu > hardest_.cpu) hardest_ = stretch;
  if (stretch.wall > longest_.wall) longest_ = stretch;
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
