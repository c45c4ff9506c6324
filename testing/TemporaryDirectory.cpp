#include "testing/TemporaryDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace kifo::testing {

TemporaryDirectory::TemporaryDirectory()
    : TemporaryDirectory(std::filesystem::temp_directory_path().string()) {}

TemporaryDirectory::TemporaryDirectory(const std::string& parent) {
  std::string path = parent + "/kifo-XXXXXX";
  if (!mkdtemp(path.data())) {
    throw std::system_error(errno, std::generic_category(), "no temporary directory");
  }
  path_ = path;
}

TemporaryDirectory::~TemporaryDirectory() {
  std::error_code ignored;
  // A test may have made folders unwritable.
  std::filesystem::permissions(path_, std::filesystem::perms::owner_all, ignored);
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace kifo::testing
