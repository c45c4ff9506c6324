#include "testing/server/HttpConnection.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>

namespace kifo::testing {

namespace {

constexpr int readSeconds = 10;
constexpr int writeSeconds = 10;

bool ready(socket_t socket, short events, int seconds) {
  pollfd waited{socket, events, 0};
  int result;
  do {
    result = poll(&waited, 1, seconds * 1000);
  } while (result < 0 && errno == EINTR);
  return result > 0 && (waited.revents & events) != 0;
}

template <class GetName>
void nameOf(GetName getName, socket_t socket, std::string& text, int& port) {
  sockaddr_storage address{};
  socklen_t length = sizeof address;
  char host[NI_MAXHOST] = "";
  char service[NI_MAXSERV] = "";
  const auto named = reinterpret_cast<sockaddr*>(&address);
  if (getName(socket, named, &length) != 0 ||
      getnameinfo(named, length, host, sizeof host, service, sizeof service,
                  NI_NUMERICHOST | NI_NUMERICSERV) != 0) {
    return;
  }
  text = host;
  port = std::atoi(service);
}

}  // namespace

bool HttpConnection::awaitRequest(int seconds) {
  return !unread().empty() || ready(socket_, POLLIN, seconds);
}

bool HttpConnection::readRequestLine() {
  std::size_t end;
  while ((end = buffer_.find('\n', position_)) == std::string::npos) {
    if (unread().size() > maximumRequestLine || !fill()) return false;
  }
  const auto line = unread().substr(0, end - position_);
  const auto start = line.find(' ');
  const auto stop = line.rfind(' ');
  target_.clear();
  if (start == line.npos || stop <= start) return true;  // The library answers what is no request.
  target_ = line.substr(start + 1, stop - start - 1);
  if (const auto query = target_.find('?'); query != target_.npos) {
    buffer_.erase(position_ + start + 1 + query, target_.size() - query);
  }
  return true;
}

bool HttpConnection::readExactly(std::size_t size, std::string& text) {
  while (unread().size() < size) {
    if (!fill()) return false;
  }
  text = unread().substr(0, size);
  position_ += size;
  return true;
}

void HttpConnection::cut() {
  shutdown(socket_, SHUT_RDWR);
}

bool HttpConnection::is_readable() const {
  return !unread().empty() || ready(socket_, POLLIN, readSeconds);
}

bool HttpConnection::is_writable() const {
  return ready(socket_, POLLOUT, writeSeconds);
}

ssize_t HttpConnection::read(char* data, size_t size) {
  if (unread().empty() && !fill()) return 0;
  const auto taken = unread().copy(data, size);
  position_ += taken;
  return static_cast<ssize_t>(taken);
}

ssize_t HttpConnection::write(const char* data, size_t size) {
  for (std::size_t sent = 0; sent < size;) {
    if (!ready(socket_, POLLOUT, writeSeconds)) return -1;
    const auto count = send(socket_, data + sent, size - sent, MSG_NOSIGNAL);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return -1;
    sent += static_cast<std::size_t>(count);
  }
  return static_cast<ssize_t>(size);
}

void HttpConnection::get_remote_ip_and_port(std::string& address, int& port) const {
  nameOf(getpeername, socket_, address, port);
}

void HttpConnection::get_local_ip_and_port(std::string& address, int& port) const {
  nameOf(getsockname, socket_, address, port);
}

bool HttpConnection::fill() {
  if (position_ == buffer_.size()) {
    buffer_.clear();
    position_ = 0;
  }
  char chunk[16384];
  ssize_t count;
  do {
    if (!ready(socket_, POLLIN, readSeconds)) return false;
    count = recv(socket_, chunk, sizeof chunk, 0);
  } while (count < 0 && errno == EINTR);
  if (count <= 0) return false;
  buffer_.append(chunk, static_cast<std::size_t>(count));
  return true;
}

}  // namespace kifo::testing
