#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <set>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"

namespace kifo {

struct CurlTransportOptions {
  /// Bytes after decompression, for requests that name no cap of their own.
  std::size_t maximumAnswerSize = 8u << 20;
  /// A PEM file of certificates to trust in place of the system's. Empty: the system's.
  std::string certificateAuthorities = {};
  /// The addresses of the system's interfaces, asked when the network changed. Empty: the system.
  std::function<std::set<std::string>()> localAddresses = {};
};

/// HTTP over libcurl's multi interface: one thread, started by the first request and without any
/// wake-up while nothing is under way. Connections are kept and reused.
///
/// Six requests at most for one host are under way at once; more wait in order while their time-out
/// runs. So a burst costs the memory of its texts only.
///
/// **Threading:** thread-safe. `send` takes no lock, and makes one system call if it has to wake
/// the thread: what a host's thread sends may go out up to 1 ms later (see Mailbox.h). Resolving
/// a name takes a thread of the C library for as long as it lasts.
/// **Ownership:** the thread holds what it works on. `stop` waits 0.2 s for a callback that runs,
/// then detaches the thread.
class CurlTransport final : public HttpTransport {
 public:
  explicit CurlTransport(CurlTransportOptions options = {});
  ~CurlTransport() override;

  void send(Make make, Done done) override;
  void networkChanged() override;
  void cancelOpen() override;
  /// Called from `make` or `done` it returns at once, and the end follows.
  void stop() override;

 private:
  class Core;
  const std::shared_ptr<Core> core_;
};

}  // namespace kifo
