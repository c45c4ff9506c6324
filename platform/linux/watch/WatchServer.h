#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <list>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "Kifo_iOS_Common_Kit/ports/WatchService.h"

namespace kifo {

/// Whether the process at the other end of a Unix socket is of this user.
bool isOfThisUser(int connection);

/// The thread's part of `WatchSocket`: takes connections, answers them and sends what is published.
///
/// **Threading:** `publish` and `end` from any thread; `run` is the thread.
/// **Ownership:** shared by the service and its thread, which may outlive it. Owns the sockets.
class WatchServer : public std::enable_shared_from_this<WatchServer> {
 public:
  static constexpr int kMostClients = 16;

  /// `listener` is a listening socket at `path`; `buffer` bytes of lines are kept.
  WatchServer(int listener, std::string path, std::size_t buffer, WatchService::Source source);
  ~WatchServer();
  WatchServer(const WatchServer&) = delete;
  WatchServer& operator=(const WatchServer&) = delete;

  void publish(std::string line);
  /// Makes `run` return soon. It removes the socket's file.
  void end();
  void run();

 private:
  /// One connection.
  struct Client {
    Client(int socket, std::uint64_t number, std::string greeting)
        : descriptor(socket), id(number), output(std::move(greeting)) {}

    void send();

    const int descriptor;
    const std::uint64_t id;  ///< A descriptor's number is used again; this is not.
    std::string input;
    std::string output;
    bool follows = false;
    bool isBroken = false;
    std::uint64_t next = 0;  ///< The number of the line that it gets next.
  };

  void dropFirst() KIFO_REQUIRES(mutex_);
  void wake();
  void wait();
  void accept();
  void read(Client& client);
  void takeCommands(Client& client);
  void carryOut(const std::string& command, Client& client);
  void reply(std::uint64_t client, std::string line);
  void deliverReplies();
  void write(Client& client);
  bool hasLines(const Client& client);
  void takeLines(Client& client);
  void removeBroken();
  void tellWhetherFollowed();

  // Constant after construction.
  const int listener_;
  const int wake_;
  const std::string path_;
  const std::size_t buffer_;
  const WatchService::Source source_;

  std::atomic<bool> isEnded_ = false;
  std::atomic<bool> isWakeDue_ = false;

  // The thread's alone.
  std::list<Client> clients_;
  std::uint64_t lastId_ = 0;
  bool wasFollowed_ = false;

  Mutex mutex_;
  std::deque<std::string> lines_ KIFO_GUARDED_BY(mutex_);
  std::uint64_t first_ KIFO_GUARDED_BY(mutex_) = 0;  ///< The number of the first of `lines_`.
  std::size_t size_ KIFO_GUARDED_BY(mutex_) = 0;     ///< Bytes in `lines_`.
  std::vector<std::pair<std::uint64_t, std::string>> replies_ KIFO_GUARDED_BY(mutex_);
};

}  // namespace kifo
