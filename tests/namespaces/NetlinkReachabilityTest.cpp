#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/if_arp.h>
#include <linux/rtnetlink.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>

#include <cerrno>
#include <cstddef>
#include <future>
#include <thread>

#include "Kifo_iOS_Common_Kit/ports/ReachabilityFlags.h"
#include "platform/linux/NetlinkSocket.h"
#include "testing/NetworkNamespace.h"
#include "tests/namespaces/HeldUp.h"
#include "tests/namespaces/SourceWatcher.h"

namespace kifo::testing {
namespace {

using Flags = ReachabilityFlags;

constexpr std::uint32_t kOnline = Flags::reachable;
constexpr std::uint32_t kModem = Flags::isWWAN | Flags::transientConnection;
constexpr std::uint32_t kDials =
    Flags::transientConnection | Flags::connectionRequired | Flags::connectionOnTraffic;

/// A host with a cable "up0" to a router, 10.7.0.2 and fd07::2 to .1 and ::1, without a route yet.
class NetlinkReachabilityTest : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!NetworkNamespace::whyNot().empty()) GTEST_SKIP() << NetworkNamespace::whyNot();
    host_.emplace();
    router_.emplace();
    plug("up0");
    inside_.emplace(*host_);
  }

  void plug(const std::string& name) {
    host_->connect(name, *router_, "host0");
    ASSERT_TRUE(host_->ip("addr add 10.7.0.2/24 dev " + name));
    ASSERT_TRUE(host_->ip("addr add fd07::2/64 dev " + name + " nodad"));
    ASSERT_TRUE(router_->ip("addr add 10.7.0.1/24 dev host0"));
  }

  void ip(const std::string& words) { ASSERT_TRUE(host_->ip(words)) << words; }

  std::optional<NetworkNamespace> host_;
  std::optional<NetworkNamespace> router_;
  std::optional<InNamespace> inside_;
};

TEST_F(NetlinkReachabilityTest, FollowsTheLinkItsCarrierAndTheDefaultRoute) {
  SourceWatcher watcher;
  EXPECT_EQ(watcher.read(), 0U) << "an address alone leads nowhere";
  ip("route add default via 10.7.0.1");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  ip("link set up0 down");
  EXPECT_EQ(watcher.await(0), 0U);
  ip("link set up0 up");
  ip("route add default via 10.7.0.1");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  ASSERT_TRUE(router_->ip("link set host0 down"));
  EXPECT_EQ(watcher.await(0), 0U) << "the cable was pulled out at the other end";
  ASSERT_TRUE(router_->ip("link set host0 up"));
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  ip("route del default");
  EXPECT_EQ(watcher.await(0), 0U);
  ip("route add default dev up0");
  EXPECT_EQ(watcher.await(kOnline | Flags::isDirect), kOnline | Flags::isDirect);
  ip("addr flush dev up0");  // takes the IPv4 routes along
  ip("-6 route flush all");
  EXPECT_EQ(watcher.read(), 0U);
}

TEST_F(NetlinkReachabilityTest, IPv6AloneIsANetwork) {
  SourceWatcher watcher;
  ip("addr flush dev up0 scope global");
  ip("addr add fd07::2/64 dev up0 nodad");
  ip("-6 route add default via fd07::1");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  ASSERT_TRUE(router_->ip("link set host0 down"));
  EXPECT_EQ(watcher.await(0), 0U);
  ASSERT_TRUE(router_->ip("link set host0 up"));
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  ip("-6 route del default");
  EXPECT_EQ(watcher.await(0), 0U);
}

TEST_F(NetlinkReachabilityTest, RoutesThatLeadNowhereDoNotCount) {
  SourceWatcher watcher;
  for (const std::string kind : {"blackhole", "unreachable", "prohibit"}) {
    ip("route replace " + kind + " default");
    ip("-6 route replace " + kind + " default");
    EXPECT_EQ(watcher.read(), 0U) << kind;
  }
  ip("-6 route flush type prohibit");
  ip("route replace default dev lo");
  EXPECT_EQ(watcher.read(), 0U) << "what goes to the loopback does not leave the machine";
  ip("route replace default via 10.7.0.1 table 77");
  ip("route replace default dev lo");
  EXPECT_EQ(watcher.read(), 0U) << "another table serves those whom a rule sends there";
  ip("route add 0.0.0.0/1 via 10.7.0.1");
  EXPECT_EQ(watcher.read(), 0U) << "half of the world is no default route";
}

