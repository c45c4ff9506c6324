#include "Kifo_iOS_Common_Kit/network/KifoReachabilityWeakifier.h"

#include "Kifo_iOS_Common_Kit/network/KifoReachability.h"

namespace kifo {

std::string KifoReachabilityWeakifier::description() const {
  const auto watcher = reachability.lock();
  return watcher ? watcher->description() : "nil";
}

}  // namespace kifo
