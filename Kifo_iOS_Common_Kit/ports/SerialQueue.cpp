#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"

#include <future>
#include <memory>

namespace kifo {

void SerialQueue::sync(const Task& task) {
  if (isCurrent()) {
    task();
    return;
  }
  // A dropped task destroys its promise, which ends the wait as well.
  auto done = std::make_shared<std::promise<void>>();
  auto finished = done->get_future();
  post([&task, done = std::move(done)] {
    task();
    done->set_value();
  });
  finished.wait();
}

}  // namespace kifo
