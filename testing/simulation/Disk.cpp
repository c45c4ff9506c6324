#include "testing/simulation/Disk.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <random>

namespace kifo::testing::simulation {
namespace {

constexpr std::size_t kSectorSize = 512;
constexpr int kPollsOfTheSdk = 1000;  // for a lock: 5 s, 5 ms each

Error fileError(int code) {
  return {"file", code, std::strerror(code)};
}

/// What is left of a file when the power fails: its size is the old or the new one, and so is each
/// sector.
std::string torn(const Disk::File& file, std::mt19937& random) {
  std::string left = file.data;
  const std::size_t common = std::min(file.data.size(), file.durable.size());
  for (std::size_t start = 0; start < left.size(); start += kSectorSize) {
    if (random() % 2 == 0) continue;
    const std::size_t length = std::min(kSectorSize, left.size() - start);
    const std::size_t old = start < common ? std::min(length, common - start) : 0;
    if (old > 0) left.replace(start, old, file.durable, start, old);
    std::fill(left.begin() + static_cast<std::ptrdiff_t>(start + old),
              left.begin() + static_cast<std::ptrdiff_t>(start + length), '\0');
  }
  if (random() % 2 == 0) left.resize(file.durable.size(), '\0');
  return left;
}

}  // namespace

/// An open file as SQLite knows it, and the functions that it calls.
struct Disk::Vfs {
  struct Open {
    sqlite3_file base;
    Disk* disk;
    std::shared_ptr<File> file;
    const char* name;  ///< Null for a temporary one. SQLite keeps it until the file is closed.
    std::uint64_t restarts;
  };

  static Disk& diskOf(sqlite3_vfs* vfs) { return *static_cast<Disk*>(vfs->pAppData); }
  static Open& openOf(sqlite3_file* file) { return *reinterpret_cast<Open*>(file); }

