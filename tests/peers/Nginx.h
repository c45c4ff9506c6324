#pragma once

#include <string>
#include <vector>

#include "testing/ChildProgram.h"
#include "testing/TemporaryDirectory.h"
#include "tests/support/Certificate.h"

namespace kifo::testing {

/// nginx in front of a server of this machine: by TLS with a certificate of a private authority,
/// and as a proxy for plain requests.
///
/// **Threading:** externally synchronised. **Errors:** `start` is false when it does not come up.
class Nginx {
 public:
  struct Options {
    bool speaksHttp2 = true;
    int requestsPerConnection = 1000;  ///< Then it closes the connection.
    std::string idleTimeout = "60s";   ///< Then it closes the connection.
  };

  /// One request, as nginx logged it.
  struct Request {
    std::string connection;  ///< A number, one for each connection.
    std::string protocol;    ///< "HTTP/2.0"
    std::string uri;
  };

  /// Why there is none on this machine; empty when there is one. Tests skip with this reason.
  static std::string whyNot();

  /// Passes what it gets on to the port of this machine.
  bool start(int port, const Options& options);

  [[nodiscard]] std::string uri() const { return "https://127.0.0.1:" + std::to_string(port_); }
  /// Adds the header "X-Proxy: nginx" to what passes through.
  [[nodiscard]] std::string proxy() const {
    return "http://127.0.0.1:" + std::to_string(proxyPort_);
  }
  /// A file of the authority that vouches for it.
  [[nodiscard]] std::string authorities() const { return directory_.file("authorities.pem"); }
  /// What it has answered so far.
  [[nodiscard]] std::vector<Request> requests() const;

 private:
  const TemporaryDirectory directory_;
  const Certificate authority_{{.isAuthority = true}};
  const Certificate certificate_{{}, &authority_};
  int port_ = 0;
  int proxyPort_ = 0;
  ChildProgram program_;
};

}  // namespace kifo::testing
