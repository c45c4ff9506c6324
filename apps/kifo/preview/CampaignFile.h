#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunicationItem.h"

namespace kifo::tool {

/// Why a file holds no campaigns, in plain words.
class NoCampaigns : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The campaigns of a file: of a whole answer of the server, or one campaign alone.
///
/// **Threading:** a plain value. **Errors:** throws `NoCampaigns`.
struct CampaignFile {
  std::string name;    ///< The file's, without folder and suffix.
  std::string folder;  ///< Of the file; pictures are looked for beside it.
  std::vector<std::shared_ptr<AppCommunicationItem>> campaigns;

  /// "-" reads standard input.
  static CampaignFile read(const std::string& path);
  /// The campaign files that `path` stands for: itself, or those in the folder, in order.
  static std::vector<std::string> filesIn(const std::string& path);
};

}  // namespace kifo::tool
