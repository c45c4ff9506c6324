#pragma once

#include <functional>
#include <istream>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "apps/kifo/host/Arguments.h"
#include "apps/kifo/host/HostWindow.h"
#include "apps/kifo/host/Output.h"
#include "apps/kifo/host/ScriptedPlatform.h"

namespace kifo::tool {

/// A host application that does what a script says, line by line.
///
/// **Threading:** one thread carries out the script; what the SDK calls back is written by
/// whichever thread it comes on.
class Host {
 public:
  struct Options {
    std::string home;
    bool writesDecisions = false;
    bool isLoopbackOnly = false;  ///< Refuses servers elsewhere.
  };

  Host(Options options, std::shared_ptr<Output> output, HostWindow& window);

  /// Carries out `script` to its end, shuts the SDK down and returns the exit status.
  int run(std::istream& script);

  // What the operations need.
  [[nodiscard]] const std::shared_ptr<Output>& output() const { return output_; }
  [[nodiscard]] const Options& options() const { return options_; }
  /// The screen of that class, made when it is first asked for and kept.
  std::shared_ptr<KifoViewController> screen(const std::string& className);
  /// For what a script wants done later than now.
  [[nodiscard]] const std::shared_ptr<SerialQueue>& timers() const { return platform_.timers(); }
  bool shutDown(double bound);

 private:
  void carryOut(const std::string& text);
  void carryOut(const nlohmann::json& line);
  void call(Arguments arguments);
  void showScreen(Arguments arguments);
  void setProperty(Arguments arguments);
  void getProperty(Arguments arguments);
  void network(Arguments arguments);
  void device(Arguments arguments);
  void location(Arguments arguments);
  void defaults(Arguments arguments);
  void permission(Arguments arguments);
  void push(Arguments arguments);
  void tap(Arguments arguments);
  void popup(Arguments arguments);
  void wait(Arguments arguments);
  void exit(Arguments arguments);
  void waitUntilIdle(double timeout);

  const Options options_;
  const std::shared_ptr<Output> output_;
  HostWindow& window_;
  ScriptedPlatform platform_;
  std::map<std::string, std::shared_ptr<KifoViewController>> screens_;
  std::optional<int> exitStatus_;
};

}  // namespace kifo::tool
