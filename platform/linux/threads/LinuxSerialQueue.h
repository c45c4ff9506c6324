#pragma once

#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"

namespace kifo {

/// A serial queue on a thread of its own, which starts with the first task and waits without
/// periodic wake-ups while there is nothing to do. The thread can also watch descriptors:
///
///     const auto watch = queue->watch(socket, [=] { receive(socket); });
///     …
///     queue->unwatch(watch);
///     close(socket);
///
/// **Threading:** thread-safe. `post` takes no lock, and makes one system call if it has to wake
/// the thread: what a host's thread posts may begin up to 1 ms later (see Mailbox.h).
/// **Ownership:** the thread shares the queue's state: the queue may be destroyed by its own task
/// or while a task hangs. Destroying a queue that was not stopped stops it within 0.1 s.
class LinuxSerialQueue final : public SerialQueue {
 public:
  using Watch = std::uint64_t;  ///< 0 is never a watch.

  /// `name` is the thread's, at most 15 characters.
  explicit LinuxSerialQueue(std::string name);
  ~LinuxSerialQueue() override;

  void post(Task task) override;
  Timer schedule(Duration delay, Task task, bool repeats = false) override;
  void cancel(Timer timer) override;
  [[nodiscard]] bool isCurrent() const override;
  /// Called from a task of the queue it cannot wait: what is queued runs after that task.
  bool stop(Duration bound) override;
  void sync(const Task& task) override;

  /// Runs `readable` as a task whenever `descriptor` has something to read, has failed or was hung
  /// up, for as long as that lasts. The caller keeps the descriptor open until `unwatch`.
  Watch watch(int descriptor, Task readable);
  /// No call begins after this returns, but one may be running on the queue.
  void unwatch(Watch watch);

 private:
  class Core;
  const std::shared_ptr<Core> core_;
};

}  // namespace kifo
