#pragma once

#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/ConsoleSink.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"

namespace kifo {

/// Prints lines on standard error, in the order in which they came, by a task on the queue. A
/// reader that does not read delays no caller: lines wait, and beyond a mebibyte they are dropped
/// and counted.
///
/// **Threading:** thread-safe, never blocks.
/// **Ownership:** what is left is printed when it is destroyed.
class LinuxConsole final : public ConsoleSink {
 public:
  explicit LinuxConsole(std::shared_ptr<SerialQueue> queue, int descriptor = 2);
  ~LinuxConsole() override;

  void write(std::string line) override;

  /// Prints what waits, for no longer than `bound`, and from then on each line at once. For when
  /// the queue has stopped.
  void finish(SerialQueue::Duration bound);

 private:
  class Buffer;
  const std::shared_ptr<Buffer> buffer_;
};

}  // namespace kifo
