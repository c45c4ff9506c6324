#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/NetlinkRecords.h"

namespace kifo {

/// The host of an endpoint's URL, or of a bare "host" or "host:port". Brackets of an IPv6 address
/// are taken off. Empty when there is none.
std::string hostOf(std::string_view endpoint);

/// The address that `host` is, if it is one and no name. "fe80::1%eth0" is one as well.
std::optional<NetworkAddress> literalAddress(const std::string& host);

/// The addresses of a name, best first; none when it has none at present. May wait for seconds.
std::vector<NetworkAddress> lookUp(const std::string& host);

}  // namespace kifo
