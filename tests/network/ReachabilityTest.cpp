#include <cerrno>

#include "Kifo_iOS_Common_Kit/network/KifoReachability.h"
#include "Kifo_iOS_Common_Kit/network/KifoReachabilityWeakifier.h"
#include "Kifo_iOS_Common_Kit/network/NetworkManager.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

using Connection = KifoReachability::Connection;
using Flags = KifoReachability::Flags;
using Kind = KifoReachabilityError::Kind;

constexpr std::uint32_t kReachable = Flags::reachable;

struct Judgement {
  std::uint32_t flags;
  Connection connection;
  KifoNetworkCapability capability;
  const char* text;
};

class ReachabilityTest : public ::testing::Test {
 protected:
  /// A watcher that handles changes on the main queue and writes down what it tells.
  std::shared_ptr<KifoReachability> watcher(bool atOnce = false) {
    auto made = KifoReachability::create(
        {.targetQueue = nullptr, .notificationQueue = atOnce ? nullptr : platform_.mainQueue});
    EXPECT_TRUE(made.reachability);
    if (!made.reachability) return nullptr;
    made.reachability->notificationCenter = &center_;
    made.reachability->setWhenReachable([this](auto&) { told_.push_back("reachable"); });
    made.reachability->setWhenUnreachable([this](auto&) { told_.push_back("unreachable"); });
    return made.reachability;
  }

  void observe() {
    center_.addObserver("kifoReachabilityChanged",
                        [this](const KifoNotification&) { told_.push_back("posted"); });
  }

  testing::InstalledFakePlatform platform_;
  KifoNotificationCenter center_;
  std::vector<std::string> told_;
};

TEST_F(ReachabilityTest, FlagsAreJudgedAndWrittenAsTheSystemMeansThem) {
  const auto subject = watcher();
  constexpr auto required = kReachable | Flags::connectionRequired;
  constexpr auto none = Connection::unavailable;
  constexpr auto wired = Connection::wifi;
  constexpr auto cellular = KifoNetworkCapability::CELLULAR;
  constexpr auto wifi = KifoNetworkCapability::WIFI;
  // Whatever is not clearly a wired connection is named cellular, no connection as well.
  const std::vector<Judgement> table = {
      {0, none, cellular, "-- -------"},
      {kReachable, wired, wifi, "-R -------"},
      {Flags::isWWAN, none, cellular, "W- -------"},
      {kReachable | Flags::isWWAN, Connection::cellular, cellular, "WR -------"},
      {required | Flags::isWWAN, Connection::cellular, cellular, "WR c------"},
      {required, none, cellular, "-R c------"},
      {required | Flags::connectionOnDemand, wired, wifi, "-R c---D--"},
      {required | Flags::connectionOnTraffic, wired, wifi, "-R c--C---"},
      {required | Flags::connectionOnDemand | Flags::interventionRequired, none, cellular,
       "-R c-i-D--"},
      {required | Flags::connectionOnTraffic | Flags::interventionRequired, none, cellular,
       "-R c-iC---"},
      {kReachable | Flags::connectionOnTraffic | Flags::interventionRequired, wired, wifi,
       "-R --iC---"},
      {kReachable | Flags::transientConnection | Flags::isDirect, wired, wifi, "-R -t----d"},
      {kReachable | Flags::isLocalAddress | Flags::isDirect, wired, wifi, "-R -----ld"},
  };
  EXPECT_EQ(networkCapability(std::nullopt), cellular);
  for (const auto& [flags, connection, capability, text] : table) {
    platform_.reachability->setFlags(flags);
    EXPECT_EQ(subject->refreshFlags(), std::nullopt);
    EXPECT_EQ(subject->connection(), connection) << text;
    EXPECT_EQ(networkCapability(subject->flags()), capability) << text;
    EXPECT_EQ(subject->description(), text);
  }
  platform_.reachability->setFlags(kReachable | Flags::isWWAN);
  subject->refreshFlags();
  EXPECT_EQ(subject->connection(), Connection::cellular);
  subject->allowsCellularConnection = false;
  EXPECT_EQ(subject->connection(), Connection::unavailable);
}

TEST_F(ReachabilityTest, TheFirstReadingAlwaysTellsAndAnEqualOneNever) {
  observe();
  const auto subject = watcher();
  EXPECT_EQ(subject->flags(), std::nullopt);
  EXPECT_EQ(subject->description(), "unavailable flags");
  EXPECT_EQ(subject->connection(), Connection::unavailable);

  subject->startNotifier();  // the reading is 0, which no reading before was either
  EXPECT_THAT(told_, IsEmpty()) << "changes are handled on the notification queue";
  platform_.runUntilIdle();
  EXPECT_THAT(told_, ElementsAre("unreachable", "posted"));

  subject->startNotifier();
  platform_.reachability->change(0);
  platform_.runUntilIdle();
  platform_.reachability->change(kReachable);
  platform_.reachability->change(kReachable);
  platform_.runUntilIdle();
  EXPECT_THAT(told_, ElementsAre("unreachable", "posted", "reachable", "posted"));
}

TEST_F(ReachabilityTest, WithoutANotificationQueueChangesAreHandledWhereFlagsAreRead) {
  const auto subject = watcher(true);
  bool onSerialQueue = false;
  std::optional<std::uint32_t> inside;
  subject->setWhenUnreachable([&](KifoReachability& self) {
    onSerialQueue = platform_.reachabilityQueue->isCurrent();
    self.refreshFlags();  // from the serial queue itself: must not wait for itself
    inside = self.flags();
  });
  EXPECT_EQ(subject->startNotifier(), std::nullopt);
  EXPECT_TRUE(onSerialQueue);
  EXPECT_EQ(inside, 0U);
  EXPECT_TRUE(subject->notifierRunning());
}

