#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Consent.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "testing/FakeClock.h"
#include "testing/FakeIdentifiers.h"
#include "testing/simulation/Disk.h"
#include "testing/simulation/Ledger.h"
#include "testing/simulation/Process.h"
#include "testing/simulation/Script.h"
#include "testing/simulation/TableReader.h"

namespace kifo::testing::simulation {

class Screen final : public ViewController {
 public:
  [[nodiscard]] std::string className() const override { return "Screen"; }
};

/// The whole SDK with a clock, a network, a server, a user, a disk and a power switch, which move
/// when `perform` says so. What must hold is checked after every piece of work.
///
/// **Threading:** one thread. The platform in force and SQLite's default VFS are replaced
/// meanwhile; one world at a time.
class World {
 public:
  World();
  ~World();
  World(const World&) = delete;
  World& operator=(const World&) = delete;

  void perform(const Operation& operation);
  /// Heals everything and lets all work end; then nothing may wait any more.
  void finish();
  [[nodiscard]] const std::optional<std::string>& violation() const { return violation_; }
  [[nodiscard]] std::size_t steps() const { return ledger_.step; }

 private:
  // The process, its power and its disk.
  void start(std::uint32_t argument);
  void end();
  void shutDown(std::uint32_t argument);
  bool drain(std::uint32_t argument);
  void kill(std::uint32_t argument);
  void powerFails(std::uint32_t argument);
  [[nodiscard]] static bool isWithheld() { return Runtime::current()->consent.isWithheld(); }
  /// Whether the SDK has an address to send to, or drops what it is given.
  [[nodiscard]] static bool mayCall() { return isWithheld() || !Kifo::listenerUri().empty(); }
  [[nodiscard]] bool isOn() const { return disk_.health() != Disk::Health::off; }

  void breakDisk(std::uint32_t argument);
  void lockTable(std::uint32_t argument);

  // The host and its user.
  void initialize(std::uint32_t argument, bool isForced);
  void onHostThread(std::uint32_t argument, const std::function<void()>& call);
  void sendEvent(std::uint32_t argument, Value oddity);
  void noteEvent(const std::string& name, bool isOdd);
  void sendOther(std::uint32_t argument);
  void changeIdentity(std::uint32_t argument);
  void changeConsent(bool isGiven);
  void pausePopups(bool isPaused);
  void changeGate(std::uint32_t argument);
  void showPopup();
  void showAll();
  void answerPopup(std::uint32_t argument);

  // The network, the server and the token service.
  void answerRequest(std::size_t index, std::uint32_t number);
  void answerAll();
  void answerToken(std::uint32_t argument);
  void waitForToken();
  void changeNetwork(std::uint32_t argument);

  // Threads and time.
  void runAll();
  void passTime(std::uint32_t argument);

  // What is seen and must hold.
  void sawRequest(const HttpRequest& request);
  void sawStatus();
  void check();
  void checkIdle();
  void forgetErased();
  void fail(std::string what) { ledger_.faults.push_back(std::move(what)); }

  // What outlives a process.
  Disk disk_;
  const std::shared_ptr<Defaults> defaults_ = std::make_shared<Defaults>(disk_);
  const std::shared_ptr<FakeClock> clock_ = std::make_shared<FakeClock>();
  const std::shared_ptr<FakeIdentifiers> identifiers_ = std::make_shared<FakeIdentifiers>();
  const std::shared_ptr<TokenService> tokens_ = std::make_shared<TokenService>();
  TableReader table_{disk_};
  std::uint32_t campaigns_ = 0;
  int lastNumber_ = 0;
  int lastToken_ = 0;

  std::unique_ptr<Process> process_;
  std::uint32_t argument_ = 0;  ///< Of the operation that is under way.
  std::shared_ptr<Screen> screen_ = std::make_shared<Screen>();
  InitializeStatusType status_ = InitializeStatusType::NOT_INITIALIZED;
  bool isCachingDisabled_ = false;
  std::optional<std::string> configuredToken_;                 ///< The last configuration's.
  std::optional<std::string> pendingToken_;                    ///< The session's, once it begins.
  std::shared_ptr<int> successes_ = std::make_shared<int>(0);  ///< Of the last start.
  bool isErasing_ = false;     ///< The consent was revoked and the table is still there.
  bool isForgetting_ = false;  ///< It was revoked and the user defaults are still there.
  std::uint64_t revokedStep_ = 0;
  bool isPaused_ = false;                         ///< The host holds popups back.
  PopupDecision decision_ = PopupDecision::show;  ///< Of the host's gate.
  bool isPutOff_ = false;                         ///< The gate has just said "later".
  bool isBlind_ = false;               ///< Reading the network has failed: its watcher has stopped.
  std::uint64_t idleIdentifiers_ = 0;  ///< Identifiers given out when all work had last ended.
  int chosen_ = 0;                     ///< Calls of handlers of chosen buttons.

  Ledger ledger_;
  std::optional<std::string> violation_;
};

}  // namespace kifo::testing::simulation
