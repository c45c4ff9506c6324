#pragma once

#include <functional>

namespace kifo {

/// When an alert closes by itself, and what runs then.
///
///     alert->showInfo("Saved", "", "OK", kifo::KifoTimeoutConfiguration{5, [] { next(); }});
///
/// **Threading:** a plain value; `action` runs on the UI thread.
struct KifoTimeoutConfiguration {
  double value = 0;              ///< Seconds. Zero, less or not a number: no time-out.
  std::function<void()> action;  ///< Runs once when the time is up, just before the alert hides.
  /// Stops the clock while the pointer rests on the card, and while the user has moved the keyboard
  /// focus inside it. The focus that the alert takes on opening does not count.
  bool pausesWhileInside = false;
};

}  // namespace kifo
