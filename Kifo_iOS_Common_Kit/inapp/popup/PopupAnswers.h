#pragma once

#include "Kifo_iOS_Common_Kit/inapp/popup/PopupState.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

/// A popup's answers: what is told to the host and to the reporter when the user presses something.
/// The host's callbacks may delete the popup, so nothing of `state` is touched once they have run;
/// the caller looks whether it still exists.
///
/// **Threading:** UI thread only.
namespace kifo {

/// Runs the host's `action` for `button`. The popup then closes.
KIFO_SHARED void pressButton(PopupState& state, PopupRequest::ButtonCallback action,
                             const PopupState::Button& button);

/// What becomes of a popup whose submit button was pressed.
struct SubmitOutcome {
  bool closes = false;      ///< Otherwise it stays and may be answered again.
  bool keepsTimer = false;  ///< Kept for compatibility: an open-ended answer leaves the carousel
                            ///< running.
};

/// Runs the host's callback for the submit button and reports the answers. Needs an item.
KIFO_SHARED SubmitOutcome submitAnswers(const PopupRequest& request, PopupState& state);

/// Reports that the popup was closed without an answer.
KIFO_SHARED void reportClose(const PopupRequest& request, const PopupState& state);

}  // namespace kifo
