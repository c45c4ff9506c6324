#pragma once

#include <memory>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

struct PopupRequest;

/// Puts a campaign's popup over the host's window.
///
/// **Threading:** `present` is called on the main queue and returns at once; the presenter
/// changes to the UI thread by itself. Over one window popups show one at a time, in the order of
/// the calls. When a popup is next and can be shown, the presenter calls the request's `open` on
/// the UI thread and shows the popup at once, unless that returns false. `open` asks the host's
/// gate, which may close the window; a presenter that must know calls `mayShow` first. What the
/// gate holds back the presenter drops: the SDK keeps it and presents it again.
/// **Ownership:** the request holds its screen weakly; one whose screen is gone is dropped.
/// **Errors:** a popup that cannot be shown is dropped, and `open` is not called: it has spent none
/// of its campaign's shows.
class KIFO_EXPORT PopupPresenter {
 public:
  virtual ~PopupPresenter() = default;

  virtual void present(std::shared_ptr<const PopupRequest> request) = 0;
};

}  // namespace kifo
