#include "Kifo_iOS_Common_Kit/network/RequestLedger.h"

#include <utility>

namespace kifo {

RequestLedger& RequestLedger::shared() {
  static RequestLedger& only = *new RequestLedger;
  return only;
}

void RequestLedger::begin(const std::string& requestId) {
  InFlight request;
  if (!requestId.empty()) request.try_emplace(requestId);
  const std::lock_guard lock(mutex_);
  ++underWay_;
  inFlight_.merge(request);
}

void RequestLedger::settle(const std::string& requestId, bool delivered) {
  InFlight::node_type request;
  {
    const std::lock_guard lock(mutex_);
    if (underWay_ > 0) --underWay_;
    request = inFlight_.extract(requestId);
  }
  if (request) {
    for (const auto& callback : request.mapped()) callback(delivered);
  }
  settled_.notify_all();
}

bool RequestLedger::whenSettled(const std::string& requestId, Callback callback) {
  const std::lock_guard lock(mutex_);
  const auto found = inFlight_.find(requestId);
  if (found == inFlight_.end()) return false;
  found->second.push_back(std::move(callback));
  return true;
}

void RequestLedger::noteDelivered(const std::string& requestId) {
  const std::lock_guard lock(deliveredMutex_);
  delivered_.insert(requestId);
}

void RequestLedger::forgetDelivered(const std::string& requestId) {
  const std::lock_guard lock(deliveredMutex_);
  delivered_.erase(requestId);
}

bool RequestLedger::isDelivered(const std::string& requestId) const {
  const std::lock_guard lock(deliveredMutex_);
  return delivered_.contains(requestId);
}

std::size_t RequestLedger::underWay() const {
  const std::lock_guard lock(mutex_);
  return underWay_;
}

bool RequestLedger::waitUntilIdle(std::chrono::duration<double> bound) {
  std::unique_lock lock(mutex_);
  return settled_.wait_for(lock, bound, [this] { return underWay_ == 0; });
}

void RequestLedger::reset() {
  const std::scoped_lock lock(mutex_, deliveredMutex_);
  underWay_ = 0;
  inFlight_.clear();
  delivered_.clear();
}

}  // namespace kifo
