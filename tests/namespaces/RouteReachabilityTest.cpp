#include <linux/if_arp.h>

#include <cerrno>

#include "Kifo_iOS_Common_Kit/ports/ReachabilityFlags.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/reachability/TargetAddresses.h"
#include "tests/namespaces/CabledTest.h"

namespace kifo::testing {
namespace {

using Flags = ReachabilityFlags;

constexpr std::uint32_t kNear = Flags::reachable | Flags::isDirect;
constexpr std::uint32_t kOwn = kNear | Flags::isLocalAddress;

using RouteReachabilityTest = CabledTest;

TEST_F(RouteReachabilityTest, AServerOnTheLoopbackIsReachedWithoutAnyDefaultRoute) {
  SourceWatcher watcher({"http://127.0.0.1:8080/inapp", "http://[::1]:8080/events"});
  EXPECT_EQ(watcher.read(), kOwn);
  host("link set lo down");
  EXPECT_EQ(watcher.await(0), 0U);
  host("link set lo up");
  EXPECT_EQ(watcher.await(kOwn), kOwn);
}

TEST_F(RouteReachabilityTest, AHostWithoutADefaultRouteChoosesItsServersForItsPlatform) {
  for (const auto& [targets, expected] :
       std::vector<std::pair<std::vector<std::string>, std::uint32_t>>{
           {{}, 0}, {{"http://127.0.0.1/inapp", "http://127.0.0.1/events"}, kOwn}}) {
    const Platform platform =
        makeLinuxPlatform({.documentsDirectory = "/nowhere", .reachabilityTargets = targets});
    int error = 0;
    std::uint32_t flags = ~0U;
    EXPECT_EQ(platform.reachability->createWithAddress({16, 2}, error)->flags(flags), 0);
    EXPECT_EQ(flags, expected);
  }
}

TEST_F(RouteReachabilityTest, EveryTargetNeedsItsRoute) {
  SourceWatcher watcher({"http://10.7.0.1/inapp", "192.0.2.7:443"});
  EXPECT_EQ(watcher.read(), 0U);
  host("route add 192.0.2.0/24 via 10.7.0.1");
  EXPECT_EQ(watcher.await(Flags::reachable), Flags::reachable) << "one goes through a gateway";
  host("route replace blackhole 192.0.2.0/24");
  EXPECT_EQ(watcher.await(0), 0U);
  host("route replace 192.0.2.0/24 dev up0");
  EXPECT_EQ(watcher.await(kNear), kNear);
  net("link set host0 down");
  EXPECT_EQ(watcher.await(0), 0U);
}

TEST_F(RouteReachabilityTest, OneTargetBehindAModemMakesItAModemsConnection) {
  const TunDevice tun("line0", ARPHRD_RAWIP);
  host("link set line0 up");
  host("route add 192.0.2.7 dev line0");
  SourceWatcher watcher({"192.0.2.7", "10.7.0.1"});
  EXPECT_EQ(watcher.read(), kNear | Flags::isWWAN | Flags::transientConnection);
}

TEST_F(RouteReachabilityTest, ANameIsJudgedByItsAddressOnceItHasOne) {
  SourceWatcher watcher({"http://localhost:8080/"});
  host("addr add 10.7.0.3/24 dev up0");  // any change has the name looked up, if it is not yet
  EXPECT_EQ(watcher.await(kOwn), kOwn);
}

TEST_F(RouteReachabilityTest, ANameWithoutAddressIsJudgedByTheNetworkAsAWhole) {
  SourceWatcher watcher({"http://nowhere.invalid/"});
  EXPECT_EQ(watcher.read(), 0U);
  host("route add default via 10.7.0.1");
  EXPECT_EQ(watcher.await(Flags::reachable), Flags::reachable);
}

TEST_F(RouteReachabilityTest, ATargetWithoutHostIsRefused) {
  SourceWatcher watcher({"http:///path"});
  EXPECT_EQ(watcher.error(), EINVAL);
}

TEST(NetworkTargetTest, TheHostIsFoundInUrlsAndBareOnes) {
  const std::vector<std::pair<std::string, std::string>> table = {
      {"https://api.example.com/inapp?x=http://other/", "api.example.com"},
      {"http://user:pw@10.0.0.1:8080", "10.0.0.1"},
      {"http://[fd07::1]:80/", "fd07::1"},
      {"fd07::1", "fd07::1"},
      {"host:99", "host"},
      {"host", "host"},
      {"http://host#x", "host"},
      {"http://[fd07::1", "fd07::1"},
      {"http:///x", ""},
      {"", ""},
  };
  for (const auto& [endpoint, host] : table) EXPECT_EQ(hostOf(endpoint), host) << endpoint;
  EXPECT_EQ(literalAddress("fd07::1")->size(), 16U);
  EXPECT_EQ(literalAddress("10.0.0.1")->bytes[0], 10);
  EXPECT_EQ(literalAddress("localhost"), std::nullopt);
}

}  // namespace
}  // namespace kifo::testing