TEST_F(ReachabilityTest, StoppingDropsWhatWasAlreadyOnItsWay) {
  const auto subject = watcher();
  subject->startNotifier();
  platform_.reachability->change(kReachable);  // waits on the serial queue
  subject->stopNotifier();
  platform_.runUntilIdle();
  EXPECT_THAT(told_, IsEmpty());
  EXPECT_FALSE(subject->notifierRunning());
  EXPECT_EQ(platform_.reachability->listening(), 0U);

  subject->startNotifier();
  platform_.runUntilIdle();
  EXPECT_THAT(told_, ElementsAre("reachable")) << "it can be started again";
}

TEST_F(ReachabilityTest, NeitherTheSystemNorAChangeUnderWayKeepsItAlive) {
  auto subject = watcher();
  const KifoReachabilityWeakifier weakifier{subject};
  subject->startNotifier();
  platform_.reachability->change(kReachable);
  EXPECT_THAT(platform_.reachability->descriptions(), ElementsAre("-- -------"));
  subject.reset();
  EXPECT_EQ(platform_.reachability->sources(), 0U);
  EXPECT_EQ(weakifier.description(), "nil");
  platform_.runUntilIdle();
  EXPECT_THAT(told_, IsEmpty());
}

TEST_F(ReachabilityTest, ItMayBeLetGoOfFromItsOwnCallback) {
  auto subject = watcher(true);
  subject->setWhenUnreachable([&](auto&) { subject.reset(); });
  const auto* raw = subject.get();
  const std::weak_ptr<KifoReachability> weak = subject;
  platform_.reachabilityQueue->post([held = subject, raw] {
    EXPECT_EQ(held.get(), raw);
    held->startNotifier();
  });
  platform_.runUntilIdle();
  EXPECT_TRUE(weak.expired());
  EXPECT_EQ(platform_.reachability->sources(), 0U);
}

TEST_F(ReachabilityTest, EveryRefusalOfTheSystemIsAnErrorThatLeavesItStopped) {
  platform_.reachability->failCreate(ENOBUFS);
  const auto none = KifoReachability::create({});
  EXPECT_EQ(none.reachability, nullptr);
  const ReachabilityService::Address zero = {16, 2};
  EXPECT_EQ(none.error,
            (KifoReachabilityError{Kind::failedToCreateWithAddress, ENOBUFS, zero, {}}));
  EXPECT_THAT(platform_.reachability->addresses(), ElementsAre(zero));
  platform_.reachability->failCreate(0);

  using Fail = void (testing::FakeReachability::*)(int);
  const std::vector<std::pair<Fail, Kind>> refusals = {
      {&testing::FakeReachability::failSetCallback, Kind::unableToSetCallback},
      {&testing::FakeReachability::failSetQueue, Kind::unableToSetDispatchQueue},
      {&testing::FakeReachability::failFlags, Kind::unableToGetFlags},
  };
  for (const auto& [fail, kind] : refusals) {
    const auto subject = watcher();
    (platform_.reachability.get()->*fail)(EPERM);
    EXPECT_EQ(subject->startNotifier(), (KifoReachabilityError{kind, EPERM, {}, {}}));
    EXPECT_FALSE(subject->notifierRunning());
    (platform_.reachability.get()->*fail)(0);
    EXPECT_EQ(platform_.reachability->listening(), 0U);
    EXPECT_EQ(subject->startNotifier(), std::nullopt) << "the next try may succeed";
    EXPECT_TRUE(subject->notifierRunning());
  }

  const auto subject = watcher();
  platform_.reachabilityQueue->stop({});
  EXPECT_EQ(subject->startNotifier(),
            (KifoReachabilityError{Kind::unableToGetFlags, ECANCELED, {}, {}}));
  EXPECT_FALSE(subject->notifierRunning());
}

TEST_F(ReachabilityTest, AReadingThatFailsLaterStopsItAndKeepsTheLastFlags) {
  const auto subject = watcher();
  platform_.reachability->setFlags(kReachable);
  subject->startNotifier();
  platform_.runUntilIdle();
  platform_.reachability->failFlags(ENOMEM);
  platform_.reachability->change(0);
  platform_.runUntilIdle();
  EXPECT_FALSE(subject->notifierRunning());
  EXPECT_EQ(subject->flags(), kReachable);
  EXPECT_THAT(told_, ElementsAre("reachable"));
}

TEST(NotificationCenterTest, ObserversMayAddAndRemoveAndThrowWhileOneIsPosted) {
  testing::InstalledFakePlatform platform;
  KifoNotificationCenter center;
  std::vector<std::string> told;
  KifoNotificationCenter::Token second = 0;
  center.addObserver("name", [&](const auto&) {
    told.push_back("first");
    center.removeObserver(second);
    center.addObserver("name", [&](const auto&) { told.push_back("late"); });
    throw std::runtime_error("a host's mistake");
  });
  second = center.addObserver("name", [&](const auto&) { told.push_back("second"); });
  center.addObserver("other", [&](const auto&) { told.push_back("other"); });
  center.addObserver("name", [&](const auto&) { told.push_back("third"); });
  center.post({"name", {}});
  EXPECT_THAT(told, ElementsAre("first", "third"));
}

}  // namespace
}  // namespace kifo
