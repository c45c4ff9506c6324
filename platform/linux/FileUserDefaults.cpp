#include "platform/linux/FileUserDefaults.h"

#include <cerrno>
#include <mutex>
#include <system_error>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "platform/linux/DefaultsFile.h"
#include "platform/linux/SystemFiles.h"

namespace kifo {
namespace {

const SerialQueue::Duration kLockRetry(0.02);
constexpr int kLockRetries = 50;  // a second; then a lost update is the smaller evil

void print(const std::string& message) {
  Console::print(logTag("UserDefaults"), message);
}

}  // namespace

/// Shared with the tasks that write, which may outlive the defaults.
class FileUserDefaults::Store : public std::enable_shared_from_this<Store> {
 public:
  using Values = DefaultsFile::Values;

  Store(std::string directory, std::shared_ptr<SerialQueue> queue)
      : file_(std::move(directory)), queue_(std::move(queue)) {}

  std::optional<DefaultsValue> value(const std::string& key);
  void setValue(const std::string& key, DefaultsValue value);

 private:
  void load();
  void scheduleWrite();
  void write(int retries);
  Values takeChanges();
  int merge(const Values& changes, Values& merged) const;
  void adopt(const Values& merged);
  void restore(const Values& changes, int error);

  const DefaultsFile file_;
  const std::shared_ptr<SerialQueue> queue_;

  std::mutex mutex_;
  // Guarded by mutex_.
  Values values_;
  Values changes_;  ///< Set here and not yet in the file.
  bool loaded_ = false;
  bool scheduled_ = false;
  bool failing_ = false;  ///< The last write failed, and it was said.
};

std::optional<DefaultsValue> FileUserDefaults::Store::value(const std::string& key) {
  const std::lock_guard lock(mutex_);
  load();
  const auto found = values_.find(key);
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void FileUserDefaults::Store::setValue(const std::string& key, DefaultsValue value) {
  const std::lock_guard lock(mutex_);
  load();
  values_[key] = value;
  changes_[key] = std::move(value);
  scheduleWrite();
}

void FileUserDefaults::Store::load() {
  if (std::exchange(loaded_, true)) return;
  makeDirectories(file_.directory());  // ours before others make it, and for this user alone
  if (file_.read(values_) == DefaultsFile::State::corrupt) scheduleWrite();  // which sets it aside
}

void FileUserDefaults::Store::scheduleWrite() {
  if (std::exchange(scheduled_, true)) return;
  queue_->post([self = shared_from_this()] { self->write(kLockRetries); });
}

/// On the queue.
void FileUserDefaults::Store::write(int retries) {
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
  const std::lock_guard lock(mutex_);
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
  const std::lock_guard lock(mutex_);
  failing_ = false;
  for (const auto& [key, value] : merged) {
    if (!changes_.contains(key)) values_.insert_or_assign(key, value);
  }
}

void FileUserDefaults::Store::restore(const Values& changes, int error) {
  {
    const std::lock_guard lock(mutex_);
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

}  // namespace kifo
