#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <string_view>

#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// The popups that wait for one window, in the order in which they were due. A presenter keeps one
/// for each window and takes the next popup whenever none is shown there:
///
///     const auto queue = queue_;  // the host's gate may close the window, and destroy this
///     if (const auto request = queue->takeNext(canShow)) show(request);
///
/// **Threading:** UI thread only.
class KIFO_SHARED PopupQueue {
 public:
  using Request = std::shared_ptr<const PopupRequest>;

  /// `tag` starts the console lines that say why a popup is not shown.
  explicit PopupQueue(std::string_view tag) : tag_(tag) {}

  void enqueue(const Request& request);

  /// The next popup to show, opened; null when there is none. `canShow` says whether a popup could
  /// be shown now: the window is there and shows none. It is asked again after the host's gate. A
  /// call from inside the host's gate gives null: the call around it goes on with what was
  /// enqueued.
  Request takeNext(const std::function<bool()>& canShow);

  /// What waits; the queue forgets it.
  std::deque<Request> takeWaiting();

 private:
  Request openFirst(const std::function<bool()>& canShow);
  bool dropsForItsScreen(const PopupRequest& request) const;

  const std::string_view tag_;
  std::deque<Request> waiting_;
  bool isAsking_ = false;
};

/// Whether the popup was given a screen that is destroyed by now.
KIFO_SHARED bool isScreenGone(const PopupRequest& request);

}  // namespace kifo