TEST_F(NetlinkReachabilityTest, TheBestRouteThatWorksSaysWhatKindOfNetworkItIs) {
  const TunDevice tun("tun0", ARPHRD_PPP);
  ip("link set tun0 up");
  ip("route add default dev tun0 metric 50");
  SourceWatcher watcher;
  EXPECT_EQ(watcher.read(), kOnline | kModem | Flags::isDirect);
  ip("route add default via 10.7.0.1 metric 10");
  EXPECT_EQ(watcher.read(), kOnline);
  ASSERT_TRUE(router_->ip("link set host0 down"));
  EXPECT_EQ(watcher.await(kOnline | kModem | Flags::isDirect), kOnline | kModem | Flags::isDirect);
  ASSERT_TRUE(router_->ip("link set host0 up"));
  EXPECT_EQ(watcher.await(kOnline), kOnline);

  ip("route flush default");
  ip("-6 route add default via fd07::1 metric 100");
  ip("route add default dev tun0 metric 50");
  EXPECT_EQ(watcher.read(), kOnline | kModem | Flags::isDirect) << "metrics count across families";
}

TEST_F(NetlinkReachabilityTest, OneWorkingWayOfAMultipathRouteIsEnough) {
  host_->connect("up1", *router_, "host1");
  ip("addr add 10.8.0.2/24 dev up1");
  SourceWatcher watcher;
  ip("route add default nexthop via 10.7.0.1 dev up0 nexthop via 10.8.0.1 dev up1");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  ASSERT_TRUE(router_->ip("link set host0 down"));
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  ASSERT_TRUE(router_->ip("link set host1 down"));
  EXPECT_EQ(watcher.await(0), 0U);
  ASSERT_TRUE(router_->ip("link set host1 up"));
  EXPECT_EQ(watcher.await(kOnline), kOnline);
}

TEST_F(NetlinkReachabilityTest, AnInterfaceMayBeRenamedOrReplaced) {
  ip("route add default via 10.7.0.1");
  SourceWatcher watcher;
  ip("link set up0 down");
  EXPECT_EQ(watcher.await(0), 0U);
  ip("link set up0 name lan0");
  ip("link set lan0 up");
  ip("route add default via 10.7.0.1");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  ip("link del lan0");
  EXPECT_EQ(watcher.await(0), 0U);
  plug("usb0");
  ip("route add default via 10.7.0.1");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
}

TEST_F(NetlinkReachabilityTest, AModemIsKnownByItsKindAndMayHaveToDial) {
  for (const int type : {ARPHRD_PPP, ARPHRD_RAWIP, ARPHRD_NONE}) {
    const TunDevice tun("line0", type);
    const std::uint32_t kind = (type == ARPHRD_NONE ? 0 : kModem) | Flags::isDirect;
    SourceWatcher watcher;
    ip("link set line0 up");
    ip("route add default dev line0");
    EXPECT_EQ(watcher.await(kOnline | kind), kOnline | kind) << type;
    ip("link set line0 state DORMANT");
    EXPECT_EQ(watcher.await(kOnline | kind | kDials), kOnline | kind | kDials) << type;
  }
}

TEST_F(NetlinkReachabilityTest, AnInterfaceThatWaitsForItsNetworkIsNotThereYet) {
  SourceWatcher watcher;
  ip("route add default via 10.7.0.1");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  ip("link set up0 state DORMANT");
  EXPECT_EQ(watcher.await(0), 0U);
  ip("link set up0 state UP");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
}

TEST_F(NetlinkReachabilityTest, AStormIsOneReadingAndAnOverrunLosesNothing) {
  ip("route add default via 10.7.0.1");
  SourceWatcher watcher;
  std::string storm;  // far more than the socket holds
  for (int i = 0; i < 4000; ++i) {
    storm += "route add 10." + std::to_string(100 + i / 250) + "." + std::to_string(i % 250) +
             ".0/24 via 10.7.0.1\n";
  }
  {
    const HeldUp heldUp(watcher.queue());
    ASSERT_TRUE(host_->ipBatch(storm));
    ip("route del default");
  }
  EXPECT_EQ(watcher.await(0), 0U);
  ip("route add default via 10.7.0.1");
  EXPECT_EQ(watcher.await(kOnline), kOnline) << "it listens on after an overrun";
  EXPECT_LE(watcher.calls(), 4U)
      << "for the storm and for the last route, one call at once and one "
         "when it has settled";
}

