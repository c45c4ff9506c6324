#include "platform/linux/watch/WatchSocket.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

#include "platform/linux/Directories.h"
#include "platform/linux/watch/WatchServer.h"

namespace kifo {
namespace {

constexpr std::string_view kSuffix = ".sock";
constexpr SerialQueue::Duration kJoinBound(1.0);

std::string reason(const std::string& what) {
  return what + ": " + std::strerror(errno);
}

std::string socketPath(const std::string& directory, int pid) {
  return directory + "/" + std::to_string(pid) + std::string(kSuffix);
}

/// False for a path that is too long for a socket's address.
bool setPath(sockaddr_un& address, const std::string& path) {
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof address.sun_path) return false;
  std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
  return true;
}

const sockaddr* generic(const sockaddr_un& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

/// "" when the directory is there, belongs to this user and is open to nobody else.
std::string prepareDirectory(const std::string& directory) {
  if (directory.empty()) return "there is no runtime directory (XDG_RUNTIME_DIR)";
  if (const int error = makeDirectories(directory)) {
    errno = error;
    return reason(directory);
  }
  struct stat status {};
  if (lstat(directory.c_str(), &status) != 0) return reason(directory);
  const bool isPrivate =
      S_ISDIR(status.st_mode) && status.st_uid == geteuid() && (status.st_mode & 077) == 0;
  return isPrivate ? "" : directory + " is not a directory of this user alone";
}

/// A listening socket at `path`, made under another name first: whoever finds it can connect.
/// -1, and `problem` says why.
int listenAt(const std::string& path, std::string& problem) {
  const std::string unfinished = path + ".new";
  sockaddr_un address{};
  if (!setPath(address, unfinished)) {
    problem = "the path is too long: " + path;
    return -1;
  }
  const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  unlink(unfinished.c_str());
  if (listener >= 0 && bind(listener, generic(address), sizeof address) == 0 &&
      chmod(unfinished.c_str(), 0600) == 0 && listen(listener, WatchServer::kMostClients) == 0 &&
      rename(unfinished.c_str(), path.c_str()) == 0) {
    return listener;
  }
  problem = reason(path);
  unlink(unfinished.c_str());
  if (listener >= 0) ::close(listener);
  return -1;
}

}  // namespace

WatchSocket::WatchSocket(std::string directory, std::size_t buffer)
    : directory_(directory.empty() ? defaultDirectory() : std::move(directory)), buffer_(buffer) {}

WatchSocket::~WatchSocket() {
  close();
}

std::string WatchSocket::open(Source source) {
  const MutexLock lock(mutex_);
  if (server_) return "";
  if (std::string problem = prepareDirectory(directory_); !problem.empty()) return problem;
  processes(directory_);  // removes the sockets of processes that were killed
  std::string problem;
  const std::string path = socketPath(directory_, getpid());
  const int listener = listenAt(path, problem);
  if (listener < 0) return problem;
  const auto server = std::make_shared<WatchServer>(listener, path, buffer_, std::move(source));
  auto worker = std::make_unique<Worker>();
  if (!worker->start("kifo.watch", [server] { server->run(); })) {
    unlink(path.c_str());
    return "the system gives no thread";
  }
  server_ = server;
  worker_ = std::move(worker);
  return "";
}

void WatchSocket::publish(std::string line) {
  std::shared_ptr<WatchServer> server;
  {
    const MutexLock lock(mutex_);
    server = server_;
  }
  if (server) server->publish(std::move(line));
}

void WatchSocket::close() {
  std::shared_ptr<WatchServer> server;
  std::unique_ptr<Worker> worker;
  {
    const MutexLock lock(mutex_);
    server.swap(server_);
    worker.swap(worker_);
  }
  if (!server) return;
  server->end();
  worker->join(kJoinBound);
}

std::string WatchSocket::defaultDirectory() {
  const char* runtime = std::getenv("XDG_RUNTIME_DIR");
  if (runtime && runtime[0] == '/') return std::string(runtime) + "/kifo";
  const std::string usual = "/run/user/" + std::to_string(geteuid());
  return access(usual.c_str(), W_OK) == 0 ? usual + "/kifo" : "";
}

int WatchSocket::connectTo(const std::string& directory, int pid) {
  sockaddr_un address{};
  if (!setPath(address, socketPath(directory, pid))) return -1;
  const int connection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (connect(connection, generic(address), sizeof address) == 0 && isOfThisUser(connection)) {
    return connection;
  }
  const int error = errno;
  ::close(connection);
  errno = error;
  return -1;
}

std::vector<int> WatchSocket::processes(const std::string& directory) {
  std::vector<int> found;
  DIR* folder = opendir(directory.c_str());
  if (!folder) return found;
  while (const dirent* entry = readdir(folder)) {
    const std::string_view name = entry->d_name;
    int pid = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), pid);
    if (error != std::errc() || std::string_view(end) != kSuffix) continue;
    const int connection = connectTo(directory, pid);
    if (connection >= 0) {
      found.push_back(pid);
      ::close(connection);
    } else if (errno == ECONNREFUSED) {
      unlink(socketPath(directory, pid).c_str());
    }
  }
  closedir(folder);
  return found;
}

}  // namespace kifo
