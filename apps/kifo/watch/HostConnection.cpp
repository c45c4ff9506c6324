#include "apps/kifo/watch/HostConnection.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>

#include "platform/linux/watch/WatchSocket.h"

namespace kifo::tool {
namespace {

constexpr int kGreetingBound = 5000;  // milliseconds

}  // namespace

HostConnection::HostConnection(const std::string& directory, int pid)
    : descriptor_(WatchSocket::connectTo(directory, pid)) {
  const std::string process = "process " + std::to_string(pid);
  if (descriptor_ < 0) {
    throw std::runtime_error(process + " cannot be looked into; it must run with KIFO_WATCH=1");
  }
  while (greeting_.empty()) {
    auto lines = this->lines(kGreetingBound);
    if (!lines || lines->empty()) {
      close(descriptor_);
      throw std::runtime_error(process + " does not answer");
    }
    greeting_ = lines->front();
  }
}

HostConnection::~HostConnection() {
  close(descriptor_);
}

void HostConnection::ask(const std::string& command) {
  const std::string line = command + "\n";
  if (send(descriptor_, line.data(), line.size(), MSG_NOSIGNAL) < 0) {
    throw std::runtime_error("the host is gone");
  }
}

std::optional<std::vector<std::string>> HostConnection::lines(int milliseconds) {
  pollfd polled{descriptor_, POLLIN, 0};
  if (poll(&polled, 1, milliseconds) <= 0) return std::vector<std::string>();
  char bytes[64u << 10];
  const ssize_t size = recv(descriptor_, bytes, sizeof bytes, 0);
  if (size == 0 || (size < 0 && errno != EINTR)) return std::nullopt;
  if (size > 0) input_.append(bytes, static_cast<std::size_t>(size));
  return takeLines();
}

std::vector<std::string> HostConnection::takeLines() {
  std::vector<std::string> lines;
  std::size_t begin = 0;
  for (auto end = input_.find('\n'); end != std::string::npos; end = input_.find('\n', begin)) {
    lines.push_back(input_.substr(begin, end - begin));
    begin = end + 1;
  }
  input_.erase(0, begin);
  return lines;
}

}  // namespace kifo::tool
