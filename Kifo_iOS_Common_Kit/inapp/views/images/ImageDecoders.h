#pragma once

#include <deque>
#include <functional>

#include <QThreadPool>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {

/// Where pictures are decoded. Not on Qt's global threads: Qt paints on those as well, and the UI
/// thread would wait for a picture in the middle of a frame.
///
/// **Threading:** any thread. **Ownership:** never destroyed, since the transport may bring a
/// picture while the program ends. From the end of the program on, what waits is dropped and
/// nothing is taken any more; a picture that is being decoded is waited for, since a decoder must
/// not outlive Qt's plugins.
class ImageDecoders {
 public:
  /// Has `task` run on one of the threads.
  static void start(std::function<void()> task);
  /// Returns when nothing is left to run.
  static void waitForDone();

 private:
  /// Is destroyed when the program ends.
  class Closer {
   public:
    Closer();
    ~Closer();

   private:
    qint64 process_;  ///< A forked child that exits has none of its parent's threads to wait for.
  };

  static ImageDecoders& shared();
  void runNext();

  QThreadPool threads_;
  Mutex mutex_;
  /// Not kept by the pool, whose locks a thread sanitizer cannot see.
  std::deque<std::function<void()>> tasks_ KIFO_GUARDED_BY(mutex_);
  bool closed_ KIFO_GUARDED_BY(mutex_) = false;
};

}  // namespace kifo
