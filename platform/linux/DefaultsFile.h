#pragma once

#include <map>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/UserDefaults.h"

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
  /// Moves a corrupt file out of the way, to "defaults.json.bad"; false when that fails.
  [[nodiscard]] bool setAside() const;
  [[nodiscard]] const std::string& directory() const { return directory_; }

 private:
  [[nodiscard]] std::string path(const char* suffix) const;
  [[nodiscard]] int writeBeside(const std::string& text) const;

  const std::string directory_;
};

}  // namespace kifo
