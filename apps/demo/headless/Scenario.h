#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "apps/demo/headless/Expectations.h"
#include "apps/demo/headless/HostLog.h"
#include "apps/demo/headless/Network.h"
#include "apps/demo/headless/Screens.h"
#include "testing/server/LocalServer.h"

namespace kifo::demo {

/// One day of a kiosk without a display: the application is installed and used, the server and the
/// network go away and come back, and the next morning the application starts again.
///
/// Everything is real: the database, the preferences, the device's data, HTTP; and the network too,
/// where the process may make one.
///
/// **Threading:** externally synchronised.
class Scenario {
 public:
  /// Files are kept in `home`. `printsConsole`: the SDK's own lines are shown too.
  Scenario(std::filesystem::path home, Network& network, bool printsConsole);

  /// Runs the whole day; false when something that is waited for does not happen.
  bool run();

  /// Prints what the server received and what is wrong with it; whether nothing is.
  bool judge();

 private:
  bool firstMorning();
  bool customers();
  bool outage();
  bool returnOfTheServer();
  bool serverOutage();
  bool losses();
  bool lose(const Network::Loss& loss);
  bool nightAndNextMorning();

  void switchOn();
  bool initialize();
  bool awaitOnline();
  bool askForConsent();
  bool startServer();
  /// Changes the network and waits until the SDK says what has become of it.
  bool change(const std::function<void()>& change, const std::string& status);
  /// Waits until the server has received all that is expected so far and the host knows the
  /// answers.
  bool settle();

  void show(const std::shared_ptr<KifoViewController>& screen, const std::string& name);
  void hide(const std::shared_ptr<KifoViewController>& screen, const std::string& name);
  void event(const std::string& name, EventParameters parameters, Expectations::Sending sending);

  const std::filesystem::path home_;
  Network& network_;
  testing::LocalServer server_;
  const std::shared_ptr<HostLog> host_;
  Expectations expectations_;
};

}  // namespace kifo::demo
