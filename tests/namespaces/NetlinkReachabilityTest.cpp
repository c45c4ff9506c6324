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
#include "platform/linux/reachability/NetlinkSocket.h"
#include "tests/namespaces/CabledTest.h"
#include "tests/support/HeldUp.h"

namespace kifo::testing {
namespace {

using Flags = ReachabilityFlags;

constexpr std::uint32_t kOnline = Flags::reachable;
constexpr std::uint32_t kModem = Flags::isWWAN | Flags::transientConnection;
constexpr std::uint32_t kDials =
    Flags::transientConnection | Flags::connectionRequired | Flags::connectionOnTraffic;

using NetlinkReachabilityTest = CabledTest;

TEST_F(NetlinkReachabilityTest, FollowsTheLinkItsCarrierAndTheDefaultRoute) {
  SourceWatcher watcher;
  EXPECT_EQ(watcher.read(), 0U) << "an address alone leads nowhere";
  host("route add default via 10.7.0.1");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  host("link set up0 down");
  EXPECT_EQ(watcher.await(0), 0U);
  host("link set up0 up");
  host("route add default via 10.7.0.1");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  net("link set host0 down");
  EXPECT_EQ(watcher.await(0), 0U) << "the cable was pulled out at the other end";
  net("link set host0 up");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  host("route del default");
  EXPECT_EQ(watcher.await(0), 0U);
  host("route add default dev up0");
  EXPECT_EQ(watcher.await(kOnline | Flags::isDirect), kOnline | Flags::isDirect);
  host("addr flush dev up0");  // takes the IPv4 routes along
  host("-6 route flush all");
  EXPECT_EQ(watcher.read(), 0U);
}

TEST_F(NetlinkReachabilityTest, RoutesThatLeadNowhereDoNotCount) {
  SourceWatcher watcher;
  for (const std::string kind : {"blackhole", "unreachable", "prohibit"}) {
    host("route replace " + kind + " default");
    host("-6 route replace " + kind + " default");
    EXPECT_EQ(watcher.read(), 0U) << kind;
  }
  host("-6 route flush type prohibit");
  host("route replace default dev lo");
  EXPECT_EQ(watcher.read(), 0U) << "what goes to the loopback does not leave the machine";
  host("route replace default via 10.7.0.1 table 77");
  host("route replace default dev lo");
  EXPECT_EQ(watcher.read(), 0U) << "another table serves those whom a rule sends there";
  host("route add 0.0.0.0/1 via 10.7.0.1");
  EXPECT_EQ(watcher.read(), 0U) << "half of the world is no default route";
}

TEST_F(NetlinkReachabilityTest, TheBestRouteThatWorksSaysWhatKindOfNetworkItIs) {
  const TunDevice tun("tun0", ARPHRD_PPP);
  host("link set tun0 up");
  host("route add default dev tun0 metric 50");
  SourceWatcher watcher;
  EXPECT_EQ(watcher.read(), kOnline | kModem | Flags::isDirect);
  host("route add default via 10.7.0.1 metric 10");
  EXPECT_EQ(watcher.read(), kOnline);
  net("link set host0 down");
  EXPECT_EQ(watcher.await(kOnline | kModem | Flags::isDirect), kOnline | kModem | Flags::isDirect);
  net("link set host0 up");
  EXPECT_EQ(watcher.await(kOnline), kOnline);

  host("route flush default");
  host("-6 route add default via fd07::1 metric 100");
  host("route add default dev tun0 metric 50");
  EXPECT_EQ(watcher.read(), kOnline | kModem | Flags::isDirect) << "metrics count across families";
}

TEST_F(NetlinkReachabilityTest, OneWorkingWayOfAMultipathRouteIsEnough) {
  host_->connect("up1", *net_, "host1");
  host("addr add 10.8.0.2/24 dev up1");
  SourceWatcher watcher;
  host("route add default nexthop via 10.7.0.1 dev up0 nexthop via 10.8.0.1 dev up1");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  net("link set host0 down");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  net("link set host1 down");
  EXPECT_EQ(watcher.await(0), 0U);
  net("link set host1 up");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
}

TEST_F(NetlinkReachabilityTest, AModemIsKnownByItsKindAndMayHaveToDial) {
  for (const int type : {ARPHRD_PPP, ARPHRD_RAWIP, ARPHRD_NONE}) {
    const TunDevice tun("line0", type);
    const std::uint32_t kind = (type == ARPHRD_NONE ? 0 : kModem) | Flags::isDirect;
    SourceWatcher watcher;
    host("link set line0 up");
    host("route add default dev line0");
    EXPECT_EQ(watcher.await(kOnline | kind), kOnline | kind) << type;
    host("link set line0 state DORMANT");
    EXPECT_EQ(watcher.await(kOnline | kind | kDials), kOnline | kind | kDials) << type;
  }
}

TEST_F(NetlinkReachabilityTest, AnInterfaceThatWaitsForItsNetworkIsNotThereYet) {
  SourceWatcher watcher;
  host("route add default via 10.7.0.1");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
  host("link set up0 state DORMANT");
  EXPECT_EQ(watcher.await(0), 0U);
  host("link set up0 state UP");
  EXPECT_EQ(watcher.await(kOnline), kOnline);
}

TEST_F(NetlinkReachabilityTest, AStormIsOneReadingAndAnOverrunLosesNothing) {
  host("route add default via 10.7.0.1");
  SourceWatcher watcher;
  std::string storm;  // far more than the socket holds
  for (int i = 0; i < 4000; ++i) {
    storm += "route add 10." + std::to_string(100 + i / 250) + "." + std::to_string(i % 250) +
             ".0/24 via 10.7.0.1\n";
  }
  {
    const HeldUp heldUp(watcher.queue());
    ASSERT_TRUE(host_->ipBatch(storm));
    host("route del default");
  }
  EXPECT_EQ(watcher.await(0), 0U);
  host("route add default via 10.7.0.1");
  EXPECT_EQ(watcher.await(kOnline), kOnline) << "it listens on after an overrun";
  EXPECT_LE(watcher.calls(), 4U)
      << "for the storm and for the last route, one call at once and one "
         "when it has settled";
}

TEST_F(NetlinkReachabilityTest, ASourceMayGoWhileNewsComeAndFromItsOwnCallback) {
  host("route add default via 10.7.0.1");
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
  ASSERT_EQ(called.get_future().wait_for(patience()), std::future_status::ready);
  EXPECT_EQ(own, nullptr);
  EXPECT_TRUE(queue->stop(SerialQueue::Duration(10)));
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
    EXPECT_THAT(read, ElementsAre(1)) << length;
  }
}

}  // namespace
}  // namespace kifo::testing
