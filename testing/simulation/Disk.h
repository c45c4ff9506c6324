#pragma once

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/StoreFiles.h"

namespace kifo::testing::simulation {

/// A disk in memory that outlives the simulated process. For as long as it lives it is SQLite's
/// default VFS; one at a time.
///
/// What SQLite wrote and did not sync is kept when the process is killed. When the power fails each
/// sector of it is either kept or lost, by chance. Names of files are durable at once.
///
/// **Threading:** one thread.
class Disk final : public StoreFiles {
 public:
  enum class Health {
    good,
    failing,  ///< Every change fails; what is there can be read.
    full,     ///< Writing fails as on a full disk; files can be removed.
    off,      ///< The power has failed: nothing works until `restart`.
  };
  /// What another process does with a file.
  enum class ForeignLock {
    none,
    reads,     ///< Nobody else can commit.
    writes,    ///< Nobody else can begin to write.
    excludes,  ///< Nobody else can read either.
  };
  struct File {
    std::string data;
    std::string durable;  ///< As of the last sync.
  };

  Disk();
  ~Disk() override;

  bool exists(const std::string& path) override;
  void makeDirectories(const std::string&) override {}
  bool makePrivate(const std::string& path) override;
  std::optional<Error> move(const std::string& from, const std::string& to, bool replaces) override;
  std::optional<Error> remove(const std::string& path) override;

  void setHealth(Health health);
  /// The health becomes `next` at the `operations`th change from now on, which fails already.
  void setHealthLater(Health next, int operations);
  [[nodiscard]] Health health() const { return health_; }
  /// The power is back. After a power failure what was not synced is partly lost, as `seed` has it.
  void restart(std::uint32_t seed);

  /// Another process holds `lock` on the file, if that exists, until somebody has waited for it
  /// `polls` times, or `unlock`.
  void lock(const std::string& path, ForeignLock lock, int polls);
  void unlock() { lock_ = ForeignLock::none; }
  [[nodiscard]] bool isLocked() const { return lock_ != ForeignLock::none; }
  /// False for a reader that is not part of the world: the lock does not keep it out.
  void setLockSeen(bool isSeen) { isLockSeen_ = isSeen; }
  /// Whether every operation succeeds, if it waits long enough.
  [[nodiscard]] bool isInOrder() const;

  /// Grows with every change of any file.
  [[nodiscard]] std::uint64_t version() const { return version_; }
  /// Null when there is none.
  [[nodiscard]] std::shared_ptr<const File> file(const std::string& path) const;

 private:
  struct Vfs;  ///< SQLite's side.

  /// Counts a change that is about to happen; false when it must fail.
  bool mayChange(bool growsFile);

  std::map<std::string, std::shared_ptr<File>> files_;
  Health health_ = Health::good;
  Health nextHealth_ = Health::good;
  int changesUntilNext_ = 0;  ///< 0: the health stays.
  std::uint64_t version_ = 0;
  std::uint64_t restarts_ = 0;
  ForeignLock lock_ = ForeignLock::none;
  std::shared_ptr<const File> locked_;
  int polls_ = 0;            ///< Left until the lock ends.
  bool isLockLong_ = false;  ///< It outlasts what the SDK waits.
  bool isLockSeen_ = true;
  sqlite3_vfs vfs_{};
  sqlite3_vfs* previous_ = nullptr;
};

}  // namespace kifo::testing::simulation
