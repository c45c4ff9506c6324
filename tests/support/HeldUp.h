#pragma once

#include <future>

#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "tests/support/Common.h"

namespace kifo::testing {

/// Holds a queue up until it goes.
class HeldUp {
 public:
  explicit HeldUp(SerialQueue& queue) {
    queue.post([this] {
      begun_.set_value();
      release_.get_future().wait();
      ended_.set_value();
    });
    begun_.get_future().wait();
  }
  ~HeldUp() {
    release_.set_value();
    ended_.get_future().wait();
  }

 private:
  std::promise<void> begun_;
  std::promise<void> release_;
  std::promise<void> ended_;
};

}  // namespace kifo::testing
