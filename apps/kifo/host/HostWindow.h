#pragma once

#include <functional>
#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/events/KifoViewController.h"
#include "Kifo_iOS_Common_Kit/ports/PopupPresenter.h"
#include "apps/kifo/Toolkit.h"
#include "apps/kifo/host/Output.h"

namespace kifo::tool {

/// What the user does with the popup that is shown.
struct UserAction {
  enum class Kind { close, button, body, select, type, slide, submit };

  Kind kind = Kind::close;
  std::string text;    ///< The id of what is pressed or selected; what is typed.
  double score = 0.0;  ///< What is slid to.
};

/// The scripted host's window: its screens, and the popups over them.
///
/// **Threading:** the script's thread.
class HostWindow {
 public:
  virtual ~HostWindow() = default;

  [[nodiscard]] virtual std::shared_ptr<PopupPresenter> presenter() const = 0;

  /// Makes a screen of the window with that class name.
  [[nodiscard]] virtual std::shared_ptr<KifoViewController> makeScreen(
      const std::string& className) = 0;
  virtual void appear(KifoViewController& screen) = 0;
  virtual void disappear(KifoViewController& screen) = 0;

  /// **Errors:** throws `std::runtime_error` when there is nothing to do that with.
  virtual void perform(const UserAction& action) = 0;

  /// Whether no popup is opening or closing. One that waits behind one that is shown waits for the
  /// user, and counts as settled.
  [[nodiscard]] virtual bool isSettled() = 0;
};

/// Makes a window of that toolkit, runs `script` with it and returns what that returns. Popups are
/// reported as `{"popup": "shown"}` and `{"popup": "closed"}`.
///
/// **Threading:** to be called on the program's first thread, on which a toolkit's windows live;
/// `script` runs on another one where there is a toolkit.
int runInWindow(const std::shared_ptr<Output>& output, Toolkit toolkit,
                const std::function<int(HostWindow&)>& script);

}  // namespace kifo::tool
