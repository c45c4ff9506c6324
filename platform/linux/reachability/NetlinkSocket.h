#pragma once

#include <linux/netlink.h>

#include <functional>
#include <memory>
#include <vector>

struct mnl_socket;

namespace kifo {

/// A socket to the kernel's routing tables.
///
/// **Threading:** externally synchronised.
/// **Errors:** the system's numbers; 0 is success.
class NetlinkSocket {
 public:
  using Each = std::function<void(const nlmsghdr&)>;

  /// How a request went.
  struct Outcome {
    int error = 0;    ///< No complete answer; EINTR: a dump that changed while it was read.
    int refusal = 0;  ///< The error number that the kernel answered.
  };

  /// Calls `each` with every complete message in the `size` bytes at `received`, until it returns
  /// false; returns whether it never did. `received` is aligned for an `nlmsghdr`.
  static bool messagesIn(const void* received, std::size_t size,
                         const std::function<bool(const nlmsghdr&)>& each);

  /// For requests. Null, with `error` set, where the process may not open such a socket.
  static std::unique_ptr<NetlinkSocket> forRequests(int& error);
  /// For the notifications of `groups` (RTMGRP_ bits). Never blocks.
  static std::unique_ptr<NetlinkSocket> forNotifications(unsigned groups, int& error);

  /// Sends `request` and calls `each` with every message of the answer. Waits at most 1 s for each
  /// part.
  Outcome ask(nlmsghdr& request, const Each& each);

  /// Reads all pending notifications; an overrun counts as one. False when there were none.
  bool drain();

  [[nodiscard]] int descriptor() const;

 private:
  struct Close {
    void operator()(mnl_socket* socket) const;
  };

  explicit NetlinkSocket(mnl_socket* socket);
  static std::unique_ptr<NetlinkSocket> open(int flags, unsigned groups, int& error);
  enum class Progress { more, done };
  Progress take(const nlmsghdr& message, const Each& each, Outcome& outcome) const;

  const std::unique_ptr<mnl_socket, Close> socket_;
  std::vector<char> buffer_;
  unsigned sequence_ = 0;
};

}  // namespace kifo