  static int open(sqlite3_vfs* vfs, const char* name, sqlite3_file* target, int flags, int* out) {
    Disk& disk = diskOf(vfs);
    target->pMethods = nullptr;
    std::shared_ptr<File> file;
    if (!name) {
      file = std::make_shared<File>();  // a temporary one
    } else if (const auto found = disk.files_.find(name); found != disk.files_.end()) {
      if (disk.health_ == Health::off) return SQLITE_CANTOPEN;
      file = found->second;
    } else {
      if (!(flags & SQLITE_OPEN_CREATE) || !disk.mayChange(true)) return SQLITE_CANTOPEN;
      file = disk.files_[name] = std::make_shared<File>();
    }
    auto* opened = new (target) Open{{}, &disk, std::move(file), name, disk.restarts_};
    opened->base.pMethods = &methods();
    if (out) *out = flags;
    return SQLITE_OK;
  }
  static int close(sqlite3_file* file) {
    openOf(file).~Open();
    return SQLITE_OK;
  }
  static int read(sqlite3_file* file, void* buffer, int count, sqlite3_int64 offset) {
    const Open& opened = openOf(file);
    if (opened.disk->health_ == Health::off) return SQLITE_IOERR_READ;
    const std::string& data = opened.file->data;
    const auto start = std::min(static_cast<std::size_t>(offset), data.size());
    const auto length = std::min(static_cast<std::size_t>(count), data.size() - start);
    std::memcpy(buffer, data.data() + start, length);
    if (length == static_cast<std::size_t>(count)) return SQLITE_OK;
    std::memset(static_cast<char*>(buffer) + length, 0, static_cast<std::size_t>(count) - length);
    return SQLITE_IOERR_SHORT_READ;
  }
  static int write(sqlite3_file* file, const void* buffer, int count, sqlite3_int64 offset) {
    Open& opened = openOf(file);
    if (!opened.disk->mayChange(true)) {
      return opened.disk->health_ == Health::full ? SQLITE_FULL : SQLITE_IOERR_WRITE;
    }
    std::string& data = opened.file->data;
    const auto end = static_cast<std::size_t>(offset) + static_cast<std::size_t>(count);
    if (data.size() < end) data.resize(end);
    std::memcpy(data.data() + offset, buffer, static_cast<std::size_t>(count));
    return SQLITE_OK;
  }
  static int truncate(sqlite3_file* file, sqlite3_int64 size) {
    Open& opened = openOf(file);
    if (!opened.disk->mayChange(false)) return SQLITE_IOERR_TRUNCATE;
    opened.file->data.resize(static_cast<std::size_t>(size));
    return SQLITE_OK;
  }
  static int sync(sqlite3_file* file, int) {
    Open& opened = openOf(file);
    if (!opened.disk->mayChange(false)) return SQLITE_IOERR_FSYNC;
    opened.file->durable = opened.file->data;
    return SQLITE_OK;
  }
  static int fileSize(sqlite3_file* file, sqlite3_int64* size) {
    *size = static_cast<sqlite3_int64>(openOf(file).file->data.size());
    return SQLITE_OK;
  }
  // The simulated process has one connection at a time: only another process keeps it out.
  static int lock(sqlite3_file* file, int level) {
    return level > highestLevel(openOf(file)) ? SQLITE_BUSY : SQLITE_OK;
  }
  static int highestLevel(const Open& opened) {
    const Disk& disk = *opened.disk;
    if (!disk.isLockSeen_ || opened.file != disk.locked_) return SQLITE_LOCK_EXCLUSIVE;
    switch (disk.lock_) {
      case ForeignLock::none:
        return SQLITE_LOCK_EXCLUSIVE;
      case ForeignLock::reads:
        return SQLITE_LOCK_EXCLUSIVE - 1;
      case ForeignLock::writes:
        return SQLITE_LOCK_SHARED;
      case ForeignLock::excludes:
        return SQLITE_LOCK_NONE;
    }
    return SQLITE_LOCK_EXCLUSIVE;
  }
  static int unlock(sqlite3_file*, int) { return SQLITE_OK; }
  static int isReserved(sqlite3_file* file, int* result) {
    *result = highestLevel(openOf(file)) < SQLITE_LOCK_RESERVED ? 1 : 0;
    return SQLITE_OK;
  }
  static int control(sqlite3_file* file, int operation, void* result) {
    const Open& opened = openOf(file);
    const Disk& disk = *opened.disk;
    if (operation != SQLITE_FCNTL_HAS_MOVED || !opened.name) return SQLITE_NOTFOUND;
    if (disk.health_ == Health::off) return SQLITE_IOERR;
    const bool isSame = disk.file(opened.name) == opened.file && disk.restarts_ == opened.restarts;
    *static_cast<int*>(result) = isSame ? 0 : 1;
    return SQLITE_OK;
  }
  static int sectorSize(sqlite3_file*) { return static_cast<int>(kSectorSize); }
  static int characteristics(sqlite3_file*) { return 0; }

  static const sqlite3_io_methods& methods() {
    static const sqlite3_io_methods table = [] {
      sqlite3_io_methods all{};
      all.iVersion = 1;
      all.xClose = close;
      all.xRead = read;
      all.xWrite = write;
      all.xTruncate = truncate;
      all.xSync = sync;
      all.xFileSize = fileSize;
      all.xLock = lock;
      all.xUnlock = unlock;
      all.xCheckReservedLock = isReserved;
      all.xFileControl = control;
      all.xSectorSize = sectorSize;
      all.xDeviceCharacteristics = characteristics;
      return all;
    }();
    return table;
  }

