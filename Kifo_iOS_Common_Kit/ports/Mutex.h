#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <shared_mutex>

/// Attributes that let clang check at compile time which mutex protects what (-Wthread-safety).
/// Other compilers ignore them. Example: `int count_ KIFO_GUARDED_BY(mutex_) = 0;`
#if defined(__clang__)
#define KIFO_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define KIFO_THREAD_ATTRIBUTE(x)
#endif

/// The member is read and written only with `mutex` held.
#define KIFO_GUARDED_BY(mutex) KIFO_THREAD_ATTRIBUTE(guarded_by(mutex))
/// What the pointer refers to is read and written only with `mutex` held.
#define KIFO_PT_GUARDED_BY(mutex) KIFO_THREAD_ATTRIBUTE(pt_guarded_by(mutex))
/// The function or lambda is called only with `mutex` held.
#define KIFO_REQUIRES(...) KIFO_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
/// The function locks `mutex` by itself: it must not be held by the caller.
#define KIFO_EXCLUDES(...) KIFO_THREAD_ATTRIBUTE(locks_excluded(__VA_ARGS__))
/// The function returns with `mutex` held, or, without an argument, with the object itself held.
#define KIFO_ACQUIRE(...) KIFO_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define KIFO_ACQUIRE_SHARED(...) KIFO_THREAD_ATTRIBUTE(acquire_shared_capability(__VA_ARGS__))
#define KIFO_TRY_ACQUIRE(...) KIFO_THREAD_ATTRIBUTE(try_acquire_capability(__VA_ARGS__))
/// The function releases `mutex`, or the object itself.
#define KIFO_RELEASE(...) KIFO_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
#define KIFO_RELEASE_SHARED(...) KIFO_THREAD_ATTRIBUTE(release_shared_capability(__VA_ARGS__))
/// The analysis cannot follow this function; a comment beside it says why it is right.
#define KIFO_NO_THREAD_SAFETY_ANALYSIS KIFO_THREAD_ATTRIBUTE(no_thread_safety_analysis)

namespace kifo {

/// std::mutex with the attributes. Not recursive.
class KIFO_THREAD_ATTRIBUTE(capability("mutex")) Mutex {
 public:
  void lock() KIFO_ACQUIRE() { mutex_.lock(); }
  bool try_lock() KIFO_TRY_ACQUIRE(true) { return mutex_.try_lock(); }
  void unlock() KIFO_RELEASE() { mutex_.unlock(); }

 private:
  friend class ConditionVariable;
  std::mutex mutex_;
};

/// Holds a Mutex until the end of the block, or until `unlock`.
class KIFO_THREAD_ATTRIBUTE(scoped_lockable) MutexLock {
 public:
  explicit MutexLock(Mutex& mutex) KIFO_ACQUIRE(mutex) : mutex_(mutex) { mutex_.lock(); }
  ~MutexLock() KIFO_RELEASE() {
    if (isHeld_) mutex_.unlock();
  }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

  void lock() KIFO_ACQUIRE() {
    mutex_.lock();
    isHeld_ = true;
  }
  void unlock() KIFO_RELEASE() {
    isHeld_ = false;
    mutex_.unlock();
  }

 private:
  Mutex& mutex_;
  bool isHeld_ = true;
};

/// std::condition_variable for a Mutex. A predicate that reads guarded members names the mutex:
///
///     changed_.wait(mutex_, [this]() KIFO_REQUIRES(mutex_) { return isDone_; });
class ConditionVariable {
 public:
  void notifyOne() { condition_.notify_one(); }
  void notifyAll() { condition_.notify_all(); }

  /// Returns once `predicate` holds.
  template <class Predicate>
  void wait(Mutex& mutex, Predicate predicate) KIFO_REQUIRES(mutex) KIFO_NO_THREAD_SAFETY_ANALYSIS {
    Adopted lock(mutex);
    condition_.wait(lock.native, predicate);
  }

  /// Returns what `predicate` gives once it holds or `bound` is over.
  template <class Rep, class Period, class Predicate>
  bool waitFor(Mutex& mutex, const std::chrono::duration<Rep, Period>& bound, Predicate predicate)
      KIFO_REQUIRES(mutex) KIFO_NO_THREAD_SAFETY_ANALYSIS {
    Adopted lock(mutex);
    return condition_.wait_for(lock.native, bound, predicate);
  }

 private:
  /// The native lock of a mutex that the caller holds before and after.
  struct Adopted {
    explicit Adopted(Mutex& mutex) : native(mutex.mutex_, std::adopt_lock) {}
    ~Adopted() { native.release(); }
    std::unique_lock<std::mutex> native;
  };

  std::condition_variable condition_;
};

/// std::shared_mutex with the attributes: readers keep no reader waiting.
class KIFO_THREAD_ATTRIBUTE(capability("mutex")) SharedMutex {
 public:
  void lock() KIFO_ACQUIRE() { mutex_.lock(); }
  void unlock() KIFO_RELEASE() { mutex_.unlock(); }
  void lock_shared() KIFO_ACQUIRE_SHARED() { mutex_.lock_shared(); }
  void unlock_shared() KIFO_RELEASE_SHARED() { mutex_.unlock_shared(); }

 private:
  std::shared_mutex mutex_;
};

class KIFO_THREAD_ATTRIBUTE(scoped_lockable) ReaderLock {
 public:
  explicit ReaderLock(SharedMutex& mutex) KIFO_ACQUIRE_SHARED(mutex) : mutex_(mutex) {
    mutex_.lock_shared();
  }
  ~ReaderLock() KIFO_RELEASE() { mutex_.unlock_shared(); }
  ReaderLock(const ReaderLock&) = delete;
  ReaderLock& operator=(const ReaderLock&) = delete;

 private:
  SharedMutex& mutex_;
};

class KIFO_THREAD_ATTRIBUTE(scoped_lockable) WriterLock {
 public:
  explicit WriterLock(SharedMutex& mutex) KIFO_ACQUIRE(mutex) : mutex_(mutex) { mutex_.lock(); }
  ~WriterLock() KIFO_RELEASE() { mutex_.unlock(); }
  WriterLock(const WriterLock&) = delete;
  WriterLock& operator=(const WriterLock&) = delete;

 private:
  SharedMutex& mutex_;
};

}  // namespace kifo