TEST_F(NetlinkReachabilityTest, ASourceMayGoWhileNewsComeAndFromItsOwnCallback) {
  ip("route add default via 10.7.0.1");
  const auto queue = std::make_shared<LinuxSerialQueue>("watcher");
  NetlinkReachabilityService service(queue);
  int error = 0;
  std::promise<void> called;
  auto own = service.createWithAddress({16, 2}, error);
  ASSERT_TRUE(own);
  own->setCallback(
      [&] {
        own.reset();
        called.set_value();
      },
      {});
  own->setDispatchQueue(queue);
  std::thread flaps([&] {
    for (int i = 0; i < 50; ++i) {
      host_->ip("route del default");
      host_->ip("route add default via 10.7.0.1");
    }
  });
  for (int i = 0; i < 200; ++i) {
    auto source = service.createWithAddress({16, 2}, error);
    ASSERT_TRUE(source);
    const auto calls = std::make_shared<int>(0);
    source->setCallback([calls] { ++*calls; }, {});
    source->setDispatchQueue(queue);
    std::this_thread::yield();
    if (i % 2 == 0) source->setCallback({}, {});
  }
  flaps.join();
  called.get_future().wait();
  EXPECT_EQ(own, nullptr);
  EXPECT_TRUE(queue->stop(SerialQueue::Duration(10)));
}

TEST_F(NetlinkReachabilityTest, AnotherQueueThanTheOneThatListensMayBeChosen) {
  const auto elsewhere = std::make_shared<LinuxSerialQueue>("elsewhere");
  SourceWatcher watcher;
  std::promise<bool> there;
  watcher.source().setCallback(
      [&, once = false]() mutable {
        if (!std::exchange(once, true)) there.set_value(elsewhere->isCurrent());
      },
      {});
  watcher.source().setDispatchQueue(elsewhere);
  ip("route add default via 10.7.0.1");
  EXPECT_TRUE(there.get_future().get());
  watcher.source().setDispatchQueue(nullptr);
  EXPECT_TRUE(elsewhere->stop(SerialQueue::Duration(10)));
}

/// Has the kernel refuse routing sockets to the calling thread, as a service's sandbox does.
void forbidNetlink() {
  sock_filter program[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_socket, 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[0])),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, AF_NETLINK, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EAFNOSUPPORT),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog filter{std::size(program), program};
  ASSERT_EQ(prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0), 0);
  ASSERT_EQ(prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter), 0);
}

TEST(NetlinkRightsTest, WithoutTheRightToAskThereIsNoSourceButTheReason) {
  const auto queue = std::make_shared<LinuxSerialQueue>("watcher");
  std::thread([&] {
    forbidNetlink();
    for (const std::vector<std::string>& targets : {std::vector<std::string>{}, {"127.0.0.1"}}) {
      int error = 0;
      EXPECT_EQ(NetlinkReachabilityService(queue, targets).createWithAddress({16, 2}, error),
                nullptr);
      EXPECT_EQ(error, EAFNOSUPPORT);
    }
  }).join();
}

TEST(NetlinkMessagesTest, NoMessageReachesBeyondWhatWasReceived) {
  constexpr std::uint32_t kSize = sizeof(nlmsghdr);
  for (const std::uint32_t length : {0U, kSize - 1, kSize + 1, 0x8000'0000U + kSize, ~0U}) {
    const nlmsghdr received[] = {{kSize, RTM_NEWLINK, 0, 1, 0}, {length, RTM_NEWLINK, 0, 2, 0}};
    std::vector<unsigned> read;
    EXPECT_TRUE(NetlinkSocket::messagesIn(received, sizeof received, [&](const nlmsghdr& message) {
      read.push_back(message.nlmsg_seq);
      return true;
    }));
    EXPECT_THAT(read, ::testing::ElementsAre(1)) << length;
  }
}

}  // namespace
}  // namespace kifo::testing
