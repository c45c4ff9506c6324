#include "apps/kifo/host/ScriptedNotificationCentre.h"

#include <utility>

namespace kifo::tool {

ScriptedNotificationCentre::Line::Line(ScriptedNotificationCentre& centre) : centre_(centre) {
  const std::lock_guard lock(centre_.mutex_);
  centre_.isHeld_ = true;
}

ScriptedNotificationCentre::Line::~Line() {
  std::vector<std::function<void(int)>> waited;
  {
    const std::lock_guard lock(centre_.mutex_);
    centre_.isHeld_ = false;
    waited = std::exchange(centre_.waiting_, {});
  }
  for (const auto& completion : waited) completion(centre_.status);
}

void ScriptedNotificationCentre::getNotificationSettings(std::function<void(int)> completion) {
  {
    const std::lock_guard lock(mutex_);
    if (isHeld_) {
      waiting_.push_back(std::move(completion));
      return;
    }
  }
  completion(status);
}

}  // namespace kifo::tool
