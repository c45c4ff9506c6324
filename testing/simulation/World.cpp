#include "testing/simulation/World.h"

#include <array>

#include "Kifo_iOS_Common_Kit/events/KifoEventManager.h"
#include "testing/simulation/Play.h"
#include "testing/simulation/Server.h"

namespace kifo::testing::simulation {

World::World() {
  Kifo::shutdown(0.0);
  start(0);
  check();
}

World::~World() {
  process_->die();
  end();
}

void World::perform(const Operation& operation) {
  const std::uint32_t argument = operation.argument;
  argument_ = argument;
  switch (operation.kind) {
    case Kind::runTask:
      process_->runOne(argument);
      break;
    case Kind::runAll:
      runAll();
      break;
    case Kind::passTime:
      passTime(argument);
      break;
    case Kind::sendEvent:
      onHostThread(argument, [this, argument] { sendEvent(argument, {}); });
      break;
    case Kind::sendOddEvent: {
      const std::array<const char*, 3> oddities{"an ' apostrophe", "broken \xC3\x28 text",
                                                "\x01\n\t"};
      if (mayCall()) sendEvent(argument, oddities[argument % oddities.size()]);
      break;
    }
    case Kind::enterPage:
      onHostThread(argument, [this] { KifoEventManager::sendPageInEvent(screen_, "Page"); });
      break;
    case Kind::leavePage:
      onHostThread(argument, [this] { KifoEventManager::sendPageOutEvent(screen_, std::nullopt); });
      break;
    case Kind::sendOther:
      onHostThread(argument, [this, argument] { sendOther(argument); });
      break;
    case Kind::changeIdentity:
      changeIdentity(argument);
      break;
    case Kind::initialize:
      initialize(argument, argument % 4 != 0);
      break;
    case Kind::closeScreen:
      screen_ = std::make_shared<Screen>();
      break;
    case Kind::answerRequest:
      if (const auto open = process_->network->open().size(); open > 0) {
        answerRequest(argument / 16 % open, argument);
      }
      break;
    case Kind::answerAll:
      answerAll();
      break;
    case Kind::answerToken:
      answerToken(argument);
      break;
    case Kind::changeNetwork:
      changeNetwork(argument);
      break;
    case Kind::changeCampaigns:
      campaigns_ = argument;
      break;
    case Kind::changeConsent:
      changeConsent(argument % 2 == 1);
      break;
    case Kind::pausePopups:
      pausePopups(argument % 3 == 0);
      break;
    case Kind::changeGate:
      changeGate(argument);
      break;
    case Kind::showPopup:
      showPopup();
      break;
    case Kind::answerPopup:
      answerPopup(argument);
      break;
    case Kind::breakDisk:
      breakDisk(argument);
      break;
    case Kind::lockTable:
      lockTable(argument);
      break;
    case Kind::mendDisk:
      if (isOn()) disk_.setHealth(Disk::Health::good);
      disk_.unlock();
      break;
    case Kind::shutDown:
      shutDown(argument);
      break;
    case Kind::kill:
      kill(argument);
      break;
    case Kind::powerFails:
      powerFails(argument);
      break;
  }
  check();
}

void World::runAll() {
  while (!violation_ && process_->runOne(0)) check();
}

void World::passTime(std::uint32_t argument) {
  constexpr std::array seconds{0.5, 1.0, 11.0, 40.0, 700.0};
  const double passed = seconds[argument % seconds.size()];
  clock_->advance(passed);
  process_->executor->passTime(passed);
}

void World::finish() {
  disk_.restart(0);
  disk_.unlock();
  Kifo::giveConsent();
  runAll();
  answerAll();
  runAll();
  for (int part = 0; part < 2 && !violation_; ++part) {
    const auto rounds = ledger_.waiting + 4;
    for (std::int64_t round = 0; round < rounds && !violation_; ++round) {
      for (const std::uint32_t flags : {0U, kReachable}) {
        process_->reachability->failFlags(0);
        process_->reachability->change(flags);
        for (runAll(); !process_->network->open().empty() && !violation_; runAll()) answerAll();
      }
    }
    const bool mustBeEmpty =
        part == 1 || (!isBlind_ && !isCachingDisabled_ && ledger_.hasCampaigns);
    if (mustBeEmpty && ledger_.waiting > 0) fail("a row waits although everything works");
    showAll();
    check();
    if (part == 0) shutDown(0);
  }
}

Outcome play(const Script& script) {
  World world;
  Outcome outcome;
  for (const Operation& operation : script) {
    if (world.violation()) break;
    world.perform(operation);
    ++outcome.operation;
  }
  if (!world.violation()) {
    world.finish();
    ++outcome.operation;
  }
  outcome.steps = world.steps();
  outcome.violation = world.violation();
  return outcome;
}

}  // namespace kifo::testing::simulation
