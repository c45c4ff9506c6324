#pragma once

#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "apps/kifo/host/Arguments.h"
#include "apps/kifo/host/Output.h"
#include "apps/kifo/host/ScriptedClock.h"
#include "apps/kifo/host/ScriptedNotificationCentre.h"
#include "apps/kifo/host/TimerCountingQueue.h"
#include "testing/FakeDeviceProbe.h"
#include "testing/FakePositionSource.h"
#include "testing/FakeReachability.h"

namespace kifo::tool {

/// The platform that a script controls: network, device, position, permission, stored values.
/// Queues, HTTP, the database and the clock are the system's.
///
/// **Threading:** the script's thread; the services that it sets are thread-safe.
class ScriptedPlatform {
 public:
  /// `home` is the folder of the database and the user defaults.
  ScriptedPlatform(std::string home, std::shared_ptr<Output> output, bool writesDecisions,
                   std::shared_ptr<PopupPresenter> popups);

  /// Installs the platform; again after the SDK was shut down.
  void install();

  /// Each carries out one line of the script, and returns once the SDK knows.
  void network(const nlohmann::json& value);
  void device(Arguments arguments);
  void location(Arguments arguments);
  void defaults(const EventParameters& values);
  void permission(std::int64_t status) { notifications_->status = static_cast<int>(status); }

  /// Whether a timer of the SDK is due within a second, such as the one before a popup.
  [[nodiscard]] bool hasTimers() const { return mainQueue_->hasTimers(); }

  /// A queue for delayed work of the script itself, which does not count as the SDK's.
  [[nodiscard]] const std::shared_ptr<SerialQueue>& timers() const { return timers_; }

  [[nodiscard]] ScriptedNotificationCentre& notifications() { return *notifications_; }

 private:
  const std::string home_;
  const std::shared_ptr<Output> output_;
  const bool writesDecisions_;
  const std::shared_ptr<PopupPresenter> popups_;
  const std::shared_ptr<testing::FakeReachability> reachability_;
  const std::shared_ptr<testing::FakeDeviceProbe> device_;
  const std::shared_ptr<testing::FakePositionSource> position_;
  const std::shared_ptr<ScriptedNotificationCentre> notifications_;
  std::shared_ptr<ScriptedClock> clock_;
  std::shared_ptr<TimerCountingQueue> mainQueue_;
  std::shared_ptr<SerialQueue> timers_;
};

}  // namespace kifo::tool
