#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/ReachabilitySource.h"
#include "platform/linux/LinuxSerialQueue.h"

namespace kifo {

/// Makes the sources of a Linux system: for the zero address the network as a whole, or the targets
/// when there are some; for any other address the route that leads to it.
///
/// **Threading:** thread-safe.
class NetlinkReachabilityService final : public ReachabilityService {
 public:
  /// `queue` looks after the sources' sockets.
  explicit NetlinkReachabilityService(std::shared_ptr<LinuxSerialQueue> queue,
                                      std::vector<std::string> targets = {});

  std::unique_ptr<ReachabilitySource> createWithAddress(const Address& address,
                                                        int& error) override;

 private:
  const std::shared_ptr<LinuxSerialQueue> queue_;
  const std::vector<std::string> targets_;
};

}  // namespace kifo
