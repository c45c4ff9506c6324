#include "testing/FakeHttpTransport.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

namespace kifo::testing {
namespace {

HttpAnswer cancelled() {
  return {Error{"http", 0, "cancelled"}, 0, {}};
}

}  // namespace

FakeHttpTransport::FakeHttpTransport(std::shared_ptr<SerialQueue> queue)
    : queue_(std::move(queue)) {}

FakeHttpTransport::~FakeHttpTransport() {
  stop();
}

void FakeHttpTransport::send(Make make, Done done) {
  HttpRequest request = make();
  std::unique_lock lock(mutex_);
  if (stopped_) {
    lock.unlock();
    done(cancelled());
    return;
  }
  const std::size_t index = entries_.size();
  entries_.push_back({request, std::move(done)});
  const Handler handler = handler_;
  lock.unlock();
  if (!handler) return;
  if (auto scripted = handler(request)) {
    queue_->post([this, alive = std::weak_ptr(alive_), index, answered = std::move(*scripted)] {
      if (alive.lock()) answer(index, answered);
    });
  }
}

void FakeHttpTransport::networkChanged() {
  const std::lock_guard lock(mutex_);
  ++networkChanges_;
}

void FakeHttpTransport::stop() {
  {
    const std::lock_guard lock(mutex_);
    stopped_ = true;
  }
  cancelOpen();
}

void FakeHttpTransport::cancelOpen() {
  for (const std::size_t index : open()) answer(index, cancelled());
}

void FakeHttpTransport::setHandler(Handler handler) {
  const std::lock_guard lock(mutex_);
  handler_.swap(handler);
}

std::vector<HttpRequest> FakeHttpTransport::requests() const {
  const std::lock_guard lock(mutex_);
  std::vector<HttpRequest> all;
  all.reserve(entries_.size());
  for (const Entry& entry : entries_) all.push_back(entry.request);
  return all;
}

std::vector<Value> FakeHttpTransport::events(const std::string& name) const {
  std::vector<Value> found;
  for (const auto& request : requests()) {
    auto body = valueFromJson(request.body.value_or("")).value_or(Value());
    if (body["name"] == name) found.push_back(std::move(body));
  }
  return found;
}

std::size_t FakeHttpTransport::count() const {
  const std::lock_guard lock(mutex_);
  return entries_.size();
}

std::vector<std::size_t> FakeHttpTransport::open() const {
  const std::lock_guard lock(mutex_);
  std::vector<std::size_t> places;
  for (std::size_t index = 0; index < entries_.size(); ++index) {
    if (entries_[index].done) places.push_back(index);
  }
  return places;
}

bool FakeHttpTransport::answer(std::size_t index, HttpAnswer answer) {
  Done done;
  {
    const std::lock_guard lock(mutex_);
    if (index < entries_.size()) done = std::exchange(entries_[index].done, nullptr);
  }
  if (done) done(std::move(answer));
  return done != nullptr;
}

bool FakeHttpTransport::answer(std::size_t index, int status, std::string body) {
  return answer(index, HttpAnswer{std::nullopt, status, std::move(body)});
}

bool FakeHttpTransport::fail(std::size_t index, int code, std::string message) {
  return answer(index, HttpAnswer{Error{"http", code, std::move(message)}, 0, {}});
}

bool FakeHttpTransport::answerNext(int status, std::string body) {
  const auto places = open();
  return !places.empty() && answer(places.front(), status, std::move(body));
}

bool FakeHttpTransport::failNext() {
  const auto places = open();
  return !places.empty() && fail(places.front());
}

int FakeHttpTransport::networkChanges() const {
  const std::lock_guard lock(mutex_);
  return networkChanges_;
}

}  // namespace kifo::testing
