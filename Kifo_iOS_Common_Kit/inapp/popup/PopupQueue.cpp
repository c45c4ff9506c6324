#include "Kifo_iOS_Common_Kit/inapp/popup/PopupQueue.h"

#include <algorithm>
#include <utility>

#include "Kifo_iOS_Common_Kit/inapp/PopupRules.h"

namespace kifo {

bool isScreenGone(const PopupRequest& request) {
  const auto& screen = request.preferences.controller;
  const std::weak_ptr<ViewController> never;
  return screen.expired() && (screen.owner_before(never) || never.owner_before(screen));
}

void PopupQueue::enqueue(const Request& request) {
  const auto isBefore = [](const Request& one, const Request& other) {
    return one->order < other->order;
  };
  waiting_.insert(std::ranges::upper_bound(waiting_, request, isBefore), request);
}

PopupQueue::Request PopupQueue::takeNext(const std::function<bool()>& canShow) {
  if (isAsking_) return nullptr;
  isAsking_ = true;
  Request next;
  while (!next && !waiting_.empty() && canShow()) next = openFirst(canShow);
  isAsking_ = false;
  return next;
}

PopupQueue::Request PopupQueue::openFirst(const std::function<bool()>& canShow) {
  Request request = std::move(waiting_.front());
  waiting_.pop_front();
  if (dropsForItsScreen(*request) || (request->mayShow && !request->mayShow())) return nullptr;
  if (!canShow()) {
    enqueue(request);
    return nullptr;
  }
  if (dropsForItsScreen(*request) || (request->open && !request->open())) return nullptr;
  return request;
}

bool PopupQueue::dropsForItsScreen(const PopupRequest& request) const {
  if (!isScreenGone(request)) return false;
  rules::sayNotShown(tag_, request, "its screen is gone");
  return true;
}

std::deque<PopupQueue::Request> PopupQueue::takeWaiting() {
  return std::exchange(waiting_, {});
}

}  // namespace kifo
