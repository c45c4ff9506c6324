#include "platform/linux/LinuxPlatform.h"

#include <cstdlib>
#include <memory>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "platform/linux/Directories.h"
#include "platform/linux/FileUserDefaults.h"
#include "platform/linux/LinuxClock.h"
#include "platform/linux/LinuxConsole.h"
#include "platform/linux/LinuxDeviceProbe.h"
#include "platform/linux/http/CurlTransport.h"
#include "platform/linux/reachability/NetlinkReachability.h"
#include "platform/linux/threads/ExitGuard.h"
#include "platform/linux/threads/LinuxSerialQueue.h"
#include "platform/linux/watch/WatchSocket.h"

namespace kifo {
namespace {

std::string textOr(const std::string& text, const std::string& otherwise) {
  return text.empty() ? otherwise : text;
}

std::string environment(const char* variable) {
  const char* text = std::getenv(variable);
  return text ? text : "";
}

}  // namespace

Platform makeLinuxPlatform(const LinuxPlatformOptions& options) {
  const auto directories = Directories::ofThisProcess();
  const auto main = std::make_shared<LinuxSerialQueue>("kifo.main");
  const auto answers = std::make_shared<LinuxSerialQueue>("kifo.answers");
  const auto reachability = std::make_shared<LinuxSerialQueue>("kifo.reach");
  const auto console = std::make_shared<LinuxConsole>(main);

  // Made by another program, or by an earlier version, they may be open to other users.
  makePrivate(directories.documents);
  makePrivate(directories.temporary);

  Platform platform = nullPlatform();
  platform.documentsDirectory = textOr(options.documentsDirectory, directories.documents);
  platform.temporaryDirectory = directories.temporary;
  platform.mainQueue = main;
  platform.answerQueue = answers;
  platform.reachabilityQueue = reachability;
  platform.console = console;
  platform.http = std::make_shared<CurlTransport>(
      CurlTransportOptions{.maximumAnswerSize = options.maximumAnswerSize,
                           .certificateAuthorities = options.certificateAuthorities});
  platform.userDefaults = std::make_shared<FileUserDefaults>(platform.documentsDirectory, main);
  platform.reachability =
      std::make_shared<NetlinkReachabilityService>(reachability, options.reachabilityTargets);
  platform.device = std::make_shared<LinuxDeviceProbe>(
      main, LinuxDeviceProbe::Options{.applicationIdentifier = textOr(options.applicationIdentifier,
                                                                      directories.program)});
  platform.clock = std::make_shared<LinuxClock>(main, environment("TZ"));
  platform.identifiers = std::make_shared<KernelIdentifiers>();
  platform.watch = std::make_shared<WatchSocket>();

  if (options.documentsDirectory.empty() && !directories.problem.empty()) {
    // Not by Console::print: it would ask for the platform that is being made.
    console->write("Kifo Platform: nothing can be kept in " + directories.problem + "; using " +
                   directories.documents);
  }
  ExitGuard::watch({platform.http, answers, reachability, main, console});
  return platform;
}

Platform Platform::makeDefault() {
  return makeLinuxPlatform();
}

}  // namespace kifo
