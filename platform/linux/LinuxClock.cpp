#include "platform/linux/LinuxClock.h"

#include <sys/random.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <random>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/linux/Directories.h"

namespace kifo {
namespace {

/// Whether the text could be a zone's name; rules such as "<+03>-3" are none.
bool isZoneName(std::string_view text) {
  const auto fits = [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
           std::string_view("/_+-").find(c) != std::string_view::npos;
  };
  return !text.empty() && text.size() < 100 && text.front() != '/' &&
         std::ranges::all_of(text, fits);
}

/// The zone that a path below a zone data base stands for: /usr/share/zoneinfo/Europe/Istanbul.
std::string zoneInPath(std::string_view path) {
  constexpr std::string_view kFolder = "/zoneinfo/";
  const auto folder = path.find(kFolder);
  if (folder == std::string_view::npos) return {};
  std::string_view zone = path.substr(folder + kFolder.size());
  for (const std::string_view variant : {"posix/", "right/"}) {
    if (zone.starts_with(variant)) zone.remove_prefix(variant.size());
  }
  return isZoneName(zone) ? std::string(zone) : std::string();
}

std::string zoneInVariable(std::string_view text) {
  if (text.starts_with(':')) text.remove_prefix(1);
  if (text.starts_with('/')) return zoneInPath(text);
  return isZoneName(text) ? std::string(text) : std::string();
}

std::string zoneInFiles(const std::string& root) {
  std::error_code ignored;
  const auto target = std::filesystem::read_symlink(root + "/etc/localtime", ignored).string();
  if (auto zone = zoneInPath(target); !zone.empty()) return zone;
  const auto named = trimmed(readFile(root + "/etc/timezone").value_or(""));
  return isZoneName(named) ? named : "UTC";
}

CachedReading<std::string>::Read readerOf(const std::string& tz, std::string root) {
  std::string fixed = zoneInVariable(tz);
  if (!fixed.empty()) return [fixed = std::move(fixed)] { return fixed; };
  return [root = std::move(root)] { return zoneInFiles(root); };
}

}  // namespace

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
  std::string text(36, '-');
  std::size_t at = 0;
  for (std::size_t index = 0; index < bytes.size(); ++index) {
    if (index == 4 || index == 6 || index == 8 || index == 10) ++at;
    text[at++] = kDigits[bytes[index] >> 4];
    text[at++] = kDigits[bytes[index] & 0x0F];
  }
  return text;
}

LinuxClock::LinuxClock(std::shared_ptr<SerialQueue> queue, const std::string& tz, std::string root)
    : zone_(std::move(queue), readerOf(tz, std::move(root))) {}

std::int64_t LinuxClock::millisecondsSince1970() const {
  return std::chrono::floor<std::chrono::milliseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

}  // namespace kifo
