#pragma once

#include <sys/resource.h>

#include <csignal>

#include "tests/support/Common.h"

namespace kifo::testing {

/// While it lives no file of this process can be written beyond its first bytes, as on a full disk.
class FullDisk {
 public:
  explicit FullDisk(rlim_t bytes = 0) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  void (*handler_)(int);
  rlimit before_{};
};

}  // namespace kifo::testing
