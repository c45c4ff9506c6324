#pragma once

#include <atomic>
#include <functional>
#include <mutex>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/NotificationCentre.h"

namespace kifo::tool {

/// A notification centre whose permission a script sets. It answers as a system's does, a moment
/// later: what a line of the script asks is answered when the line has been carried out, so that an
/// event reports the permission as it was known before it; what the SDK asks in between is answered
/// at once.
///
/// **Threading:** thread-safe.
class ScriptedNotificationCentre final : public NotificationCentre {
 public:
  /// Holds the answers back as long as it exists.
  class Line {
   public:
    explicit Line(ScriptedNotificationCentre& centre);
    ~Line();
    Line(const Line&) = delete;
    Line& operator=(const Line&) = delete;

   private:
    ScriptedNotificationCentre& centre_;
  };

  void getNotificationSettings(std::function<void(int authorizationStatus)> completion) override;
  void setNotificationCategories(std::vector<NotificationCategory>) override {}

  std::atomic<int> status = 0;  ///< Not determined, as on a new device.

 private:
  std::mutex mutex_;
  // Guarded by mutex_.
  bool isHeld_ = false;
  std::vector<std::function<void(int)>> waiting_;
};

}  // namespace kifo::tool
