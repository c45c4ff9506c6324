#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "Kifo_iOS_Common_Kit/inapp/InAppReporter.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupPreferences.h"

namespace kifo {

/// A popup that is to be shown: what it shows, and what its window calls back.
///
/// **Threading:** the callbacks are called on the UI thread.
struct PopupRequest {
  using ButtonCallback = std::function<void(std::shared_ptr<AppCommunicationItemButton>)>;

  PopupPreferences preferences;
  /// Grows with the order in which popups became due. One that the host's gate held back is
  /// presented again later and belongs before those that became due after it.
  std::uint64_t order = 0;
  /// Checks the campaign and asks the host's gate, which may close the window or the screen. False:
  /// the presenter drops the popup; the SDK presents it again by itself if it is only held back.
  std::function<bool()> mayShow;
  /// To be called right before the popup is shown: calls `mayShow`, unless the presenter has just
  /// done so, spends one of the campaign's shows and reports the opening. False: it is not to be
  /// shown.
  std::function<bool()> open;
  ButtonCallback actionItem;        ///< A button of a plain popup was pressed.
  ButtonCallback actionBodyItem;    ///< The popup's body was touched and the item has an action.
  ButtonCallback submitButtonItem;  ///< Submit was pressed.
  std::shared_ptr<InAppReporter> reporter;  ///< Takes the answers and the close.
};

}  // namespace kifo
