#include "platform/linux/NetworkTarget.h"

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstring>
#include <memory>

namespace kifo {
namespace {

struct Free {
  void operator()(addrinfo* list) const { freeaddrinfo(list); }
};

NetworkAddress addressIn(const sockaddr& any) {
  NetworkAddress address;
  address.family = any.sa_family;
  if (any.sa_family == AF_INET) {
    sockaddr_in v4;
    std::memcpy(&v4, &any, sizeof v4);
    std::memcpy(address.bytes.data(), &v4.sin_addr, sizeof v4.sin_addr);
  } else {
    sockaddr_in6 v6;
    std::memcpy(&v6, &any, sizeof v6);
    std::memcpy(address.bytes.data(), &v6.sin6_addr, sizeof v6.sin6_addr);
    address.scope = v6.sin6_scope_id;
  }
  return address;
}

std::vector<NetworkAddress> resolve(const std::string& host, int flags) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;  // one answer for each address, not one for each protocol
  hints.ai_flags = flags;
  addrinfo* list = nullptr;
  if (getaddrinfo(host.c_str(), nullptr, &hints, &list) != 0) return {};
  const std::unique_ptr<addrinfo, Free> owner(list);
  std::vector<NetworkAddress> addresses;
  for (const addrinfo* each = list; each != nullptr; each = each->ai_next) {
    if (each->ai_family != AF_INET && each->ai_family != AF_INET6) continue;
    addresses.push_back(addressIn(*each->ai_addr));
  }
  return addresses;
}

}  // namespace

std::string hostOf(std::string_view endpoint) {
  if (const auto scheme = endpoint.find("://"); scheme != std::string_view::npos) {
    endpoint.remove_prefix(scheme + 3);
  }
  endpoint = endpoint.substr(0, endpoint.find_first_of("/?#"));
  if (const auto user = endpoint.rfind('@'); user != std::string_view::npos) {
    endpoint.remove_prefix(user + 1);
  }
  if (endpoint.starts_with('[')) return std::string(endpoint.substr(1, endpoint.find(']') - 1));
  // Several colons without brackets: an IPv6 address by itself.
  if (std::ranges::count(endpoint, ':') > 1) return std::string(endpoint);
  return std::string(endpoint.substr(0, endpoint.find(':')));
}

std::optional<NetworkAddress> literalAddress(const std::string& host) {
  const auto addresses = resolve(host, AI_NUMERICHOST);
  return addresses.empty() ? std::nullopt : std::optional(addresses.front());
}

std::vector<NetworkAddress> lookUp(const std::string& host) {
  return resolve(host, 0);
}

}  // namespace kifo
