#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"

namespace kifo {

/// A reading that may be slow. The first call reads on its own thread; later calls return the last
/// value and have it renewed on the queue when it is old.
///
/// **Threading:** thread-safe. `read` runs on the first caller's thread (on several when they come
/// at once) and then on the queue.
template <class T>
class CachedReading {
 public:
  using Read = std::function<T()>;

  CachedReading(std::shared_ptr<SerialQueue> queue, Read read,
                std::chrono::steady_clock::duration freshFor = std::chrono::seconds(10))
      : queue_(std::move(queue)), state_(std::make_shared<State>(std::move(read), freshFor)) {}

  [[nodiscard]] T get() const {
    MutexLock lock(state_->mutex);
    if (!state_->last) {
      lock.unlock();
      return state_->renew();
    }
    const T last = *state_->last;
    const bool renews = !state_->renewing && state_->isOld();
    if (renews) state_->renewing = true;
    lock.unlock();
    if (renews) queue_->post([state = state_] { state->renew(); });
    return last;
  }

 private:
  using Clock = std::chrono::steady_clock;

  /// Shared with the task that renews, which may outlive this object.
  struct State {
    State(Read reading, Clock::duration fresh) : read(std::move(reading)), freshFor(fresh) {}

    T renew() {
      T now = read();
      const MutexLock lock(mutex);
      last = now;
      taken = Clock::now();
      renewing = false;
      return now;
    }
    [[nodiscard]] bool isOld() const KIFO_REQUIRES(mutex) {
      return Clock::now() - taken > freshFor;
    }

    const Read read;
    const Clock::duration freshFor;

    Mutex mutex;
    std::optional<T> last KIFO_GUARDED_BY(mutex);
    Clock::time_point taken KIFO_GUARDED_BY(mutex);
    bool renewing KIFO_GUARDED_BY(mutex) = false;
  };

  const std::shared_ptr<SerialQueue> queue_;
  const std::shared_ptr<State> state_;
};

}  // namespace kifo
