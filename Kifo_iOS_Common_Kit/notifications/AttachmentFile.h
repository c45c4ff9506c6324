#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// The file "image.jpg", alone in a fresh directory under the platform's temporary directory. It
/// is removed, with its directory, when this object is destroyed. What a process that crashed did
/// not remove is removed when the next one starts.
///
/// **Threading:** thread-safe.
class AttachmentFile {
 public:
  static constexpr auto NAME = "image.jpg";

  /// Writes `bytes`, unchanged. Nothing is left when that fails.
  /// **Errors:** throws `std::exception`.
  static std::shared_ptr<const AttachmentFile> write(std::string_view bytes);

  /// Removes the files of processes that are no more from `temporaryDirectory`; empty names the
  /// system's. Reads the directory.
  KIFO_SHARED static void removeLeftovers(const std::string& temporaryDirectory);

  /// Removes this process's files and those of processes that are no more, also while contents
  /// refer to them. False when something is left.
  static bool removeAll();

  ~AttachmentFile();
  AttachmentFile(const AttachmentFile&) = delete;
  AttachmentFile& operator=(const AttachmentFile&) = delete;

  [[nodiscard]] std::string path() const { return directory_ + "/" + NAME; }

 private:
  explicit AttachmentFile(std::string directory);

  const std::string directory_;
};

}  // namespace kifo
