#pragma once

namespace kifo {

/// Ends another thread's poll, by an eventfd.
///
/// **Threading:** thread-safe.
/// **Errors:** a process without a free descriptor gets one that is -1, which poll ignores; whoever
/// sleeps on it then has to look up by itself now and then.
class Wakeup {
 public:
  Wakeup();
  ~Wakeup();
  Wakeup(const Wakeup&) = delete;
  Wakeup& operator=(const Wakeup&) = delete;

  [[nodiscard]] int descriptor() const { return descriptor_; }
  /// Makes the descriptor readable.
  void signal() const;
  /// Makes it unreadable again, however often it was signalled.
  void clear() const;

 private:
  const int descriptor_;
};

}  // namespace kifo
