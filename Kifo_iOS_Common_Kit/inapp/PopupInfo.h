#pragma once

#include <functional>
#include <string>

namespace kifo {

/// What a host's gate answers for a popup that is due.
enum class PopupDecision {
  show,   ///< Now.
  later,  ///< Not now: the SDK keeps the popup and asks again.
  never,  ///< This showing is dropped; the campaign's next one is asked for anew.
};

/// A popup that is due, as the host's gate is told of it. A text that the campaign leaves out is
/// "".
struct PopupInfo {
  std::string campaign;  ///< The campaign's uuid.
  std::string name;      ///< The campaign's name.
  std::string type;      ///< "POPUP", "SURVEY", "EMOJI", "SCORE" or "OPEN_ENDED".
  std::string screen;    ///< The class name of the screen that it covers.
  std::string title;
  std::string text;
  std::string question;
};

/// Decides whether a popup may show. See `Kifo::setPopupGate`.
using PopupDecider = std::function<PopupDecision(const PopupInfo&)>;

}  // namespace kifo
