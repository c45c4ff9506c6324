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

  /// How a question went.
  struct Outcome {
    int error = 0;    ///< The answer did not arrive; EINTR: it may mix two states of the kernel.
    int refusal = 0;  ///< The kernel's own answer was this error number.
  };

  /// Calls `each` with every message that lies wholly within the `size` bytes that were received,
  /// until it returns false; whether it never did. `received` is aligned for an `nlmsghdr`.
  static bool messagesIn(const void* received, std::size_t size,
                         const std::function<bool(const nlmsghdr&)>& each);

  /// For questions. Null, with `error` set, where the process may not talk to the kernel.
  static std::unique_ptr<NetlinkSocket> forQuestions(int& error);
  /// For the news of `groups` (RTMGRP_ bits). It never blocks.
  static std::unique_ptr<NetlinkSocket> forNews(unsigned groups, int& error);

  /// Hands every message of the kernel's answer to `each`. Waits a second at most for each part.
  Outcome ask(nlmsghdr& question, const Each& each);

  /// Takes all news that wait; what an overrun lost counts as news. False when there were none.
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
