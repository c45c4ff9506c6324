#include "testing/server/HttpListener.h"

#include <sys/socket.h>
#include <unistd.h>

#include <future>

#include "testing/server/ReceivedRequest.h"
#include "testing/server/WorkerPool.h"

namespace kifo::testing {

namespace {

constexpr int keepAliveSeconds = 60;

// The library calls handlers without saying for which connection; one thread serves one at a time.
thread_local HttpConnection* served = nullptr;

}  // namespace

HttpListener::HttpListener(std::size_t threads, Handler handler) : handler_(std::move(handler)) {
  const auto handle = [this](const httplib::Request& request, httplib::Response& response) {
    handler_(request, response, *served);
  };
  Get(".*", handle).Post(".*", handle).Put(".*", handle).Delete(".*", handle);
  set_tcp_nodelay(true);
  set_keep_alive_timeout(keepAliveSeconds);
  set_keep_alive_max_count(1'000'000);
  // Only the address is reused, so that a second server on a port that is taken fails to start.
  set_socket_options([](socket_t socket) {
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  });
  new_task_queue = [this, threads] { return new WorkerPool(threads, [this] { releaseIdle(); }); };
}

HttpListener::~HttpListener() {
  stop();
}

int HttpListener::start(const std::string& host, int port) {
  if (port == 0) {
    port = bind_to_any_port(host);
  } else if (!bind_to_port(host, port)) {
    port = 0;
  }
  if (port <= 0) return 0;
  std::promise<void> listening;
  new_task_queue = [makeQueue = new_task_queue, &listening] {
    const auto queue = makeQueue();
    listening.set_value();
    return queue;
  };
  thread_ = std::thread([this] { listen_after_bind(); });
  listening.get_future().wait();
  return port;
}

void HttpListener::stop() {
  if (!thread_.joinable()) return;
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
    for (const auto& [socket, use] : connections_) shutdown(socket, SHUT_RDWR);
  }
  Server::stop();
  thread_.join();
}

bool HttpListener::process_and_close_socket(socket_t socket) {
  if (enter(socket)) {
    HttpConnection connection(socket);
    served = &connection;
    serve(connection);
    served = nullptr;
    leave(socket);
  }
  shutdown(socket, SHUT_RDWR);
  close(socket);
  return true;
}

void HttpListener::serve(HttpConnection& connection) {
  const auto socket = connection.socket();
  bool open = true;
  while (open && connection.awaitRequest(keepAliveSeconds) && change(socket, Use::BUSY) &&
         connection.readRequestLine()) {
    bool closed = false;
    open = process_request(connection, /*close_connection=*/false, closed,
                           [&](httplib::Request& request) { complete(connection, request); });
    open = open && !closed && change(socket, Use::IDLE);
  }
}

void HttpListener::complete(HttpConnection& connection, httplib::Request& request) const {
  request.target = connection.target();
  // The library leaves the body of a GET in the stream, where it would be taken for a request.
  if (request.method == "GET" && request.has_header("Content-Length")) {
    connection.readExactly(request.get_header_value<uint64_t>("Content-Length"), request.body);
  }
}

bool HttpListener::enter(socket_t socket) {
  const std::lock_guard lock(mutex_);
  // Busy from the start: its first request is on its way, and nobody would send that again.
  if (!stopping_) connections_[socket] = Use::BUSY;
  return !stopping_;
}

bool HttpListener::change(socket_t socket, Use use) {
  const std::lock_guard lock(mutex_);
  auto& current = connections_[socket];
  if (current == Use::RELEASED) return false;
  if (use == Use::IDLE && wanted_ > 0) return false;
  current = use;
  return true;
}

void HttpListener::leave(socket_t socket) {
  const std::lock_guard lock(mutex_);
  connections_.erase(socket);
  if (wanted_ > 0) --wanted_;
}

void HttpListener::releaseIdle() {
  const std::lock_guard lock(mutex_);
  ++wanted_;
  for (auto& [socket, use] : connections_) {
    if (use != Use::IDLE) continue;
    use = Use::RELEASED;
    shutdown(socket, SHUT_RDWR);
    return;
  }
}

}  // namespace kifo::testing
