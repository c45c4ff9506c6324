#pragma once

#include <QMetaObject>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {

/// Posts to a QObject of the UI thread from any thread, as long as it exists.
///
/// **Threading:** `post` from any thread; the rest belongs to the target.
template <class Target>
class UiLink {
 public:
  explicit UiLink(Target* target) : target_(target) {}

  /// Runs `task(target)` on the UI thread later; false when the target was destroyed.
  template <class Task>
  bool post(Task task) {
    const MutexLock lock(mutex_);
    if (!target_) return false;
    const MutexLock posting(posting_);
    return QMetaObject::invokeMethod(
        target_,
        [target = target_, task = std::move(task)] {
          { const MutexLock posted(posting_); }
          task(*target);
        },
        Qt::QueuedConnection);
  }

  /// Called by the target's destructor. Qt drops what was posted and has not run.
  void close() {
    const MutexLock lock(mutex_);
    target_ = nullptr;
  }

 private:
  /// Qt's event queue orders a post before its task, with a lock that ThreadSanitizer does not see.
  inline static Mutex posting_;

  Mutex mutex_;
  Target* target_ KIFO_GUARDED_BY(mutex_);
};

}  // namespace kifo
