#pragma once

#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Error.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// The files of the store apart from what is in them, which SQLite reads and writes through its
/// default VFS. Paths are absolute.
///
/// **Threading:** called on the main queue; on other threads besides, for the files that remember
/// the user's consent.
/// **Errors:** values of the domain "file".
class KIFO_EXPORT StoreFiles {
 public:
  virtual ~StoreFiles() = default;
  [[nodiscard]] virtual bool exists(const std::string& path) = 0;
  /// Makes the directory above `path`, and those above it, for this user alone.
  virtual void makeDirectories(const std::string& path) = 0;
  /// Makes a file that is missing, for this user alone, and takes one that is there away from other
  /// users. False when there is no such file afterwards, or others can read it.
  virtual bool makePrivate(const std::string& path) = 0;
  /// Moves a file; onto one that exists only when it `replaces`.
  virtual std::optional<Error> move(const std::string& from, const std::string& to,
                                    bool replaces) = 0;
  virtual std::optional<Error> remove(const std::string& path) = 0;
};

}  // namespace kifo
