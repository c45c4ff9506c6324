#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/KifoInitConfig.h"
#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"
#include "testing/FakePlatform.h"
#include "testing/server/LocalServer.h"
#include "tests/namespaces/CabledTest.h"
#include "tests/namespaces/ConsoleLog.h"

namespace kifo::testing {

/// The whole SDK on real queues, sockets and a real database, with a default route to the net, and
/// the server there at 10.99.0.1 and fd99::1, on the net's loopback.
class NetworkScene : public CabledTest {
 protected:
  void SetUp() override;
  void TearDown() override;

  /// From now on the cable swallows whatever the host sends, or lets it through again.
  void setBlackHole(bool swallows);

  /// Real queues, sockets and a real database, with the fakes for everything else.
  Platform platform();
  [[nodiscard]] KifoInitConfig configuration(const std::string& address = "10.99.0.1") const;
  /// Initialises the SDK and waits until it is online and its start-up events have arrived.
  /// `timeout`: seconds that a request may take.
  void start(const std::string& address = "10.99.0.1", double timeout = 60.0);
  /// True when nothing was left to do in the seconds that it takes at most.
  static bool shutDown(double bound = 10.0);
  void loseTheRoute();
  void findTheRoute();
  void loseAndFindTheRoute() {
    loseTheRoute();
    findTheRoute();
  }
  [[nodiscard]] std::string endpoint(const std::string& address, const std::string& path) const;

  /// Waits for the next of the status's console lines; true when it came.
  bool goesOffline() { return awaitStatus("OFFLINE"); }
  bool goesOnline() { return awaitStatus("ONLINE"); }
  /// Waits until the SDK takes itself for online; status lines from before count no more.
  bool isOnlineAtLast();
  /// Waits until no stored request is left.
  bool drains();

  /// Sends the events `name`0, `name`1, …, or from a later number on.
  static void send(const std::string& name, int count, int first = 0);
  /// The events of that name which the server received, numbers behind the name in order of
  /// arrival.
  [[nodiscard]] std::vector<int> received(const std::string& name) const;
  bool awaitReceived(const std::string& name, std::size_t count) const;
  /// The values under `key` of all events whose name starts so.
  [[nodiscard]] std::vector<std::string> values(const std::string& name, const char* key) const;

  /// Rows of a query on the database, after every statement that was queued; cells joined by "|".
  [[nodiscard]] std::vector<std::string> rows(const std::string& query) const;
  /// Waits until every request was answered or given up.
  static bool awaitAnswers();
  [[nodiscard]] std::string rowCount() const { return rows("select count(*) from KifoLog").at(0); }

  std::unique_ptr<LocalServer> server_;
  const std::shared_ptr<ConsoleLog> console_ = std::make_shared<ConsoleLog>();

  /// In memory, for it is not the disk that is looked at here.
  const TemporaryDirectory documents_{"/dev/shm"};

 private:
  bool awaitStatus(const std::string& status);

  FakePlatform fake_;
  std::size_t statusMark_ = 0;
};

}  // namespace kifo::testing
