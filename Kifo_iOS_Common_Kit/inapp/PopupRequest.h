#pragma once

#include <functional>
#include <memory>

#include "Kifo_iOS_Common_Kit/inapp/InAppReporter.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupPreferences.h"

namespace kifo {

/// A popup on its way to the screen: what it shows, and what its window calls back.
///
/// **Threading:** the callbacks are called on the UI thread.
struct PopupRequest {
  using ButtonCallback = std::function<void(std::shared_ptr<AppCommunicationItemButton>)>;

  PopupPreferences preferences;
  /// The popup's turn has come, and nothing keeps the presenter from showing it: checks the
  /// campaign, spends one of its shows and reports the opening. False: it is not to be shown.
  std::function<bool()> open;
  ButtonCallback actionItem;        ///< A button of a plain popup was pressed.
  ButtonCallback actionBodyItem;    ///< The popup's body was touched and the item has an action.
  ButtonCallback submitButtonItem;  ///< Submit was pressed.
  std::shared_ptr<InAppReporter> reporter;  ///< Takes the answers and the close.
};

}  // namespace kifo
