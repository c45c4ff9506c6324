#include "platform/linux/Wakeup.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdint>

namespace kifo {

Wakeup::Wakeup() : descriptor_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

Wakeup::~Wakeup() {
  if (descriptor_ >= 0) close(descriptor_);
}

void Wakeup::signal() const {
  const std::uint64_t one = 1;
  [[maybe_unused]] const auto written = write(descriptor_, &one, sizeof one);
}

void Wakeup::clear() const {
  std::uint64_t count = 0;
  [[maybe_unused]] const auto taken = read(descriptor_, &count, sizeof count);
}

}  // namespace kifo
