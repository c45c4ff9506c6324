#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"

namespace kifo {
namespace {

class NullSerialQueue final : public SerialQueue {
 public:
  void post(Task) override {}
  Timer schedule(Duration, Task, bool) override { return 0; }
  void cancel(Timer) override {}
  bool isCurrent() const override { return false; }
  bool stop(Duration) override { return true; }
  void sync(const Task&) override {}
};

class NullHttpTransport final : public HttpTransport {
 public:
  void send(Make, Done done) override {
    if (done) done({Error{"http", 0, "cancelled"}, 0, {}});
  }
  void networkChanged() override {}
  void stop() override {}
};

class NullUserDefaults final : public UserDefaults {
 public:
  std::optional<DefaultsValue> value(const std::string&) const override { return std::nullopt; }
  void setValue(const std::string&, DefaultsValue) override {}
  bool removeAll() override { return true; }
};

class NullReachabilityService final : public ReachabilityService {
 public:
  std::unique_ptr<ReachabilitySource> createWithAddress(const Address&, int& error) override {
    error = 1;
    return nullptr;
  }
};

class NullDeviceProbe final : public DeviceProbe {
 public:
  std::string machine() const override { return {}; }
  std::string systemVersion() const override { return {}; }
  std::optional<std::string> vendorIdentifier() const override { return std::nullopt; }
  float batteryLevel() const override { return -1.0F; }
  CapacityReading capacity(VolumeCapacity) const override {
    return {CapacityReading::Outcome::missing, 0};
  }
};

class NullPositionSource final : public PositionSource {
 public:
  int authorizationStatus() const override { return 0; }
  int applicationState() const override { return 2; }
  std::optional<Coordinate> location() const override { return std::nullopt; }
};

class NullNotificationCentre final : public NotificationCentre {
 public:
  void getNotificationSettings(std::function<void(int)>) override {}
  void setNotificationCategories(std::vector<NotificationCategory>) override {}
};

class NullPopupPresenter final : public PopupPresenter {
 public:
  void present(std::shared_ptr<const PopupRequest>) override {}
};

class NullPasteboard final : public Pasteboard {
 public:
  void setString(const std::string&) override {}
};

class NullConsoleSink final : public ConsoleSink {
 public:
  void write(std::string) override {}
};

class NullClock final : public Clock {
 public:
  std::int64_t millisecondsSince1970() const override { return 0; }
  std::string timeZone() const override { return "UTC"; }
};

class NullRandomIdentifiers final : public RandomIdentifiers {
 public:
  std::string uuid() override { return "00000000-0000-4000-8000-000000000000"; }
};

class NullWatchService final : public WatchService {
 public:
  std::string open(Source) override { return "this platform has no such service"; }
  void publish(std::string) override {}
  void close() override {}
};

}  // namespace

Platform nullPlatform() {
  Platform platform;
  platform.mainQueue = std::make_shared<NullSerialQueue>();
  platform.answerQueue = platform.mainQueue;
  platform.reachabilityQueue = platform.mainQueue;
  platform.http = std::make_shared<NullHttpTransport>();
  platform.userDefaults = std::make_shared<NullUserDefaults>();
  platform.reachability = std::make_shared<NullReachabilityService>();
  platform.device = std::make_shared<NullDeviceProbe>();
  platform.position = std::make_shared<NullPositionSource>();
  platform.notifications = std::make_shared<NullNotificationCentre>();
  platform.popups = std::make_shared<NullPopupPresenter>();
  platform.pasteboard = std::make_shared<NullPasteboard>();
  platform.console = std::make_shared<NullConsoleSink>();
  platform.clock = std::make_shared<NullClock>();
  platform.identifiers = std::make_shared<NullRandomIdentifiers>();
  platform.watch = std::make_shared<NullWatchService>();
  return platform;
}

}  // namespace kifo
