#include "testing/simulation/Network.h"

#include <utility>

namespace kifo::testing::simulation {
namespace {

HttpAnswer cancelled() {
  return {Error{"http", 0, "cancelled"}, 0, {}};
}

}  // namespace

void Network::send(Make make, Done done) {
  if (isDead_) return;
  if (isStopped_) return done(cancelled());
  waiting_.emplace_back(std::move(make), std::move(done));
}

void Network::stop() {
  isStopped_ = true;
  cancelOpen();
}

void Network::cancelOpen() {
  for (const auto& [make, done] : std::exchange(waiting_, {})) done(cancelled());
  for (const auto& exchange : std::exchange(open_, {})) exchange.done(cancelled());
}

bool Network::composeNext() {
  if (waiting_.empty()) return false;
  const auto [make, done] = std::move(waiting_.front());
  waiting_.pop_front();
  open_.push_back({make(), done});
  composed_(open_.back().request);
  return true;
}

void Network::answer(std::size_t index, HttpAnswer answer) {
  const Done done = std::move(open_[index].done);
  open_.erase(open_.begin() + static_cast<std::ptrdiff_t>(index));
  done(std::move(answer));
}

void Network::die() {
  isDead_ = true;
  waiting_.clear();
  open_.clear();
}

}  // namespace kifo::testing::simulation
