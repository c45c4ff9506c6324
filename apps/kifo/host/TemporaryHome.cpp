#include "apps/kifo/host/TemporaryHome.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace kifo::tool {

TemporaryHome::TemporaryHome()
    : path_((std::filesystem::temp_directory_path() / "kifo-host-XXXXXX").string()) {
  if (mkdtemp(path_.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), "no home can be made in " + path_);
  }
}

TemporaryHome::~TemporaryHome() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

}  // namespace kifo::tool
