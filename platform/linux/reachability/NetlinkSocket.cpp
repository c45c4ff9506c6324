#include "platform/linux/reachability/NetlinkSocket.h"

#include <libmnl/libmnl.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <algorithm>
#include <cerrno>

namespace kifo {
namespace {

/// The kernel fills no message of a dump beyond this.
constexpr std::size_t kBufferSize = 32768;

/// Bounds one `drain`, in case notifications come faster than they are read.
constexpr int kMostAtOnce = 10000;

int errorIn(const nlmsghdr& message) {
  if (message.nlmsg_len < mnl_nlmsg_size(sizeof(nlmsgerr))) return EBADMSG;
  return -static_cast<const nlmsgerr*>(mnl_nlmsg_get_payload(&message))->error;
}

}  // namespace

void NetlinkSocket::Close::operator()(mnl_socket* socket) const {
  mnl_socket_close(socket);
}

NetlinkSocket::NetlinkSocket(mnl_socket* socket) : socket_(socket), buffer_(kBufferSize) {}

std::unique_ptr<NetlinkSocket> NetlinkSocket::open(int flags, unsigned groups, int& error) {
  std::unique_ptr<mnl_socket, Close> socket(mnl_socket_open2(NETLINK_ROUTE, SOCK_CLOEXEC | flags));
  if (!socket || mnl_socket_bind(socket.get(), groups, MNL_SOCKET_AUTOPID) != 0) {
    error = errno;
    return nullptr;
  }
  error = 0;
  return std::unique_ptr<NetlinkSocket>(new NetlinkSocket(socket.release()));
}

std::unique_ptr<NetlinkSocket> NetlinkSocket::forRequests(int& error) {
  auto socket = open(0, 0, error);
  if (!socket) return nullptr;
  const timeval second{1, 0};
  setsockopt(socket->descriptor(), SOL_SOCKET, SO_RCVTIMEO, &second, sizeof second);
  // Has the kernel filter by table; an older kernel ignores it and returns all tables.
  int on = 1;
  mnl_socket_setsockopt(socket->socket_.get(), NETLINK_GET_STRICT_CHK, &on, sizeof on);
  return socket;
}

std::unique_ptr<NetlinkSocket> NetlinkSocket::forNotifications(unsigned groups, int& error) {
  return open(SOCK_NONBLOCK, groups, error);
}

int NetlinkSocket::descriptor() const {
  return mnl_socket_get_fd(socket_.get());
}

NetlinkSocket::Outcome NetlinkSocket::ask(nlmsghdr& request, const Each& each) {
  Outcome outcome;
  request.nlmsg_seq = ++sequence_;
  if (mnl_socket_sendto(socket_.get(), &request, request.nlmsg_len) < 0) return {errno, 0};
  for (;;) {
    const auto received = mnl_socket_recvfrom(socket_.get(), buffer_.data(), buffer_.size());
    if (received < 0 && errno == EINTR) continue;
    if (received < 0) return {errno, 0};
    const bool more = messagesIn(
        buffer_.data(), static_cast<std::size_t>(received),
        [&](const nlmsghdr& message) { return take(message, each, outcome) == Progress::more; });
    if (!more) return outcome;
  }
}

bool NetlinkSocket::messagesIn(const void* received, std::size_t size,
                               const std::function<bool(const nlmsghdr&)>& each) {
  const auto* at = static_cast<const char*>(received);
  // Not by the library's own step, which takes a length beyond 2 GiB for a negative one.
  while (size >= sizeof(nlmsghdr)) {
    const auto& message = *reinterpret_cast<const nlmsghdr*>(at);
    if (message.nlmsg_len < sizeof message || message.nlmsg_len > size) return true;
    if (!each(message)) return false;
    const std::size_t step = std::min<std::size_t>(size, MNL_ALIGN(message.nlmsg_len));
    at += step;
    size -= step;
  }
  return true;
}

NetlinkSocket::Progress NetlinkSocket::take(const nlmsghdr& message, const Each& each,
                                            Outcome& outcome) const {
  // A late answer to an earlier request that timed out.
  if (message.nlmsg_seq != sequence_) return Progress::more;
  if (message.nlmsg_flags & NLM_F_DUMP_INTR) outcome.error = EINTR;
  if (message.nlmsg_type == NLMSG_DONE) return Progress::done;
  if (message.nlmsg_type == NLMSG_ERROR) {
    outcome.refusal = errorIn(message);
    return Progress::done;
  }
  if (message.nlmsg_type >= NLMSG_MIN_TYPE) each(message);
  return message.nlmsg_flags & NLM_F_MULTI ? Progress::more : Progress::done;
}

bool NetlinkSocket::drain() {
  bool any = false;
  for (int i = 0; i < kMostAtOnce; ++i) {
    const auto received = recv(descriptor(), buffer_.data(), buffer_.size(), MSG_DONTWAIT);
    if (received < 0 && errno == EINTR) continue;
    if (received < 0 && errno != ENOBUFS) return any;
    any = true;
  }
  return any;
}

}  // namespace kifo
