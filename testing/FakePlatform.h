#pragma once

#include <memory>

#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "testing/FakeClock.h"
#include "testing/FakeDeviceProbe.h"
#include "testing/FakeHttpTransport.h"
#include "testing/FakeIdentifiers.h"
#include "testing/FakeNotificationCentre.h"
#include "testing/FakePasteboard.h"
#include "testing/FakePopupPresenter.h"
#include "testing/FakePositionSource.h"
#include "testing/FakeReachability.h"
#include "testing/FakeSerialQueue.h"
#include "testing/FakeUserDefaults.h"
#include "testing/FakeWatchService.h"
#include "testing/ManualExecutor.h"
#include "testing/RecordingConsole.h"
#include "testing/RecordingInspector.h"
#include "testing/TemporaryDirectory.h"

namespace kifo::testing {

/// Every service of the system as a fake, all at hand, the queues on one executor:
///
///     FakePlatform fake;
///     Platform::install(fake.platform());
///     …
///     fake.runUntilIdle();
///     EXPECT_EQ(fake.http->count(), 1);
struct FakePlatform {
  /// What the SDK is given. Its documents and temporary directories are fresh ones, which go with
  /// this object.
  [[nodiscard]] Platform platform() const;

  std::size_t runUntilIdle() const { return executor->runUntilIdle(); }
  /// Moves the queues' time and the wall clock on.
  std::size_t advance(double seconds) const;

  TemporaryDirectory directory;
  std::shared_ptr<ManualExecutor> executor = std::make_shared<ManualExecutor>();
  std::shared_ptr<FakeSerialQueue> mainQueue = std::make_shared<FakeSerialQueue>(executor);
  std::shared_ptr<FakeSerialQueue> answerQueue = std::make_shared<FakeSerialQueue>(executor);
  std::shared_ptr<FakeSerialQueue> reachabilityQueue = std::make_shared<FakeSerialQueue>(executor);
  /// Where scripted HTTP answers arrive; a real transport has a thread there.
  std::shared_ptr<FakeSerialQueue> transportQueue = std::make_shared<FakeSerialQueue>(executor);
  std::shared_ptr<FakeHttpTransport> http = std::make_shared<FakeHttpTransport>(transportQueue);
  std::shared_ptr<FakeUserDefaults> userDefaults = std::make_shared<FakeUserDefaults>();
  std::shared_ptr<FakeReachability> reachability = std::make_shared<FakeReachability>();
  std::shared_ptr<FakeDeviceProbe> device = std::make_shared<FakeDeviceProbe>();
  std::shared_ptr<FakePositionSource> position = std::make_shared<FakePositionSource>();
  std::shared_ptr<FakeNotificationCentre> notifications =
      std::make_shared<FakeNotificationCentre>();
  std::shared_ptr<FakePopupPresenter> popups = std::make_shared<FakePopupPresenter>();
  std::shared_ptr<FakePasteboard> pasteboard = std::make_shared<FakePasteboard>();
  std::shared_ptr<RecordingConsole> console = std::make_shared<RecordingConsole>();
  std::shared_ptr<FakeClock> clock = std::make_shared<FakeClock>();
  std::shared_ptr<FakeIdentifiers> identifiers = std::make_shared<FakeIdentifiers>();
  std::shared_ptr<FakeWatchService> watch = std::make_shared<FakeWatchService>();
  std::shared_ptr<RecordingInspector> inspector = std::make_shared<RecordingInspector>();
};

/// A fake platform that is in force for as long as it lives; afterwards the SDK is as at the start
/// of the process. One at a time.
class InstalledFakePlatform : public FakePlatform {
 public:
  InstalledFakePlatform();
  ~InstalledFakePlatform();
  InstalledFakePlatform(const InstalledFakePlatform&) = delete;
  InstalledFakePlatform& operator=(const InstalledFakePlatform&) = delete;
};

}  // namespace kifo::testing
