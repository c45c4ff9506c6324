#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/WatchService.h"
#include "platform/linux/threads/Worker.h"

namespace kifo {

class WatchServer;

/// `WatchService` over a Unix socket, "<pid>.sock" in a directory of this user alone. Each
/// connection is of the same user, asked of the kernel. It may send the lines "state" and "follow";
/// one that sends anything else is closed.
///
/// **Threading:** one thread, without wake-ups until somebody connects.
class WatchSocket final : public WatchService {
 public:
  /// How much is kept for those that follow, in bytes of lines.
  static constexpr std::size_t kBuffer = 8u << 20;

  /// `directory` is made when it is needed; empty: `defaultDirectory`.
  explicit WatchSocket(std::string directory = {}, std::size_t buffer = kBuffer);
  ~WatchSocket() override;
  WatchSocket(const WatchSocket&) = delete;
  WatchSocket& operator=(const WatchSocket&) = delete;

  std::string open(Source source) override;
  void publish(std::string line) override;
  void close() override;

  /// "kifo" in $XDG_RUNTIME_DIR, or in /run/user/<uid> where that is not set.
  static std::string defaultDirectory();

  /// The processes that can be looked into: those whose socket in `directory` takes a connection.
  /// Sockets of processes that ended are removed.
  static std::vector<int> processes(const std::string& directory);
  /// Connects to the socket of process `pid`; a descriptor, or -1.
  static int connectTo(const std::string& directory, int pid);

 private:
  const std::string directory_;
  const std::size_t buffer_;

  Mutex mutex_;
  std::shared_ptr<WatchServer> server_ KIFO_GUARDED_BY(mutex_);  ///< Null while closed.
  std::unique_ptr<Worker> worker_ KIFO_GUARDED_BY(mutex_);
};

}  // namespace kifo
