#pragma once

#include <map>
#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "Kifo_iOS_Common_Kit/ports/UserDefaults.h"
#include "platform/linux/Directories.h"

namespace kifo {

/// The file behind `FileUserDefaults`: one JSON object in "defaults.json".
/// It is replaced as a whole: written to "defaults.json.tmp", synchronised, renamed over the old
/// one, and the directory synchronised. A crash at any instant leaves the old file or the new one.
/// A table in SQLite would cost opening a database at the start, for a handful of values.
///
/// **Threading:** externally synchronised, between processes by `Lock`.
class DefaultsFile {
 public:
  using Values = std::map<std::string, DefaultsValue>;
  enum class State {
    sound,    ///< Read; a missing file counts as one without values.
    corrupt,  ///< No JSON object, or not readable for this user.
    failed,   ///< A read error that may be temporary.
  };

  /// Locks the file against writes of other processes for as long as it lives.
  class Lock {
   public:
    /// Takes the lock unless another process has it; never waits.
    explicit Lock(const DefaultsFile& file);
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    /// Whether another process has it. False also when the lock file cannot be opened.
    [[nodiscard]] bool isBusy() const { return busy_; }

   private:
    int descriptor_ = -1;
    bool busy_ = false;
  };

  explicit DefaultsFile(std::string directory) : directory_(std::move(directory)) {}

  State read(Values& values) const;
  /// Makes the directory if need be. 0, or the system's code.
  [[nodiscard]] int write(const Values& values) const;
  /// Gives the file mode 0600, if it exists.
  void makePrivate() const { kifo::makePrivate(path("")); }
  /// Renames a corrupt file to "defaults.json.bad"; false when that fails.
  [[nodiscard]] bool setAside() const;
  /// Removes the file with all that was made beside it; false when something is left.
  [[nodiscard]] bool remove() const;
  [[nodiscard]] const std::string& directory() const { return directory_; }

 private:
  [[nodiscard]] std::string path(const char* suffix) const;
  [[nodiscard]] int writeBeside(const std::string& text) const;

  const std::string directory_;
};

/// User defaults in one small file of the documents directory (see `DefaultsFile`), read with the
/// first value and kept in memory from then on.
/// Values are written by a task on `queue`, all that were set meanwhile at once. A write first
/// reads what another process has written, and replaces only the values that were set in this one.
///
/// **Threading:** thread-safe. The first call reads the file on its caller's thread, a few dozen
/// microseconds; none writes there.
/// **Errors:** a file that cannot be understood is set aside as "defaults.json.bad" and counts as
/// empty. A failed write is printed once, and tried again when the next value is set. Numbers that
/// are not finite and keys that are no UTF-8 are not written.
class FileUserDefaults final : public UserDefaults {
 public:
  FileUserDefaults(std::string directory, std::shared_ptr<SerialQueue> queue);
  ~FileUserDefaults() override;

  [[nodiscard]] std::optional<DefaultsValue> value(const std::string& key) const override;
  void setValue(const std::string& key, DefaultsValue value) override;
  bool removeAll() override;

 private:
  class Store;
  const std::shared_ptr<Store> store_;
};

}  // namespace kifo
