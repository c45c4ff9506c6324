#include "platform/linux/LinuxClock.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <utility>

#include "platform/linux/SystemFiles.h"

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

LinuxClock::LinuxClock(std::shared_ptr<SerialQueue> queue, const std::string& tz, std::string root)
    : zone_(std::move(queue), readerOf(tz, std::move(root))) {}

std::int64_t LinuxClock::millisecondsSince1970() const {
  return std::chrono::floor<std::chrono::milliseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

}  // namespace kifo
