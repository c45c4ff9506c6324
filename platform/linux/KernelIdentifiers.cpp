#include "platform/linux/KernelIdentifiers.h"

#include <sys/random.h>

#include <cerrno>
#include <random>

namespace kifo {

std::string KernelIdentifiers::uuid() {
  std::array<std::uint8_t, 16> bytes{};
  ssize_t count = -1;
  do {
    count = getrandom(bytes.data(), bytes.size(), 0);
  } while (count < 0 && errno == EINTR);
  if (count != static_cast<ssize_t>(bytes.size())) {
    std::random_device device;  // a kernel without the call, or a filter that forbids it
    for (auto& byte : bytes) byte = static_cast<std::uint8_t>(device());
  }
  return uuidOf(bytes);
}

std::string uuidOf(std::array<std::uint8_t, 16> bytes) {
  constexpr auto kDigits = "0123456789ABCDEF";
  bytes[6] = static_cast<std::uint8_t>((bytes[6] & 0x0F) | 0x40);
  bytes[8] = static_cast<std::uint8_t>((bytes[8] & 0x3F) | 0x80);
  std::string text;
  text.reserve(36);
  for (std::size_t index = 0; index < bytes.size(); ++index) {
    if (index == 4 || index == 6 || index == 8 || index == 10) text += '-';
    text += kDigits[bytes[index] >> 4];
    text += kDigits[bytes[index] & 0x0F];
  }
  return text;
}

}  // namespace kifo
