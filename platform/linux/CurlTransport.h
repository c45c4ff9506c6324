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

/// HTTP over libcurl's multi interface: one thread, started by the first request and asleep while
/// nothing is under way. Connections are kept and shared, six at most for a host.
///
/// At most 16 requests for one host are in libcurl's hands at once; more wait in order, their
/// time-out running. So a burst costs the memory of its texts only.
///
/// **Threading:** thread-safe. `send` takes a short lock, and one system call if the thread sleeps.
/// Resolving a name takes a thread of the C library's for as long as it lasts.
/// **Ownership:** the thread holds what it works on; one that a callback does not let go of is left
/// behind by `stop`, after a fifth of a second.
class CurlTransport final : public HttpTransport {
 public:
  explicit CurlTransport(CurlTransportOptions options = {});
  ~CurlTransport() override;

  void send(Make make, Done done) override;
  void enqueue(Make make, Done done, Wake wake) override;
  void networkChanged() override;
  /// Called from `make` or `done` it returns at once, and the end follows.
  void stop() override;

 private:
  class Core;
  const std::shared_ptr<Core> core_;
};

}  // namespace kifo
