#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/inapp/PopupInfo.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"

namespace kifo {

/// Lets the host hold popups back: the switch that pauses all of them, and the host's own gate,
/// which is asked for each one. What is held back waits here, in the order in which it was due, and
/// goes through the presenter again when the switch changes, a screen appears or the host says so.
///
/// **Threading:** thread-safe. The host's gate runs on the thread that calls `allows`, without a
/// lock, and may call everything here.
/// **Errors:** a gate that throws is a console line, and the popup is held back.
class PopupGate : public std::enable_shared_from_this<PopupGate> {
 public:
  using Request = std::shared_ptr<const PopupRequest>;

  void setDecider(PopupDecider decider);
  void setPaused(bool isPaused);
  [[nodiscard]] bool isPaused() const;

  /// The place of a popup that is due now, for `PopupRequest::order`.
  std::uint64_t nextOrder();

  /// Gives the popup to the presenter, or holds it back while popups are paused. Main queue only.
  void present(const Request& request);

  /// Whether the popup may show now. If not, it is held back or, after "never", to be dropped.
  bool allows(const Request& request);

  /// Whether the campaign is held back.
  [[nodiscard]] bool holds(const std::string& campaign) const;

  /// Gives what is held back to the presenter again, on the main queue. Does nothing while popups
  /// are paused, or when the host's gate itself calls it.
  void askAgain();

  /// Takes over the host's gate and switch from a gate that is to be closed.
  void takeSettings(const PopupGate& other);

  /// Forgets the host's gate and what is held back; from now on no popup may show.
  void close();

 private:
  PopupDecision decide(const PopupRequest& request);
  [[nodiscard]] std::uint64_t asks() const;
  /// `asksBefore` is what `asks` was before this was decided: if popups were to be asked for again
  /// meanwhile, this one is too.
  void hold(const Request& request, const char* reason, std::uint64_t asksBefore);
  void queueHeld();
  void presentHeld();

  mutable Mutex mutex_;
  std::shared_ptr<const PopupDecider> decider_ KIFO_GUARDED_BY(mutex_);
  std::vector<Request> held_ KIFO_GUARDED_BY(mutex_);  ///< By their order.
  std::uint64_t lastOrder_ KIFO_GUARDED_BY(mutex_) = 0;
  std::uint64_t asks_ KIFO_GUARDED_BY(mutex_) = 0;  ///< How often held popups were asked for.
  bool isAskDue_ KIFO_GUARDED_BY(mutex_) = false;   ///< `presentHeld` is queued.
  bool isPaused_ KIFO_GUARDED_BY(mutex_) = false;
  bool isClosed_ KIFO_GUARDED_BY(mutex_) = false;
};

/// Is told, as long as it lives, that a switch for popups changed: on the thread that changed it.
using PopupPauseListener = std::shared_ptr<const std::function<void()>>;
KIFO_SHARED PopupPauseListener listenForPopupPauses(std::function<void()> changed);

}  // namespace kifo
