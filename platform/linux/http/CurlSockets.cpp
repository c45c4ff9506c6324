#include "platform/linux/http/CurlSockets.h"

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <linux/sockios.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace kifo {
namespace {

std::pair<std::string, int> textOf(const sockaddr* address) {
  std::array<char, INET6_ADDRSTRLEN> text{};
  if (address->sa_family == AF_INET) {
    const auto* v4 = reinterpret_cast<const sockaddr_in*>(address);
    inet_ntop(AF_INET, &v4->sin_addr, text.data(), text.size());
    return {text.data(), ntohs(v4->sin_port)};
  }
  if (address->sa_family == AF_INET6) {
    const auto* v6 = reinterpret_cast<const sockaddr_in6*>(address);
    inet_ntop(AF_INET6, &v6->sin6_addr, text.data(), text.size());
    return {text.data(), ntohs(v6->sin6_port)};
  }
  return {};
}

std::pair<std::string, int> endOf(int descriptor) {
  sockaddr_storage storage{};
  auto* address = reinterpret_cast<sockaddr*>(&storage);
  socklen_t length = sizeof storage;
  if (getsockname(descriptor, address, &length) != 0) return {};
  return textOf(address);
}

/// The loopback interface has one address and accepts all of 127.0.0.0/8.
bool isLoopback(const std::string& address) {
  return address.starts_with("127.");
}

/// A request that failed is sent again from the store. Without a reset the kernel would still
/// deliver its bytes when the network is back, and the server would receive it twice.
void dropWhatIsUnsent(int socket) {
  int unsent = 0;
  if (ioctl(socket, SIOCOUTQ, &unsent) != 0 || unsent == 0) return;
  const linger reset{1, 0};
  setsockopt(socket, SOL_SOCKET, SO_LINGER, &reset, sizeof reset);
}

}  // namespace

void CurlSockets::observe(CURL* easy, std::uint64_t transfer) {
  Transfer& known = transfers_[transfer];
  known = {this, transfer, {}};
  curl_easy_setopt(easy, CURLOPT_OPENSOCKETFUNCTION, &CurlSockets::open);
  curl_easy_setopt(easy, CURLOPT_OPENSOCKETDATA, &known);
  // libcurl closes a connection with the data that it was opened with; it outlives the transfer.
  curl_easy_setopt(easy, CURLOPT_CLOSESOCKETFUNCTION, &CurlSockets::close);
  curl_easy_setopt(easy, CURLOPT_CLOSESOCKETDATA, this);
}

void CurlSockets::forget(std::uint64_t transfer) {
  transfers_.erase(transfer);
  shutIdle();
}

void CurlSockets::networkChanged() {
  lastChange_ = std::chrono::steady_clock::now();
  for (auto& [descriptor, socket] : sockets_) socket.stale = true;
  shutIdle();
}

long CurlSockets::nameLifetime() const {
  constexpr long kLongest = 60;
  if (!lastChange_) return kLongest;
  const auto since = std::chrono::steady_clock::now() - *lastChange_;
  return std::min<long>(kLongest, std::chrono::floor<std::chrono::seconds>(since).count());
}

bool CurlSockets::hasStale() const {
  return std::ranges::any_of(sockets_, [](const auto& each) { return each.second.stale; });
}

std::vector<std::uint64_t> CurlSockets::stranded(const std::set<std::string>& addresses) const {
  std::vector<std::uint64_t> found;
  for (const auto& [id, transfer] : transfers_) {
    const auto& [address, port] = transfer.end;
    const bool exists = addresses.contains(address) ||
                        (isLoopback(address) && std::ranges::any_of(addresses, isLoopback));
    if (port != 0 && !exists) found.push_back(id);
  }
  return found;
}

curl_socket_t CurlSockets::open(void* transfer, curlsocktype, curl_sockaddr* address) {
  auto& opener = *static_cast<Transfer*>(transfer);
  const int descriptor =
      socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
  if (descriptor < 0) return CURL_SOCKET_BAD;
  opener.end = {};  // a redirect leads to another connection
  opener.sockets->sockets_[descriptor] = {opener.id};
  return descriptor;
}

int CurlSockets::close(void* self, curl_socket_t socket) {
  static_cast<CurlSockets*>(self)->sockets_.erase(socket);
  dropWhatIsUnsent(socket);
  return ::close(socket);
}

void CurlSockets::connected(std::uint64_t transfer, const char* local, int localPort) {
  transfers_.at(transfer).end = {local ? local : "", localPort};
}

void CurlSockets::shutIdle() {
  for (auto& [descriptor, socket] : sockets_) {
    if (!socket.stale || isUsed(descriptor, socket)) continue;
    shutdown(descriptor, SHUT_RDWR);
    socket.stale = false;  // once is enough
  }
}

bool CurlSockets::isUsed(int descriptor, const Socket& socket) const {
  const End end = endOf(descriptor);
  return std::ranges::any_of(transfers_, [&](const auto& each) {
    const Transfer& transfer = each.second;
    return transfer.end.second == 0 ? socket.opener == transfer.id : transfer.end == end;
  });
}

std::set<std::string> interfaceAddresses() {
  std::set<std::string> addresses;
  ifaddrs* list = nullptr;
  if (getifaddrs(&list) != 0) return addresses;
  for (const ifaddrs* each = list; each; each = each->ifa_next) {
    if (each->ifa_addr) addresses.insert(textOf(each->ifa_addr).first);
  }
  freeifaddrs(list);
  return addresses;
}

}  // namespace kifo
