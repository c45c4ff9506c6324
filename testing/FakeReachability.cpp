#include "testing/FakeReachability.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <utility>

namespace kifo::testing {

struct FakeReachability::State {
  struct Watcher {
    ReachabilitySource::Changed changed;
    ReachabilitySource::Describe describe;
    std::shared_ptr<SerialQueue> queue;

    [[nodiscard]] bool listens() const { return changed && queue; }
  };

  mutable std::mutex mutex;
  // Guarded by mutex.
  std::uint32_t flags = 0;
  int createError = 0;
  int flagsError = 0;
  int callbackError = 0;
  int queueError = 0;
  std::vector<Address> addresses;
  std::map<std::uint64_t, Watcher> watchers;
  std::uint64_t last = 0;

  std::vector<std::pair<std::uint64_t, Watcher>> listeners() const {
    const std::lock_guard lock(mutex);
    std::vector<std::pair<std::uint64_t, Watcher>> all;
    std::ranges::copy_if(watchers, std::back_inserter(all),
                         [](const auto& each) { return each.second.listens(); });
    return all;
  }
  /// The callback as it is when the queue gets to it: one that was removed meanwhile is not called.
  ReachabilitySource::Changed callback(std::uint64_t id) const {
    const std::lock_guard lock(mutex);
    const auto found = watchers.find(id);
    return found != watchers.end() && found->second.listens() ? found->second.changed : nullptr;
  }
};

class FakeReachability::Source final : public ReachabilitySource {
 public:
  Source(std::shared_ptr<State> state, std::uint64_t id) : state_(std::move(state)), id_(id) {}
  ~Source() override {
    State::Watcher gone;
    const std::lock_guard lock(state_->mutex);
    gone = std::move(state_->watchers[id_]);
    state_->watchers.erase(id_);
  }

  int flags(std::uint32_t& flags) override {
    const std::lock_guard lock(state_->mutex);
    if (state_->flagsError == 0) flags = state_->flags;
    return state_->flagsError;
  }
  int setCallback(Changed changed, Describe describe) override {
    const std::lock_guard lock(state_->mutex);
    if (state_->callbackError != 0) return state_->callbackError;
    State::Watcher& watcher = state_->watchers[id_];
    watcher.changed.swap(changed);
    watcher.describe.swap(describe);
    return 0;
  }
  int setDispatchQueue(std::shared_ptr<SerialQueue> queue) override {
    const std::lock_guard lock(state_->mutex);
    if (state_->queueError != 0) return state_->queueError;
    state_->watchers[id_].queue.swap(queue);
    return 0;
  }

 private:
  const std::shared_ptr<State> state_;
  const std::uint64_t id_;
};

FakeReachability::FakeReachability() : state_(std::make_shared<State>()) {}

std::unique_ptr<ReachabilitySource> FakeReachability::createWithAddress(const Address& address,
                                                                        int& error) {
  const std::lock_guard lock(state_->mutex);
  state_->addresses.push_back(address);
  error = state_->createError;
  if (error != 0) return nullptr;
  state_->watchers[++state_->last] = {};
  return std::make_unique<Source>(state_, state_->last);
}

void FakeReachability::setFlags(std::uint32_t flags) {
  const std::lock_guard lock(state_->mutex);
  state_->flags = flags;
}

void FakeReachability::change(std::uint32_t flags) {
  setFlags(flags);
  for (const auto& [id, watcher] : state_->listeners()) {
    watcher.queue->post([state = state_, id = id] {
      if (const auto changed = state->callback(id)) changed();
    });
  }
}

void FakeReachability::failCreate(int code) {
  const std::lock_guard lock(state_->mutex);
  state_->createError = code;
}

void FakeReachability::failFlags(int code) {
  const std::lock_guard lock(state_->mutex);
  state_->flagsError = code;
}

void FakeReachability::failSetCallback(int code) {
  const std::lock_guard lock(state_->mutex);
  state_->callbackError = code;
}

void FakeReachability::failSetQueue(int code) {
  const std::lock_guard lock(state_->mutex);
  state_->queueError = code;
}

std::vector<ReachabilityService::Address> FakeReachability::addresses() const {
  const std::lock_guard lock(state_->mutex);
  return state_->addresses;
}

std::size_t FakeReachability::sources() const {
  const std::lock_guard lock(state_->mutex);
  return state_->watchers.size();
}

std::size_t FakeReachability::listening() const {
  return state_->listeners().size();
}

std::vector<std::string> FakeReachability::descriptions() const {
  std::vector<std::string> texts;
  for (const auto& [id, watcher] : state_->listeners()) {
    texts.push_back(watcher.describe ? watcher.describe() : std::string());
  }
  return texts;
}

}  // namespace kifo::testing
