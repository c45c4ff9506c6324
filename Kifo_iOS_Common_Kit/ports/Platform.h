#pragma once

#include <memory>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Clock.h"
#include "Kifo_iOS_Common_Kit/ports/ConsoleSink.h"
#include "Kifo_iOS_Common_Kit/ports/DeviceProbe.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"
#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"
#include "Kifo_iOS_Common_Kit/ports/Inspector.h"
#include "Kifo_iOS_Common_Kit/ports/NotificationCentre.h"
#include "Kifo_iOS_Common_Kit/ports/Pasteboard.h"
#include "Kifo_iOS_Common_Kit/ports/PopupPresenter.h"
#include "Kifo_iOS_Common_Kit/ports/PositionSource.h"
#include "Kifo_iOS_Common_Kit/ports/ReachabilitySource.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "Kifo_iOS_Common_Kit/ports/StoreFiles.h"
#include "Kifo_iOS_Common_Kit/ports/UserDefaults.h"
#include "Kifo_iOS_Common_Kit/ports/WatchService.h"

namespace kifo {

/// The system services that the SDK uses.
///
///     kifo::Platform platform = kifo::Platform::makeDefault();
///     platform.console = std::make_shared<MyConsole>();
///     kifo::Platform::install(std::move(platform));   // before Kifo::initialize
///
/// A host that installs nothing gets the system's default on first use. `install` fills members
/// that are null with services that do nothing; only `inspector` and `storeFiles` may stay null.
///
/// **Threading:** `current` and `install` are thread-safe. What `current` returned stays alive and
/// unchanged for as long as the caller holds it.
struct KIFO_EXPORT Platform {
  std::shared_ptr<SerialQueue> mainQueue;
  std::shared_ptr<SerialQueue> answerQueue;
  std::shared_ptr<SerialQueue> reachabilityQueue;
  std::shared_ptr<HttpTransport> http;
  std::shared_ptr<UserDefaults> userDefaults;
  std::shared_ptr<ReachabilityService> reachability;
  std::shared_ptr<DeviceProbe> device;
  std::shared_ptr<PositionSource> position;
  std::shared_ptr<NotificationCentre> notifications;
  std::shared_ptr<PopupPresenter> popups;
  std::shared_ptr<Pasteboard> pasteboard;
  std::shared_ptr<ConsoleSink> console;
  std::shared_ptr<Clock> clock;
  std::shared_ptr<RandomIdentifiers> identifiers;
  std::shared_ptr<WatchService> watch;
  std::shared_ptr<Inspector> inspector;
  std::shared_ptr<StoreFiles> storeFiles;  ///< Null: the disk.
  std::string documentsDirectory;          ///< Of "KifoLog.db". Created when first needed.
  /// Of images that notifications show. Created when first needed.
  std::string temporaryDirectory;

  /// The services in force. Makes the system's default on first use and again after a shutdown.
  static std::shared_ptr<const Platform> current();
  /// Puts `platform` in force, for tests and for hosts, before initialisation.
  static void install(Platform platform);
  /// The default of the system that the library was built for. Nothing is started yet.
  static Platform makeDefault();
  /// Drops the platform in force; its queues and transport must have been stopped.
  static void release();
};

}  // namespace kifo
