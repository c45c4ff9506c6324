#include "platform/linux/SystemFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace kifo {
namespace {

/// 0 at the end, or the system's code.
int readAll(int descriptor, std::size_t limit, std::string& text) {
  char buffer[4096];
  for (;;) {
    const ssize_t count = read(descriptor, buffer, sizeof buffer);
    if (count == 0) return 0;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    text.append(buffer, static_cast<std::size_t>(count));
    if (text.size() > limit) return EFBIG;
  }
}

}  // namespace

std::optional<std::string> readFile(const std::string& path, std::size_t limit, int* error) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  std::string text;
  const int code = descriptor < 0 ? errno : readAll(descriptor, limit, text);
  if (descriptor >= 0) close(descriptor);
  if (error) *error = code;
  return code == 0 ? std::optional(std::move(text)) : std::nullopt;
}

int makeDirectories(const std::string& path) {
  if (mkdir(path.c_str(), 0700) == 0) return 0;
  const int code = errno;
  if (code == EEXIST) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) ? 0 : ENOTDIR;
  }
  const auto slash = path.find_last_of('/');
  if (code != ENOENT || slash == std::string::npos || slash == 0) return code;
  const int above = makeDirectories(path.substr(0, slash));
  if (above != 0) return above;
  return mkdir(path.c_str(), 0700) == 0 || errno == EEXIST ? 0 : errno;
}

std::string trimmed(const std::string& text) {
  constexpr auto kBlanks = " \t\r\n";
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace kifo
