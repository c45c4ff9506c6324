#include "platform/linux/Directories.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

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

namespace fs = std::filesystem;

std::string absoluteIn(const char* variable) {
  const char* text = std::getenv(variable);
  return text && *text == '/' ? text : "";
}

std::string home() {
  if (auto variable = absoluteIn("HOME"); !variable.empty()) return variable;
  std::vector<char> buffer(4096);
  passwd entry{};
  passwd* found = nullptr;
  getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found);
  return found && found->pw_dir && *found->pw_dir == '/' ? found->pw_dir : "";
}

std::string below(const char* variable, const char* fallback, const std::string& program) {
  std::string base = absoluteIn(variable);
  if (base.empty()) {
    base = home();
    if (base.empty()) return {};
    base += fallback;
  }
  return base + "/" + program + "/kifo";
}

/// 0, or the system's code.
int makeDirectory(const std::string& path) {
  if (mkdir(path.c_str(), 0700) != 0) return errno;
  return chmod(path.c_str(), 0700) == 0 ? 0 : errno;  // the umask may have taken more
}

/// 0 when the directory is there and can be written to, or could be made.
int canHold(fs::path path) {
  std::error_code ignored;
  while (!fs::exists(path, ignored) && path.has_parent_path() && path != path.parent_path()) {
    path = path.parent_path();
  }
  if (access(path.c_str(), W_OK | X_OK) != 0) return errno;
  return fs::is_directory(path, ignored) ? 0 : ENOTDIR;
}

/// A private directory of this user below the system's temporary one, the same at each start; a new
/// one if another user occupies its name.
std::string temporaryBase() {
  std::error_code ignored;
  fs::path base = fs::temp_directory_path(ignored);
  if (base.empty()) base = "/tmp";
  const std::string path = (base / ("kifo-" + std::to_string(getuid()))).string();
  mkdir(path.c_str(), 0700);
  struct stat status {};
  const bool ours = lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
                    status.st_uid == getuid() && (status.st_mode & 0077) == 0;
  if (ours) return path;
  std::string fresh = path + "-XXXXXX";
  return mkdtemp(fresh.data()) ? fresh : path;
}

std::string programName() {
  std::error_code ignored;
  const auto name = fs::read_symlink("/proc/self/exe", ignored).filename().string();
  return name.empty() ? program_invocation_short_name : name;
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
  const int code = makeDirectory(path);
  if (code == 0) return 0;
  if (code == EEXIST) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) ? 0 : ENOTDIR;
  }
  const auto slash = path.find_last_of('/');
  if (code != ENOENT || slash == std::string::npos || slash == 0) return code;
  const int above = makeDirectories(path.substr(0, slash));
  if (above != 0) return above;
  const int again = makeDirectory(path);
  return again == EEXIST ? 0 : again;
}

void makePrivate(const std::string& path) {
  struct stat status {};
  const bool isOurs =
      lstat(path.c_str(), &status) == 0 && !S_ISLNK(status.st_mode) && status.st_uid == geteuid();
  if (isOurs) chmod(path.c_str(), S_ISDIR(status.st_mode) ? 0700 : 0600);
}

std::string trimmed(const std::string& text) {
  constexpr auto kBlanks = " \t\r\n";
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

Directories Directories::ofThisProcess() {
  Directories result;
  result.program = programName();
  result.documents = below("XDG_DATA_HOME", "/.local/share", result.program);
  result.temporary = below("XDG_CACHE_HOME", "/.cache", result.program);
  const int code = result.documents.empty() ? ENOENT : canHold(result.documents);
  if (code != 0) {
    result.problem = result.documents + ": " + std::generic_category().message(code);
    result.documents = temporaryBase() + "/" + result.program;
  }
  if (result.temporary.empty() || canHold(result.temporary) != 0) {
    result.temporary = temporaryBase() + "/" + result.program + "-cache";
  }
  return result;
}

}  // namespace kifo
