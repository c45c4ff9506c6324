#pragma once

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>
#include <zlib.h>

#include <future>
#include <memory>
#include <string>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"
#include "tests/support/Common.h"

namespace kifo::testing {

/// A socket of the loopback that takes connections and says nothing by itself.
class ListeningSocket {
 public:
  ListeningSocket() {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    bind(descriptor_, reinterpret_cast<sockaddr*>(&address), length);
    listen(descriptor_, 64);
    getsockname(descriptor_, reinterpret_cast<sockaddr*>(&address), &length);
    port_ = ntohs(address.sin_port);
  }
  ~ListeningSocket() { close(descriptor_); }
  ListeningSocket(const ListeningSocket&) = delete;
  ListeningSocket& operator=(const ListeningSocket&) = delete;

  [[nodiscard]] int port() const { return port_; }
  [[nodiscard]] std::string uri() const { return "http://127.0.0.1:" + std::to_string(port_); }
  /// The next connection, which the caller closes; negative after `endAccept`.
  [[nodiscard]] int accept() const {
    return ::accept4(descriptor_, nullptr, nullptr, SOCK_CLOEXEC);
  }
  void endAccept() const { shutdown(descriptor_, SHUT_RDWR); }

 private:
  const int descriptor_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  int port_ = 0;
};

/// What `transport` will have answered to the request.
inline std::future<HttpAnswer> answerTo(HttpTransport& transport, HttpRequest request) {
  const auto promise = std::make_shared<std::promise<HttpAnswer>>();
  transport.send([request = std::move(request)] { return request; },
                 [promise](HttpAnswer answer) { promise->set_value(std::move(answer)); });
  return promise->get_future();
}

inline std::string gzipped(const std::string& text) {
  z_stream stream{};
  deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, 15 + 16, 9, Z_DEFAULT_STRATEGY);
  std::string packed(deflateBound(&stream, text.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  deflate(&stream, Z_FINISH);
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  return packed;
}

}  // namespace kifo::testing
