#pragma once

#include <mutex>
#include <utility>

namespace kifo::testing {

/// A value that a test sets and the SDK reads, from any thread.
template <class T>
class Scripted {
 public:
  Scripted() = default;
  explicit Scripted(T value) : value_(std::move(value)) {}

  [[nodiscard]] T get() const {
    const std::lock_guard lock(mutex_);
    return value_;
  }
  void set(T value) {
    const std::lock_guard lock(mutex_);
    value_ = std::move(value);
  }
  /// Changes the value in place and returns what `change` returns.
  template <class Change>
  decltype(auto) update(Change&& change) {
    const std::lock_guard lock(mutex_);
    return std::forward<Change>(change)(value_);
  }

 private:
  mutable std::mutex mutex_;
  T value_{};  // guarded by mutex_
};

}  // namespace kifo::testing
