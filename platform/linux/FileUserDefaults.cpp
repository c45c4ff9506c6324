#include "platform/linux/FileUserDefaults.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <optional>
#include <system_error>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "platform/linux/Directories.h"

namespace kifo {
namespace {

constexpr std::string_view LOG_TAG = "Kifo UserDefaults:";

constexpr std::size_t kLargestFile = 8u << 20;
constexpr auto kBytes = "bytes";  // a text that is no UTF-8, as hexadecimal digits: {"bytes": "ff"}

/// JSON keeps a text only when it is UTF-8.
bool isUtf8(const std::string& text) {
  return valueFromJson(jsonFromValue(Value(text))) == Value(text);
}

std::string hexadecimal(const std::string& bytes) {
  std::string digits;
  for (const char byte : bytes) {
    char pair[3];
    std::snprintf(pair, sizeof pair, "%02x", static_cast<unsigned char>(byte));
    digits += pair;
  }
  return digits;
}

std::string fromHexadecimal(const std::string& digits) {
  std::string bytes;
  for (std::size_t index = 0; index + 1 < digits.size(); index += 2) {
    bytes += static_cast<char>(std::strtoul(digits.substr(index, 2).c_str(), nullptr, 16));
  }
  return bytes;
}

struct ToJson {
  Value operator()(const std::string& text) const {
    return isUtf8(text) ? Value(text) : Value{{kBytes, hexadecimal(text)}};
  }
  Value operator()(auto value) const { return value; }
};

std::optional<DefaultsValue> fromJson(const Value& value) {
  if (const auto flag = value.asBoolean()) return *flag;
  if (const auto whole = value.asInteger()) return *whole;
  if (const auto number = value.asNumber()) return *number;
  if (const auto* text = value.asText()) return *text;
  if (const auto* digits = value[kBytes].asText()) return fromHexadecimal(*digits);
  return std::nullopt;
}

/// One member a line.
std::string textOf(const DefaultsFile::Values& values) {
  std::string text = "{";
  for (const auto& [key, value] : values) {
    // JSON has no such numbers: they last as long as the process.
    if (const auto* number = std::get_if<double>(&value); number && !std::isfinite(*number))
      continue;
    if (!isUtf8(key)) continue;
    text += text.size() == 1 ? "\n " : ",\n ";
    text += jsonFromValue(Value(key)) + ": " + jsonFromValue(std::visit(ToJson{}, value));
  }
  return text + (text.size() == 1 ? "}\n" : "\n}\n");
}

/// Opens a file of mode 0600, whatever the umask and whoever made it.
int openPrivate(const std::string& path, int flags) {
  const int descriptor = open(path.c_str(), flags | O_CREAT | O_CLOEXEC, 0600);
  if (descriptor >= 0) fchmod(descriptor, 0600);
  return descriptor;
}

int writeAll(int descriptor, const std::string& text) {
  std::size_t done = 0;
  while (done < text.size()) {
    const ssize_t count = write(descriptor, text.data() + done, text.size() - done);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return errno;
    done += static_cast<std::size_t>(count);
  }
  return fsync(descriptor) == 0 ? 0 : errno;
}

int synchroniseDirectory(const std::string& path) {
  const int descriptor = open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (descriptor < 0) return errno;
  const int code = fsync(descriptor) == 0 ? 0 : errno;
  close(descriptor);
  return code;
}

const SerialQueue::Duration kLockRetry(0.02);
constexpr int kLockRetries = 50;  // 1 s; then it writes without the lock

void print(const std::string& message) {
  Console::print(LOG_TAG, message);
}

}  // namespace

DefaultsFile::Lock::Lock(const DefaultsFile& file)
    : descriptor_(openPrivate(file.path(".lock"), O_RDWR)) {
  busy_ = descriptor_ >= 0 && flock(descriptor_, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
}

DefaultsFile::Lock::~Lock() {
  if (descriptor_ >= 0) close(descriptor_);
}

std::string DefaultsFile::path(const char* suffix) const {
  return directory_ + "/defaults.json" + suffix;
}

DefaultsFile::State DefaultsFile::read(Values& values) const {
  values.clear();
  int error = 0;
  const auto text = readFile(path(""), kLargestFile, &error);
  if (error == ENOENT || error == ENOTDIR) return State::sound;
  if (error == EACCES || error == EISDIR || error == EFBIG) return State::corrupt;
  if (!text) return State::failed;
  const auto json = valueFromJson(*text);
  const auto* object = json ? json->asMap() : nullptr;
  if (!object) return State::corrupt;
  for (const auto& [key, value] : *object) {
    if (auto known = fromJson(value)) values.emplace(key, std::move(*known));
  }
  return State::sound;
}

int DefaultsFile::write(const Values& values) const {
  if (const int code = makeDirectories(directory_); code != 0) return code;
  int code = writeBeside(textOf(values));
  if (code == 0 && rename(path(".tmp").c_str(), path("").c_str()) != 0) code = errno;
  if (code == 0) return synchroniseDirectory(directory_);
  unlink(path(".tmp").c_str());
  return code;
}

int DefaultsFile::writeBeside(const std::string& text) const {
  const int descriptor = openPrivate(path(".tmp"), O_WRONLY | O_TRUNC | O_NOFOLLOW);
  if (descriptor < 0) return errno;
  const int code = writeAll(descriptor, text);
  return close(descriptor) == 0 || code != 0 ? code : errno;
}

bool DefaultsFile::setAside() const {
  return rename(path("").c_str(), path(".bad").c_str()) == 0;
}

bool DefaultsFile::remove() const {
  bool isGone = true;
  for (const char* suffix : {"", ".tmp", ".bad", ".lock"}) {
    if (unlink(path(suffix).c_str()) != 0 && errno != ENOENT && errno != ENOTDIR) isGone = false;
  }
  return isGone;
}

/// Shared with the tasks that write, which may outlive the defaults.
class FileUserDefaults::Store : public std::enable_shared_from_this<Store> {
 public:
  using Values = DefaultsFile::Values;

  Store(std::string directory, std::shared_ptr<SerialQueue> queue)
      : file_(std::move(directory)), queue_(std::move(queue)) {}

  std::optional<DefaultsValue> value(const std::string& key);
  void setValue(const std::string& key, DefaultsValue value);
  bool removeAll();

 private:
  void load() KIFO_REQUIRES(mutex_);
  void scheduleWrite() KIFO_REQUIRES(mutex_);
  void write(int retries);
  Values takeChanges();
  int merge(const Values& changes, Values& merged) const;
  void adopt(const Values& merged);
  void restore(const Values& changes, int error);

  const DefaultsFile file_;
  const std::shared_ptr<SerialQueue> queue_;

  Mutex mutex_;
  Values values_ KIFO_GUARDED_BY(mutex_);
  Values changes_ KIFO_GUARDED_BY(mutex_);  ///< Set here and not yet in the file.
  bool loaded_ KIFO_GUARDED_BY(mutex_) = false;
  bool scheduled_ KIFO_GUARDED_BY(mutex_) = false;
  bool failing_ KIFO_GUARDED_BY(mutex_) = false;  ///< The last write failed, which was printed.
};

std::optional<DefaultsValue> FileUserDefaults::Store::value(const std::string& key) {
  const MutexLock lock(mutex_);
  load();
  const auto found = values_.find(key);
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void FileUserDefaults::Store::setValue(const std::string& key, DefaultsValue value) {
  const MutexLock lock(mutex_);
  load();
  values_[key] = value;
  changes_[key] = std::move(value);
  scheduleWrite();
}

/// On the queue, where no write is under way.
bool FileUserDefaults::Store::removeAll() {
  {
    const MutexLock lock(mutex_);
    values_.clear();
    changes_.clear();
    loaded_ = true;
    scheduled_ = false;
  }
  return file_.remove();
}

void FileUserDefaults::Store::load() {
  if (std::exchange(loaded_, true)) return;
  makeDirectories(file_.directory());  // before the database does: its own would obey the umask
  file_.makePrivate();
  if (file_.read(values_) == DefaultsFile::State::corrupt) scheduleWrite();  // moves it away
}

void FileUserDefaults::Store::scheduleWrite() {
  if (std::exchange(scheduled_, true)) return;
  queue_->post([self = shared_from_this()] { self->write(kLockRetries); });
}

/// On the queue.
void FileUserDefaults::Store::write(int retries) {
  {
    const MutexLock lock(mutex_);
    if (!scheduled_) return;  // what was to be written is erased
  }
  const DefaultsFile::Lock lock(file_);
  if (lock.isBusy() && retries > 0) {
    const auto retry = [self = shared_from_this(), retries] { self->write(retries - 1); };
    if (queue_->schedule(kLockRetry, retry) != 0)
      return;  // 0: the queue ends, this is the last try
  }
  const Values changes = takeChanges();
  Values merged;
  const int error = merge(changes, merged);
  if (error == 0) {
    adopt(merged);
  } else {
    restore(changes, error);
  }
}

DefaultsFile::Values FileUserDefaults::Store::takeChanges() {
  const MutexLock lock(mutex_);
  scheduled_ = false;
  return std::exchange(changes_, {});
}

/// Puts `changes` over what the file holds by now. 0, or the system's code.
int FileUserDefaults::Store::merge(const Values& changes, Values& merged) const {
  const auto state = file_.read(merged);
  if (state == DefaultsFile::State::failed) return EIO;
  if (state == DefaultsFile::State::corrupt && file_.setAside()) {
    print("the stored values could not be understood and were set aside");
  }
  const Values before = merged;
  for (const auto& [key, value] : changes) merged.insert_or_assign(key, value);
  return merged == before ? 0 : file_.write(merged);
}

void FileUserDefaults::Store::adopt(const Values& merged) {
  const MutexLock lock(mutex_);
  failing_ = false;
  for (const auto& [key, value] : merged) {
    if (!changes_.contains(key)) values_.insert_or_assign(key, value);
  }
}

void FileUserDefaults::Store::restore(const Values& changes, int error) {
  {
    const MutexLock lock(mutex_);
    changes_.insert(changes.begin(), changes.end());  // what was set meanwhile stays
    if (std::exchange(failing_, true)) return;
  }
  print(std::string("the values could not be written and last for this process only: ") +
        std::generic_category().message(error));
}

FileUserDefaults::FileUserDefaults(std::string directory, std::shared_ptr<SerialQueue> queue)
    : store_(std::make_shared<Store>(std::move(directory), std::move(queue))) {}

FileUserDefaults::~FileUserDefaults() = default;

std::optional<DefaultsValue> FileUserDefaults::value(const std::string& key) const {
  return store_->value(key);
}

void FileUserDefaults::setValue(const std::string& key, DefaultsValue value) {
  store_->setValue(key, std::move(value));
}

bool FileUserDefaults::removeAll() {
  return store_->removeAll();
}

}  // namespace kifo
