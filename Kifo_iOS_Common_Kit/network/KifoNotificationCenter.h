#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "Kifo_iOS_Common_Kit/network/KifoNotification.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Delivers posted notifications to the observers of their name.
///
///     auto token = center.addObserver("kifoReachabilityChanged", [](const auto& note) { … });
///     center.removeObserver(token);
///
/// **Threading:** thread-safe. Observers run on the posting thread, in the order in which they were
/// added, with no lock held: they may add, remove and post. After `removeObserver` returns the
/// observer is not begun any more; one that is running on another thread finishes.
/// **Errors:** what an observer throws is printed and dropped; the next one runs.
class KIFO_EXPORT KifoNotificationCenter {
 public:
  static constexpr std::string_view LOG_TAG = "Kifo KifoNotificationCenter:";

  using Observer = std::function<void(const KifoNotification&)>;
  using Token = std::uint64_t;  ///< 0 is never an observer.

  /// The center of the process. Never destroyed.
  static KifoNotificationCenter& defaultCenter();

  /// Has `observer` called for every notification of that name, whatever its object.
  Token addObserver(std::string name, Observer observer);
  /// An unknown token is ignored.
  void removeObserver(Token token);
  void post(const KifoNotification& note);

 private:
  struct Entry;

  std::mutex mutex_;
  // Guarded by mutex_.
  std::vector<std::shared_ptr<Entry>> entries_;
  Token last_ = 0;
};

}  // namespace kifo
