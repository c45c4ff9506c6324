#pragma once

#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/core/ConsentStatus.h"
#include "Kifo_iOS_Common_Kit/ports/StoreFiles.h"

namespace kifo {

/// The user's choice as it outlives the process: empty files in the documents directory, of which
/// the names say all.
///
/// | "consent.given" | "consent.refused" | "consent.erasing" | meaning |
/// |---|---|---|---|
/// | – | – | – | unknown |
/// | yes | – | – | given |
/// | – | yes | – | refused |
/// | – | – | yes | refused, and what was kept is not erased yet |
/// | yes | – | yes | given again meanwhile; the erasing comes first |
///
/// Each change is one renaming or one making of a file, so that a process that is killed leaves one
/// of these.
///
/// **Threading:** externally synchronised.
/// **Errors:** an operation that could not be done gives false.
class ConsentFiles {
 public:
  ConsentFiles(std::shared_ptr<StoreFiles> files, const std::string& directory);

  [[nodiscard]] ConsentStatus choice() const;
  [[nodiscard]] bool isErasing() const;

  [[nodiscard]] bool give();
  /// Refuses, and says that there is something to erase.
  [[nodiscard]] bool refuse();
  [[nodiscard]] bool endErasing();

 private:
  bool replace(const std::string& from, const std::string& to);

  const std::shared_ptr<StoreFiles> files_;
  const std::string given_;
  const std::string refused_;
  const std::string erasing_;
};

}  // namespace kifo
