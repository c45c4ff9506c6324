#include <array>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "testing/simulation/Server.h"
#include "testing/simulation/World.h"

namespace kifo::testing::simulation {
namespace {

constexpr auto kNoDirectory = "/no-such-directory";

}  // namespace

void World::start(std::uint32_t argument) {
  ledger_.beginProcess();
  forgetErased();  // before the start keeps something anew
  status_ = InitializeStatusType::NOT_INITIALIZED;
  isBlind_ = false;
  isPaused_ = false;
  pendingToken_.reset();
  tokens_->process = ledger_.process;
  tokens_->asked = [this] { waitForToken(); };
  Platform lasting = nullPlatform();
  lasting.userDefaults = defaults_;
  lasting.clock = clock_;
  lasting.identifiers = identifiers_;
  lasting.storeFiles = std::shared_ptr<StoreFiles>(&disk_, [](auto*) {});
  lasting.documentsDirectory = kDocuments;
  lasting.temporaryDirectory = kNoDirectory;  // that of the system is read at each start
  process_ =
      std::make_unique<Process>(lasting, [this](const auto& request) { sawRequest(request); });
  process_->reachability->setFlags(argument / 64 % 4 == 3 ? 0 : kReachable);
  Kifo::setTokenService(tokens_);
  decision_ = PopupDecision::show;
  Kifo::setPopupGate([this](const PopupInfo&) {
    if (isPaused_) fail("the host's gate was asked while popups are paused");
    isPutOff_ = decision_ == PopupDecision::later;
    return decision_;
  });
  initialize(argument, false);
  // A revocation that did not reach the disk before the power failed does not count.
  if (!isWithheld()) isForgetting_ = false;
}

void World::end() {
  Kifo::shutdown(0.0);
  process_.reset();
}

void World::shutDown(std::uint32_t argument) {
  if (argument / 2 % 2 == 0) {
    runAll();
  } else if (!drain(argument)) {
    return;
  }
  if (disk_.isLocked()) ledger_.troubleStep = ledger_.step;
  end();
  table_.read(ledger_, 0);
  start(argument);
}

/// Ends the SDK as a host does that waits: while it waits, the other threads work. The requests
/// that are open are answered before its time is over, or not all of them. False when the power
/// failed.
bool World::drain(std::uint32_t argument) {
  const bool isAnswered = argument / 4 % 4 != 0;
  bool isOpen = !process_->isIdle();  // what is there already has to be waited for
  bool isIdle = false;
  {
    const auto blocked = process_->block();
    process_->whenPosted = [&, number = argument, works = false]() mutable {
      if (std::exchange(works, true)) return;  // it is one of the other threads that posts
      runAll();
      while (isAnswered && !violation_ && !process_->network->open().empty()) {
        answerRequest(0, number = mixed(number));
        runAll();
      }
      if (!process_->network->isStopped()) isOpen = !process_->network->open().empty();
      works = false;
    };
    if (disk_.isLocked()) ledger_.troubleStep = ledger_.step;
    isIdle = Kifo::shutdown(0.0);
    process_->whenPosted = nullptr;
  }
  if (!isOn()) {
    check();
    return false;
  }
  if (isIdle == isOpen) fail("a shutdown says whether all was done");
  return true;
}

void World::kill(std::uint32_t argument) {
  process_->die();
  tokens_->questions.clear();
  end();
  disk_.restart(argument);
  start(argument);
}

void World::powerFails(std::uint32_t argument) {
  if (const int delay = static_cast<int>(argument % 64)) {
    disk_.setHealthLater(Disk::Health::off, delay);
  } else {
    disk_.setHealth(Disk::Health::off);
  }
}

void World::breakDisk(std::uint32_t argument) {
  if (!isOn()) return;
  const auto health = argument % 2 == 0 ? Disk::Health::failing : Disk::Health::full;
  disk_.setHealthLater(health, static_cast<int>(argument / 2 % 64));
}

/// Another process reads or writes the table, for one to 1,000 polls of the one that waits, which
/// is as long as the SDK waits, or for longer.
void World::lockTable(std::uint32_t argument) {
  using enum Disk::ForeignLock;
  constexpr std::array locks{reads, writes, excludes};
  constexpr std::array polls{1, 20, 999, 3000};
  // It would have rolled back what the SDK left unfinished.
  if (!isOn() || disk_.exists(std::string(kDatabase) + "-journal")) return;
  disk_.lock(kDatabase, locks[argument % 3], polls[argument / 4 % polls.size()]);
}

}  // namespace kifo::testing::simulation
