#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Error.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

struct HttpRequest {
  std::string method = "GET";
  std::string url;  ///< http or https; any other scheme is answered with an error.
  std::vector<std::pair<std::string, std::string>> headers = {};
  std::optional<std::string> body = {};  ///< None sends no body, for a GET in particular.
  double timeout = 60.0;                 ///< Seconds from the start to the whole answer.
  /// Bytes after decompression; more is an error. 0: the transport's own cap.
  std::size_t maximumBodySize = 0;
  /// Whether the transport may send the request once more, over a new connection, when a kept one
  /// ended without a byte of an answer: the server may have taken it all the same. A GET or HEAD
  /// may be in any case.
  bool mayRepeat = false;
};

struct HttpAnswer {
  std::optional<Error> error;  ///< Set when no whole answer came: domain "http", curl's code.
  int status = 0;              ///< HTTP status, 0 with an error.
  std::string body;            ///< Decompressed; empty when the answer had none.
};

/// Sends HTTP requests and hands back their answers.
///
/// **Threading:** `send` may be called from any thread and never blocks on the network or the disk.
/// `make` and `done` run on the transport's own thread and must be quick.
/// **Errors:** every failure is an answer with an `error`; redirects are followed (10 at most) and
/// never carry the Authorization header to another host. A request goes out once, but for what
/// `HttpRequest::mayRepeat` allows.
class KIFO_EXPORT HttpTransport {
 public:
  using Make = std::function<HttpRequest()>;
  using Done = std::function<void(HttpAnswer)>;

  virtual ~HttpTransport() = default;

  /// Sends what `make` returns. `make` runs at most once, on the transport's thread, so that
  /// composing the request costs the caller nothing. `done` runs exactly once, with the error
  /// "cancelled" for a request that is not answered when the transport stops.
  virtual void send(Make make, Done done) = 0;

  /// The network came back: connections from before are not used for later requests.
  virtual void networkChanged() = 0;

  /// Answers all open requests with the error "cancelled". Requests sent afterwards go out. Here it
  /// does nothing: a transport that cannot cancel lets them end, and their answers are ignored.
  virtual void cancelOpen() {}

  /// Answers all open requests with the error "cancelled" and ends. Later sends are answered so at
  /// once.
  virtual void stop() = 0;
};

}  // namespace kifo
