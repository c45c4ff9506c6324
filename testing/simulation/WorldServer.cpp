#include <array>

#include "testing/simulation/Server.h"
#include "testing/simulation/World.h"

namespace kifo::testing::simulation {

void World::answerRequest(std::size_t index, std::uint32_t number) {
  const HttpRequest request = process_->network->open()[index].request;
  const Fate chosen =
      fate(number, isQuery(request) ? inAppAnswer(campaigns_) : std::string("{\"code\":0}"));
  const bool isOk = !chosen.answer.error && chosen.answer.status == 200;
  if (chosen.answer.status == 401) ++ledger_.refusals;
  if (isQuery(request)) {
    ledger_.hasCampaigns |= isOk && chosen.answer.body == inAppAnswer(campaigns_);
  } else {
    if (chosen.isAccepted) ++ledger_.eventOf(*request.body).accepted;
    ledger_.answered(*request.body, isOk);
  }
  process_->network->answer(index, chosen.answer);
}

void World::answerAll() {
  constexpr std::uint32_t good = 8;
  while (!process_->network->open().empty()) answerRequest(0, good);
}

void World::answerToken(std::uint32_t argument) {
  auto& questions = tokens_->questions;
  if (questions.empty()) return;
  const auto which =
      questions.begin() + static_cast<std::ptrdiff_t>(argument / 8 % questions.size());
  const TokenService::Question question = *which;
  if (argument % 8 != 7) questions.erase(which);  // a service may answer twice
  if (argument % 4 == 0) return question.completion(std::nullopt);
  const std::string token = "fetched-" + std::to_string(++lastToken_);
  if (question.process == ledger_.process) ledger_.token = token;
  question.completion(token);
}

/// The SDK has asked for a token and its thread waits: the others go on.
void World::waitForToken() {
  const auto blocked = process_->block();
  std::uint32_t number = argument_;
  for (auto left = number / 32 % 8; left > 0 && !violation_ && isOn(); --left) {
    number = mixed(number);
    const auto open = process_->network->open().size();
    if (number % 4 == 0 && open > 0) {
      answerRequest(number / 64 % open, number / 4);
    } else if (number % 4 == 1) {
      answerToken(number / 4);
    } else {
      process_->runOne(number / 4);
    }
    check();
  }
}

void World::changeNetwork(std::uint32_t argument) {
  constexpr std::uint32_t cellular = 1U << 18;
  constexpr std::array<std::uint32_t, 4> flags{0, kReachable, kReachable, kReachable | cellular};
  if (argument / 4 % 32 == 31) {
    isBlind_ = true;
    process_->reachability->failFlags(5);
  }
  process_->reachability->change(flags[argument % flags.size()]);
}

}  // namespace kifo::testing::simulation
