#pragma once

#include <map>
#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "Kifo_iOS_Common_Kit/ports/UserDefaults.h"
#include "platform/linux/Directories.h"

namespace kifo {

/// The file behind `FileUserDefaults`: one JSON object in "defaults.json".
///
/// It is replaced as a whole: written beside its place, synchronised, renamed over the old one, and
/// the directory synchronised. A process that dies at any instant leaves the old file or the new
/// one. That is chosen over a table in SQLite because there are a handful of values, read once at
/// the start: one small read instead of opening a database, and no lock that a slow neighbour could
/// hold.
///
/// **Threading:** externally synchronised, between processes by `Lock`.
class DefaultsFile {
 public:
  using Values = std::map<std::string, DefaultsValue>;
  enum class State {
    sound,    ///< Read; a file that is not there is one without values.
    corrupt,  ///< Nothing that was written here, or nothing that may be read.
    failed,   ///< The system had no answer just now; the file may be well.
  };

  /// Keeps other processes from replacing the file for as long as it lives.
  class Lock {
   public:
    /// Takes the lock, unless another process has it; never waits.
    explicit Lock(const DefaultsFile& file);
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    /// Whether another process has it. A lock that cannot be had at all counts as taken.
    [[nodiscard]] bool isBusy() const { return busy_; }

   private:
    int descriptor_ = -1;
    bool busy_ = false;
  };

  explicit DefaultsFile(std::string directory) : directory_(std::move(directory)) {}

  State read(Values& values) const;
  /// Makes the directory if need be. 0, or the system's code.
  [[nodiscard]] int write(const Values& values) const;
  /// Takes other users' rights from the file, if it exists.
  void makePrivate() const { kifo::makePrivate(path("")); }
  /// Moves a corrupt file out of the way, to "defaults.json.bad"; false when that fails.
  [[nodiscard]] bool setAside() const;
  [[nodiscard]] const std::string& directory() const { return directory_; }

 private:
  [[nodiscard]] std::string path(const char* suffix) const;
  [[nodiscard]] int writeBeside(const std::string& text) const;

  const std::string directory_;
};

/// User defaults in one small file of the documents directory (see `DefaultsFile`), read once when
/// the first value is asked for, and from then on kept in memory.
///
/// Values that are set are written by a task on `queue`, however many were set meanwhile in one go.
/// A write first takes over what another process has written, and replaces only the values that
/// were set in this one.
///
/// **Threading:** thread-safe. The first call reads the file on its caller's thread, a few dozen
/// microseconds; none writes there.
/// **Errors:** a file that cannot be understood is set aside as "defaults.json.bad" and counts as
/// empty. A failed write is said once, and tried again when the next value is set. Numbers that are
/// not finite, and keys that are no UTF-8, are not kept beyond the process.
class FileUserDefaults final : public UserDefaults {
 public:
  FileUserDefaults(std::string directory, std::shared_ptr<SerialQueue> queue);
  ~FileUserDefaults() override;

  [[nodiscard]] std::optional<DefaultsValue> value(const std::string& key) const override;
  void setValue(const std::string& key, DefaultsValue value) override;

 private:
  class Store;
  const std::shared_ptr<Store> store_;
};

}  // namespace kifo
