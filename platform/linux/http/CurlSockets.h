#pragma once

#include <sys/socket.h>

#include <chrono>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <curl/curl.h>

namespace kifo {

/// The transport's sockets and which transfer uses which, to tell connections made before a change
/// of the network from later ones.
///
/// libcurl keeps connections by itself and has no call to close them. It closes one whose socket
/// was shut down when it checks the connection before reusing it.
///
/// **Threading:** the transport's thread only.
class CurlSockets {
 public:
  CurlSockets() = default;
  CurlSockets(const CurlSockets&) = delete;
  CurlSockets& operator=(const CurlSockets&) = delete;

  /// Has the handle open and close its connections here, as those of `transfer`, until `forget`.
  void observe(CURL* easy, std::uint64_t transfer);
  /// The transfer is about to be sent over the connection with this address and port of our own.
  void connected(std::uint64_t transfer, const char* local, int localPort);
  /// The transfer has ended. Its connection is not reused if it is from before a change.
  void forget(std::uint64_t transfer);

  /// The network changed: no connection that exists now is used for a later request.
  void networkChanged();
  /// Whether a connection from before the last change is still in use.
  [[nodiscard]] bool hasStale() const;
  /// Seconds for which a resolved name is valid: none from before the last change is used again.
  [[nodiscard]] long nameLifetime() const;
  /// The transfers whose own address is not among `addresses`.
  [[nodiscard]] std::vector<std::uint64_t> stranded(const std::set<std::string>& addresses) const;

 private:
  using End = std::pair<std::string, int>;  ///< A connection's own address and port.
  struct Socket {
    std::uint64_t opener;  ///< The transfer that opened it.
    bool stale = false;    ///< From before the last change.
  };
  struct Transfer {
    CurlSockets* sockets;
    std::uint64_t id;
    End end;  ///< Of the connection that it uses; port 0 while it connects.
  };

  static curl_socket_t open(void* transfer, curlsocktype, curl_sockaddr* address);
  static int close(void* self, curl_socket_t socket);
  void shutIdle();
  bool isUsed(int descriptor, const Socket& socket) const;

  std::optional<std::chrono::steady_clock::time_point> lastChange_;
  std::map<int, Socket> sockets_;
  std::map<std::uint64_t, Transfer> transfers_;
};

/// The addresses of the system's interfaces, as texts.
std::set<std::string> interfaceAddresses();

}  // namespace kifo
