#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>

#include <httplib.h>

#include "testing/server/HttpConnection.h"

namespace kifo::testing {

/// A listening socket and the threads that serve its connections. Made for one start; a restart
/// makes a new one.
///
/// **Threading:** `start` and `stop` are externally synchronised; the handler runs on many threads.
class HttpListener : private httplib::Server {
 public:
  using Handler = std::function<void(const httplib::Request&, httplib::Response&, HttpConnection&)>;

  HttpListener(std::size_t threads, Handler handler);
  ~HttpListener() override;

  /// Binds and listens; returns once connections are accepted. The port, 0 when it cannot be had.
  int start(const std::string& host, int port);

  /// Stops accepting, cuts every connection, and waits for the handlers that are running.
  void stop();

 private:
  enum class Use { IDLE, BUSY, RELEASED };

  bool process_and_close_socket(socket_t socket) override;
  void serve(HttpConnection& connection);
  void complete(HttpConnection& connection, httplib::Request& request) const;
  bool enter(socket_t socket);
  bool change(socket_t socket, Use use);
  void leave(socket_t socket);
  /// Ends an idle connection, or the next one that becomes idle: another one waits for its thread.
  void releaseIdle();

  const Handler handler_;
  std::thread thread_;
  std::mutex mutex_;
  // Guarded by mutex_.
  std::unordered_map<socket_t, Use> connections_;
  std::size_t wanted_ = 0;  // Connections that wait for a thread.
  bool stopping_ = false;
};

}  // namespace kifo::testing
