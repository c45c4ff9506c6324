#pragma once

#include <memory>

#include "Kifo_iOS_Common_Kit/ports/StoreFiles.h"

namespace kifo {

/// The store's files on the disk.
class DiskStoreFiles final : public StoreFiles {
 public:
  /// `files`; those of the disk when it is null.
  static std::shared_ptr<StoreFiles> unlessGiven(std::shared_ptr<StoreFiles> files);

  bool exists(const std::string& path) override;
  void makeDirectories(const std::string& path) override;
  bool makePrivate(const std::string& path) override;
  std::optional<Error> move(const std::string& from, const std::string& to, bool replaces) override;
  std::optional<Error> remove(const std::string& path) override;
};

}  // namespace kifo
