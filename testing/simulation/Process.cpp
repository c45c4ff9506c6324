#include "testing/simulation/Process.h"

#include <algorithm>
#include <utility>

namespace kifo::testing::simulation {

std::optional<DefaultsValue> Defaults::value(const std::string& key) const {
  const auto found = values_.find(key);
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

void Defaults::setValue(const std::string& key, DefaultsValue value) {
  if (disk_.health() != Disk::Health::off) values_[key] = std::move(value);
}

bool Defaults::removeAll() {
  if (disk_.health() == Disk::Health::off) return false;
  values_.clear();
  return true;
}

Process::Process(const Platform& lasting, std::function<void(const HttpRequest&)> composed)
    : network(std::make_shared<Network>(std::move(composed))) {
  Platform platform = lasting;
  platform.mainQueue = main;
  platform.answerQueue = answers;
  platform.reachabilityQueue = reaches;
  platform.http = network;
  platform.reachability = reachability;
  platform.popups = presenter;
  Platform::install(std::move(platform));
}

bool Process::runOne(std::uint32_t number) {
  const auto all = queues();
  for (std::size_t tried = 0; tried <= all.size(); ++tried) {
    const std::size_t which = (number + tried) % (all.size() + 1);
    if (which < all.size() && std::ranges::count(blocked_, all[which]) > 0) continue;
    if (which < all.size() ? all[which]->runOne() : network->composeNext()) return true;
  }
  return false;
}

std::shared_ptr<void> Process::block() {
  const auto all = queues();
  const auto* current =
      std::ranges::find_if(all, [](const auto* each) { return each->isCurrent(); });
  blocked_.push_back(current == all.end() ? nullptr : *current);
  return {static_cast<void*>(this), [this](void*) { blocked_.pop_back(); }};
}

bool Process::isIdle() const {
  return !isBlocked() && !executor->hasDue() && network->waiting() == 0;
}

void Process::die() {
  network->die();
  for (FakeSerialQueue* queue : queues()) queue->discard();
}

}  // namespace kifo::testing::simulation
