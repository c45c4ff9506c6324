#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <string>

namespace kifo::testing {

/// The source of the in-app answer: a text, a JSON file, or a folder of JSON files. Files are
/// read again when they change, so that an author sees the next page entry bring the new campaign.
///
/// A folder's answer joins its "*.json" files in the order of their names: the lists "model"
/// and "blockedEvents" are joined, of "configuration" the last one counts.
///
/// **Threading:** thread-safe. **Errors:** a file that cannot be read, or is no JSON while it is
/// being written, leaves the last good answer in force; `problem` says what is wrong.
class CampaignSource {
 public:
  /// A configuration with an offline queue of 1000 and no campaign.
  static const std::string& defaultAnswer();

  void serveText(std::string text);
  /// Sends the file, or the folder's sum, as the answer.
  void servePath(std::filesystem::path path);

  [[nodiscard]] std::string answer();
  /// Why the last reading failed; "" when it went well.
  [[nodiscard]] std::string problem() const;

 private:
  using Stamps =
      std::map<std::filesystem::path, std::pair<std::filesystem::file_time_type, std::uintmax_t>>;

  Stamps stamps() const;
  void reread();

  mutable std::mutex mutex_;
  // Guarded by mutex_.
  std::string answer_ = defaultAnswer();
  std::string problem_;
  std::filesystem::path path_;  // Empty: the answer is a text.
  Stamps stamps_;
};

}  // namespace kifo::testing
