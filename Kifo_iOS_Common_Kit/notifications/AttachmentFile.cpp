#include "Kifo_iOS_Common_Kit/notifications/AttachmentFile.h"

#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <set>
#include <stdexcept>
#include <system_error>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

namespace fs = std::filesystem;

/// Directories are named by this, the process that owns them, and a random identifier.
constexpr std::string_view PREFIX = "kifo-push-";

/// This process's own directories. Never destroyed: contents may be destroyed at exit.
struct Own {
  Mutex mutex;
  std::set<std::string> directories KIFO_GUARDED_BY(mutex);
  std::string swept
      KIFO_GUARDED_BY(mutex);  ///< The temporary directory that has been cleared of leftovers.
};

Own& own() {
  static Own& only = *new Own;
  return only;
}

fs::path orSystems(const std::string& directory) {
  return directory.empty() ? fs::temp_directory_path() : fs::path(directory);
}

bool isRunning(long process) {
  return kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM;
}

/// The process in the name of one of our directories; 0 for any other name.
long ownerOf(std::string_view name) {
  if (!name.starts_with(PREFIX)) return 0;
  name.remove_prefix(PREFIX.size());
  long process = 0;
  const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), process);
  const bool whole = error == std::errc() && end != name.data() + name.size() && *end == '-';
  return whole && process > 0 ? process : 0;
}

/// Containers give a program the same process number at every start, so the number alone does not
/// say that a directory is this run's.
bool isLeftover(const fs::path& directory) {
  const long process = ownerOf(directory.filename().string());
  if (process == 0) return false;
  if (process != getpid()) return !isRunning(process);
  const MutexLock lock(own().mutex);
  return !own().directories.contains(directory.string());
}

void sweepOnce(const std::string& directory) {
  {
    const MutexLock lock(own().mutex);
    if (own().swept == directory) return;
  }
  AttachmentFile::removeLeftovers(directory);
}

void writeFile(const std::string& path, std::string_view bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (!file) throw std::system_error(errno, std::generic_category(), path);
}

}  // namespace

AttachmentFile::AttachmentFile(std::string directory) : directory_(std::move(directory)) {
  const MutexLock lock(own().mutex);
  own().directories.insert(directory_);
}

AttachmentFile::~AttachmentFile() {
  std::error_code ignored;
  fs::remove_all(directory_, ignored);
  const MutexLock lock(own().mutex);
  own().directories.erase(directory_);
}

std::shared_ptr<const AttachmentFile> AttachmentFile::write(std::string_view bytes) {
  const fs::path parent = orSystems(Platform::current()->temporaryDirectory);
  sweepOnce(parent.string());
  if (fs::create_directories(parent)) fs::permissions(parent, fs::perms::owner_all);
  const std::string name = std::string(PREFIX) + std::to_string(getpid()) + "-" +
                           Platform::current()->identifiers->uuid();
  const fs::path directory = parent / name;
  // Someone else's directory of this name is neither written to nor removed.
  if (!fs::create_directory(directory)) throw std::runtime_error(directory.string() + " exists");
  std::shared_ptr<const AttachmentFile> file(new AttachmentFile(directory.string()));
  fs::permissions(directory, fs::perms::owner_all);
  writeFile(file->path(), bytes);
  return file;
}

bool AttachmentFile::removeAll() {
  std::set<std::string> directories;
  {
    const MutexLock lock(own().mutex);
    directories = own().directories;
  }
  bool isGone = true;
  for (const std::string& directory : directories) {
    std::error_code error;
    fs::remove_all(directory, error);
    if (error) isGone = false;
  }
  removeLeftovers(Platform::current()->temporaryDirectory);
  return isGone;
}

void AttachmentFile::removeLeftovers(const std::string& temporaryDirectory) {
  std::error_code error;
  const fs::path parent = orSystems(temporaryDirectory);
  for (fs::directory_iterator entry(parent, error), end; !error && entry != end;
       entry.increment(error)) {
    std::error_code ignored;
    if (isLeftover(entry->path())) fs::remove_all(entry->path(), ignored);
  }
  const MutexLock lock(own().mutex);
  own().swept = parent.string();
}

}  // namespace kifo
