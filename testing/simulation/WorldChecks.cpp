#include <utility>

#include "Kifo_iOS_Common_Kit/core/runtime/Counters.h"
#include "Kifo_iOS_Common_Kit/network/InFlightRequests.h"
#include "testing/simulation/Invariants.h"
#include "testing/simulation/Server.h"
#include "testing/simulation/World.h"

namespace kifo::testing::simulation {
namespace {

std::string header(const HttpRequest& request, std::string_view name) {
  for (const auto& [key, value] : request.headers) {
    if (key == name) return value;
  }
  return {};
}

}  // namespace

void World::sawRequest(const HttpRequest& request) {
  if (!isOn()) return;
  if (isWithheld() && !request.url.empty()) fail("a request went out without consent");
  if (isQuery(request) || !request.body) return;
  // An event itself may never be repeated by the transport; a row that is sent again may.
  ledger_.sent(*request.body, request.mayRepeat, header(request, "Authorization"));
}

void World::sawStatus() {
  using enum InitializeStatusType;
  const auto now = Kifo::getInitializeStatusType();
  const auto before = std::exchange(status_, now);
  if (now == before) return;
  if (now == NOT_INITIALIZED) fail("a session forgot that it was initialised");
  if (now == INITIALIZED && !ledger_.hasCampaigns) fail("initialised without an answer");
  if (now == TOKEN_FAILED && ledger_.refusals < 2) fail("the token failed without two refusals");
}

void World::check() {
  ++ledger_.step;
  if (!disk_.isInOrder()) ledger_.troubleStep = ledger_.step;
  const bool hasDied = !isOn();
  // A thread that waits is still inside the SDK: the process ends once it is back.
  if (hasDied && process_->isBlocked()) return;
  if (hasDied) {
    process_->die();
    tokens_->questions.clear();
    end();
    disk_.restart(static_cast<std::uint32_t>(ledger_.step));
    start(static_cast<std::uint32_t>(ledger_.step) * 64);
  }
  if (violation_) return;
  // A row that was marked may have been on its way when the power failed.
  table_.read(ledger_, hasDied || isErasing_ ? 1 : process_->network->waiting());
  if (!disk_.exists(kDatabase)) isErasing_ = false;
  forgetErased();
  sawStatus();
  ledger_.sessionsToken = Kifo::authorization();
  if (pendingToken_ == ledger_.sessionsToken) {
    ledger_.token = *pendingToken_;
    pendingToken_.reset();
  }
  for (auto& [campaign, budget] : ledger_.budgets) budget.kept = defaults_->integer(campaign);
  const bool isIdle = process_->isIdle();
  violation_ = brokenInvariant(ledger_, isIdle);
  if (isIdle && !violation_) checkIdle();
}

void World::forgetErased() {
  if (!isForgetting_ || !defaults_->isEmpty()) return;
  isForgetting_ = false;
  ledger_.budgets.clear();
}

void World::checkIdle() {
  idleIdentifiers_ = identifiers_->issued();
  ledger_.idleStep = ledger_.step;
  if (isWithheld() && ledger_.isUndisturbed(revokedStep_) &&
      (disk_.exists(kDatabase) || !defaults_->isEmpty())) {
    violation_ = "nothing is kept without consent";
  }
  const auto runtime = Runtime::current();
  if (runtime->inFlight->count() != process_->network->open().size()) {
    violation_ = "the requests under way are those that the network has";
  }
  if (violation_ || !runtime->counters->isFound()) return;
  const Counts counts = Kifo::statistics().sinceInitialize;
  UnderWay underWay;
  for (const auto& [request, done] : process_->network->open()) {
    if (isQuery(request)) continue;
    ++underWay.requests;
    underWay.rows += ledger_.eventOf(*request.body).isWaiting ? 1 : 0;
  }
  if (auto wrong = wrongCounter(ledger_, counts, underWay)) violation_ = std::move(wrong);
}

}  // namespace kifo::testing::simulation
