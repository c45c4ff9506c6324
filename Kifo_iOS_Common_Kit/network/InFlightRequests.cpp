#include "Kifo_iOS_Common_Kit/network/InFlightRequests.h"

#include <utility>

namespace kifo {

using State = OutgoingRequest::State;

void InFlightRequests::begin(const std::shared_ptr<OutgoingRequest>& request) {
  Requests entry;
  if (!request->id.empty()) entry.try_emplace(request->id, request);
  const MutexLock lock(mutex_);
  ++underWay_;
  request->state = State::underWay;
  requests_.merge(entry);
}

void InFlightRequests::setAnswered(OutgoingRequest& request) {
  const MutexLock lock(mutex_);
  request.state = State::answered;
}

bool InFlightRequests::settle(OutgoingRequest& request) {
  Requests::node_type entry;  // destroyed outside the lock
  bool passWaits = false;
  {
    const MutexLock lock(mutex_);
    if (underWay_ > 0) --underWay_;
    request.state = request.state == State::answered ? State::delivered : State::failed;
    const bool isKept = request.state == State::delivered && request.hasRow;
    if (!isKept) entry = requests_.extract(request.id);
    passWaits = std::exchange(request.passWaits, false);
  }
  settled_.notifyAll();
  return passWaits;
}

bool InFlightRequests::makePassWait(const std::string& id) {
  const MutexLock lock(mutex_);
  const auto found = requests_.find(id);
  if (found == requests_.end() || found->second->state == State::delivered) return false;
  found->second->passWaits = true;
  return true;
}

bool InFlightRequests::isDelivered(const std::string& id) const {
  const MutexLock lock(mutex_);
  const auto found = requests_.find(id);
  return found != requests_.end() && found->second->state == State::delivered;
}

void InFlightRequests::forgetDelivered(const std::string& id) {
  Requests::node_type entry;
  const MutexLock lock(mutex_);
  entry = requests_.extract(id);
}

std::size_t InFlightRequests::count() const {
  const MutexLock lock(mutex_);
  return underWay_;
}

bool InFlightRequests::waitUntilIdle(std::chrono::duration<double> bound) {
  const MutexLock lock(mutex_);
  return settled_.waitFor(mutex_, bound, [this]() KIFO_REQUIRES(mutex_) { return underWay_ == 0; });
}

void InFlightRequests::clear() {
  Requests requests;
  const MutexLock lock(mutex_);
  underWay_ = 0;
  requests_.swap(requests);
}

}  // namespace kifo