  static int remove(sqlite3_vfs* vfs, const char* name, int) {
    Disk& disk = diskOf(vfs);
    if (disk.files_.count(name) == 0) return SQLITE_IOERR_DELETE_NOENT;
    if (!disk.mayChange(false)) return SQLITE_IOERR_DELETE;
    disk.files_.erase(name);
    return SQLITE_OK;
  }
  static int access(sqlite3_vfs* vfs, const char* name, int, int* result) {
    *result = diskOf(vfs).files_.count(name) > 0 ? 1 : 0;
    return SQLITE_OK;
  }
  static int fullPathname(sqlite3_vfs*, const char* name, int size, char* result) {
    sqlite3_snprintf(size, result, "%s", name);
    return SQLITE_OK;
  }
  static int randomness(sqlite3_vfs*, int size, char* result) {
    std::memset(result, 1, static_cast<std::size_t>(size));  // the same in every world
    return size;
  }
  static int sleep(sqlite3_vfs* vfs, int microseconds) {
    Disk& disk = diskOf(vfs);
    if (disk.isLocked() && --disk.polls_ <= 0) disk.unlock();
    return microseconds;
  }
  static int currentTime(sqlite3_vfs*, double* julianDay) {
    *julianDay = 2460000.0;
    return SQLITE_OK;
  }
  static int lastError(sqlite3_vfs*, int, char*) { return 0; }
};

Disk::Disk() : previous_(sqlite3_vfs_find(nullptr)) {
  vfs_.iVersion = 1;
  vfs_.szOsFile = sizeof(Vfs::Open);
  vfs_.mxPathname = 512;
  vfs_.zName = "kifo-simulated-disk";
  vfs_.pAppData = this;
  vfs_.xOpen = Vfs::open;
  vfs_.xDelete = Vfs::remove;
  vfs_.xAccess = Vfs::access;
  vfs_.xFullPathname = Vfs::fullPathname;
  vfs_.xRandomness = Vfs::randomness;
  vfs_.xSleep = Vfs::sleep;
  vfs_.xCurrentTime = Vfs::currentTime;
  vfs_.xGetLastError = Vfs::lastError;
  sqlite3_vfs_register(&vfs_, 1);
  sqlite3_randomness(0, nullptr);  // SQLite's own generator begins anew: a replay is exact
}

Disk::~Disk() {
  sqlite3_vfs_unregister(&vfs_);
  sqlite3_vfs_register(previous_, 1);
  sqlite3_randomness(0, nullptr);
}

bool Disk::mayChange(bool growsFile) {
  ++version_;
  if (changesUntilNext_ > 0 && --changesUntilNext_ == 0) health_ = nextHealth_;
  return health_ == Health::good || (health_ == Health::full && !growsFile);
}

bool Disk::exists(const std::string& path) {
  return files_.count(path) > 0;
}

bool Disk::makePrivate(const std::string& path) {
  if (exists(path)) return true;
  if (!mayChange(true)) return false;
  files_[path] = std::make_shared<File>();
  return true;
}

std::optional<Error> Disk::move(const std::string& from, const std::string& to, bool replaces) {
  const auto found = files_.find(from);
  if (found == files_.end()) return fileError(ENOENT);
  if (!replaces && exists(to)) return fileError(EEXIST);
  if (!mayChange(false)) return fileError(EIO);
  files_[to] = found->second;
  files_.erase(from);
  return std::nullopt;
}

std::optional<Error> Disk::remove(const std::string& path) {
  if (!exists(path)) return fileError(ENOENT);
  if (!mayChange(false)) return fileError(EIO);
  files_.erase(path);
  return std::nullopt;
}

void Disk::setHealth(Health health) {
  health_ = health;
  changesUntilNext_ = 0;
}

void Disk::setHealthLater(Health next, int operations) {
  nextHealth_ = next;
  changesUntilNext_ = std::max(operations, 1);
}

void Disk::lock(const std::string& path, ForeignLock lock, int polls) {
  locked_ = file(path);
  lock_ = locked_ ? lock : ForeignLock::none;
  polls_ = polls;
  isLockLong_ = polls >= kPollsOfTheSdk;
}

bool Disk::isInOrder() const {
  return health_ == Health::good && !(isLocked() && isLockLong_);
}

void Disk::restart(std::uint32_t seed) {
  if (health_ == Health::off) {
    unlock();
    std::mt19937 random(seed);
    for (const auto& [name, file] : files_) {
      if (file->data != file->durable) file->data = file->durable = torn(*file, random);
    }
  }
  ++version_;
  ++restarts_;
  setHealth(Health::good);
}

std::shared_ptr<const Disk::File> Disk::file(const std::string& path) const {
  const auto found = files_.find(path);
  return found == files_.end() ? nullptr : found->second;
}

}  // namespace kifo::testing::simulation
