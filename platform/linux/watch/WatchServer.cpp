#include "platform/linux/watch/WatchServer.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>

namespace kifo {
namespace {

constexpr std::size_t kLongestCommand = 64;
/// How much of what is kept goes to a connection at once; bounds how long a publisher may wait for
/// the lock.
constexpr std::size_t kPortion = 64u << 10;

}  // namespace

bool isOfThisUser(int connection) {
  ucred peer{};
  socklen_t size = sizeof peer;
  return getsockopt(connection, SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 &&
         peer.uid == geteuid();
}

WatchServer::WatchServer(int listener, std::string path, std::size_t buffer,
                         WatchService::Source source)
    : listener_(listener),
      wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      path_(std::move(path)),
      buffer_(buffer),
      source_(std::move(source)) {}

WatchServer::~WatchServer() {
  ::close(listener_);
  ::close(wake_);
}

// Any thread -------------------------------------------------------------------------------------

void WatchServer::publish(std::string line) {
  line += '\n';
  {
    const MutexLock lock(mutex_);
    size_ += line.size();
    lines_.push_back(std::move(line));
    while (size_ > buffer_) dropFirst();
  }
  wake();
}

void WatchServer::reply(std::uint64_t client, std::string line) {
  {
    const MutexLock lock(mutex_);
    replies_.emplace_back(client, std::move(line) + "\n");
  }
  wake();
}

void WatchServer::end() {
  isEnded_ = true;
  wake();
}

/// One system call for all that is published until the thread runs.
void WatchServer::wake() {
  if (!isWakeDue_.exchange(true)) eventfd_write(wake_, 1);
}

void WatchServer::dropFirst() {
  size_ -= lines_.front().size();
  lines_.pop_front();
  ++first_;
}

// The thread -------------------------------------------------------------------------------------

void WatchServer::run() {
  while (!isEnded_) {
    wait();
    for (Client& client : clients_) read(client);
    accept();
    deliverReplies();
    for (Client& client : clients_) write(client);
    removeBroken();
  }
  for (Client& client : clients_) client.isBroken = true;
  removeBroken();
  unlink(path_.c_str());
}

void WatchServer::wait() {
  std::vector<pollfd> polled{{wake_, POLLIN, 0}, {listener_, POLLIN, 0}};
  for (const Client& client : clients_) {
    const short events = client.output.empty() ? POLLIN : POLLIN | POLLOUT;
    polled.push_back({client.descriptor, events, 0});
  }
  poll(polled.data(), polled.size(), -1);
  // Before the lines are read: one that comes later wakes this thread again.
  eventfd_t count = 0;
  eventfd_read(wake_, &count);
  isWakeDue_ = false;
}

void WatchServer::accept() {
  while (true) {
    const int descriptor = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (descriptor < 0) return;
    if (clients_.size() >= kMostClients || !isOfThisUser(descriptor)) {
      ::close(descriptor);
    } else {
      clients_.emplace_back(descriptor, ++lastId_, source_.greeting() + "\n");
    }
  }
}

void WatchServer::read(Client& client) {
  char bytes[256];
  while (!client.isBroken) {
    const ssize_t size = recv(client.descriptor, bytes, sizeof bytes, 0);
    if (size < 0 && errno == EINTR) continue;
    if (size < 0 && errno == EAGAIN) return;
    client.isBroken = size <= 0;
    if (size > 0) client.input.append(bytes, static_cast<std::size_t>(size));
    takeCommands(client);
  }
}

void WatchServer::takeCommands(Client& client) {
  auto end = client.input.find('\n');
  while (end != std::string::npos && !client.isBroken) {
    const std::string command = client.input.substr(0, end);
    client.input.erase(0, end + 1);
    carryOut(command, client);
    end = client.input.find('\n');
  }
  if (client.input.size() > kLongestCommand) client.isBroken = true;
}

void WatchServer::carryOut(const std::string& command, Client& client) {
  if (command == "state") {
    source_.state([weak = weak_from_this(), id = client.id](std::string line) {
      if (const auto server = weak.lock()) server->reply(id, std::move(line));
    });
  } else if (command == "follow") {
    {
      const MutexLock lock(mutex_);
      client.next = first_ + lines_.size();
    }
    client.follows = true;
    tellWhetherFollowed();
  } else {
    client.isBroken = true;
  }
}

void WatchServer::deliverReplies() {
  std::vector<std::pair<std::uint64_t, std::string>> replies;
  {
    const MutexLock lock(mutex_);
    replies.swap(replies_);
  }
  for (const auto& [id, line] : replies) {
    for (Client& client : clients_) {
      if (client.id != id) continue;
      client.output += line;
      // It asks without reading the replies.
      if (client.output.size() > buffer_) client.isBroken = true;
    }
  }
}

void WatchServer::write(Client& client) {
  do {
    if (client.follows && client.output.empty()) takeLines(client);
    client.send();
  } while (client.follows && client.output.empty() && !client.isBroken && hasLines(client));
}

bool WatchServer::hasLines(const Client& client) {
  const MutexLock lock(mutex_);
  return client.next < first_ + lines_.size();
}

void WatchServer::takeLines(Client& client) {
  const MutexLock lock(mutex_);
  if (client.next < first_) {
    client.output =
        R"({"count":)" + std::to_string(first_ - client.next) + R"(,"kind":"lost"})" + "\n";
    client.next = first_;
  }
  while (client.next < first_ + lines_.size() && client.output.size() < kPortion) {
    client.output += lines_[client.next++ - first_];
  }
}

void WatchServer::removeBroken() {
  const auto gone = clients_.remove_if([](const Client& client) {
    if (client.isBroken) ::close(client.descriptor);
    return client.isBroken;
  });
  if (gone > 0) tellWhetherFollowed();
}

void WatchServer::tellWhetherFollowed() {
  bool isFollowed = false;
  for (const Client& client : clients_) isFollowed = isFollowed || client.follows;
  if (std::exchange(wasFollowed_, isFollowed) != isFollowed) source_.followed(isFollowed);
  if (isFollowed) return;
  const MutexLock lock(mutex_);
  while (!lines_.empty()) dropFirst();
}

void WatchServer::Client::send() {
  while (!output.empty()) {
    const ssize_t sent = ::send(descriptor, output.data(), output.size(), MSG_NOSIGNAL);
    if (sent < 0 && errno == EINTR) continue;
    if (sent < 0) {
      isBroken = errno != EAGAIN;
      return;
    }
    output.erase(0, static_cast<std::size_t>(sent));
  }
}

}  // namespace kifo
