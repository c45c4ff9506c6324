#include "testing/server/RequestLog.h"

#include <algorithm>
#include <iterator>

namespace kifo::testing {

RequestLog::Request RequestLog::add(ReceivedRequest request) {
  const std::lock_guard lock(mutex_);
  request.number = requests_.size() + 1;
  requests_.push_back(std::make_shared<const ReceivedRequest>(std::move(request)));
  arrived_.notify_all();
  return requests_.back();
}

void RequestLog::clear() {
  const std::lock_guard lock(mutex_);
  requests_.clear();
}

RequestLog::Requests RequestLog::all() const {
  const std::lock_guard lock(mutex_);
  return requests_;
}

RequestLog::Requests RequestLog::on(std::string_view path) const {
  const std::lock_guard lock(mutex_);
  Requests result;
  std::copy_if(requests_.begin(), requests_.end(), std::back_inserter(result),
               [&](const Request& request) { return request->path == path; });
  return result;
}

std::size_t RequestLog::count() const {
  const std::lock_guard lock(mutex_);
  return requests_.size();
}

bool RequestLog::waitFor(std::size_t count, Bound bound) const {
  return waitFor([=](const Requests& requests) { return requests.size() >= count; }, bound);
}

bool RequestLog::waitFor(const std::function<bool(const Requests&)>& condition, Bound bound) const {
  std::unique_lock lock(mutex_);
  return arrived_.wait_for(lock, bound, [&] { return condition(requests_); });
}

}  // namespace kifo::testing
