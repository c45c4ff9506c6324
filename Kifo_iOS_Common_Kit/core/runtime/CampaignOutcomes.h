#pragma once

#include <map>
#include <string>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {

/// What last became of each campaign, for tools that attach after it happened.
///
/// **Threading:** thread-safe.
class CampaignOutcomes {
 public:
  /// `outcome` is such as "refused: no shows left". Of more than a thousand campaigns those with
  /// the first uuids in the alphabet are forgotten.
  void set(const std::string& uuid, std::string outcome) {
    const MutexLock lock(mutex_);
    outcomes_.insert_or_assign(uuid, std::move(outcome));
    if (outcomes_.size() > kMost) outcomes_.erase(outcomes_.begin());
  }

  /// "" for a campaign of which nothing has become yet.
  [[nodiscard]] std::string of(const std::string& uuid) const {
    const MutexLock lock(mutex_);
    const auto found = outcomes_.find(uuid);
    return found == outcomes_.end() ? "" : found->second;
  }

 private:
  static constexpr std::size_t kMost = 1000;

  mutable Mutex mutex_;
  std::map<std::string, std::string> outcomes_ KIFO_GUARDED_BY(mutex_);
};

}  // namespace kifo
