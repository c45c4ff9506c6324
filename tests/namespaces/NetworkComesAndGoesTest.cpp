#include <linux/if_arp.h>

#include <algorithm>
#include <atomic>
#include <map>
#include <numeric>
#include <set>
#include <string>
#include <thread>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/PayloadKeys.h"
#include "tests/namespaces/NetworkScene.h"

namespace kifo::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAreArray;
using ::testing::UnorderedElementsAreArray;

/// A way in which a network is lost and comes back.
struct Loss {
  const char* name;
  const char* address;  ///< The server's.
  const char* setUp;    ///< `ip` commands inside the host, one a line, as the following.
  const char* lose;
  const char* restore;
};

constexpr Loss kLosses[] = {
    {"TheLinkGoesDownAndUp", "10.99.0.1", "", "link set up0 down\n",
     "link set up0 up\nroute add default via 10.7.0.1\n"},
    {"TheDefaultRouteIsRemovedAndRestored", "10.99.0.1", "", "route del default\n",
     "route add default via 10.7.0.1\n"},
    {"TheInterfaceIsRenamed", "10.99.0.1", "", "link set up0 down\nlink set up0 name lan7\n",
     "link set lan7 up\nroute add default via 10.7.0.1\n"},
    {"TheHostGetsAnotherAddress", "10.99.0.1", "",
     "link set up0 down\naddr del 10.7.0.2/24 dev up0\n",
     "addr add 10.7.0.9/24 dev up0\nlink set up0 up\nroute add default via 10.7.0.1\n"},
    {"IPv6Alone", "fd99::1",
     "addr flush dev up0\naddr add fd07::2/64 dev up0 nodad\nroute add default via fd07::1\n",
     "route del default via fd07::1\n", "route add default via fd07::1\n"},
};

class NetworkComesAndGoes : public NetworkScene {
 protected:
  static constexpr int kCount = 20;

  /// Everything that has to hold around a loss of the network. `capability`: what payloads say
  /// while it is there.
  template <class Lose, class Restore>
  void loseAndRestore(const Lose& lose, const Restore& restore,
                      const std::string& capability = "wifi") {
    send("before", 1);
    ASSERT_TRUE(awaitReceived("before", 1));
    EXPECT_THAT(values("before", Constants::NETWORK_STATUS), Each(capability));
    EXPECT_TRUE(drains());

    lose();
    ASSERT_TRUE(goesOffline());
    send("while", kCount);
    EXPECT_EQ(Kifo::networkStatus(), KifoNetworkStatus::OFFLINE);
    EXPECT_EQ(rows("select count(*) from KifoLog where ISSYNC = 1 and TRYCOUNT = 0").at(0),
              std::to_string(kCount));

    restore();
    ASSERT_TRUE(goesOnline());
    ASSERT_TRUE(awaitReceived("while", kCount));
    EXPECT_TRUE(drains());
    std::vector<int> inOrder(kCount);
    std::iota(inOrder.begin(), inOrder.end(), 0);
    EXPECT_THAT(received("while"), ElementsAreArray(inOrder)) << "each once, in order";

    send("after", 1);
    ASSERT_TRUE(awaitReceived("after", 1));
    EXPECT_THAT(values("after", Constants::NETWORK_STATUS), Each(capability));
    EXPECT_TRUE(shutDown());
  }
};

class NetworkLossTest : public NetworkComesAndGoes, public ::testing::WithParamInterface<Loss> {};

TEST_P(NetworkLossTest, WhatIsSentMeanwhileArrivesLaterInOrderAndOnce) {
  const Loss& loss = GetParam();
  ASSERT_TRUE(host_->ipBatch(loss.setUp));
  start(loss.address);
  loseAndRestore([&] { ASSERT_TRUE(host_->ipBatch(loss.lose)); },
                 [&] { ASSERT_TRUE(host_->ipBatch(loss.restore)); });
}

INSTANTIATE_TEST_SUITE_P(Losses, NetworkLossTest, ::testing::ValuesIn(kLosses),
                         [](const auto& loss) { return std::string(loss.param.name); });

TEST_F(NetworkComesAndGoes, AnotherInterfaceTakesThePlaceOfTheOneThatWent) {
  start();
  loseAndRestore([&] { host("link del up0"); },
                 [&] {
                   plug("usb0");
                   host("route add default via 10.7.0.1");
                 });
}

TEST_F(NetworkComesAndGoes, ThroughAModemPayloadsSayCellular) {
  host("route del default");
  const TunDevice modem("wwan0", ARPHRD_RAWIP);
  std::optional<TunDevice> provider;
  net_->run([&] { provider.emplace("line0", ARPHRD_RAWIP); });
  const Line line(modem, *provider);
  host("link set wwan0 up");
  host("addr add 10.8.0.2/32 dev wwan0");
  host("route add default dev wwan0 src 10.8.0.2");
  net("link set line0 up");
  net("route add 10.8.0.2/32 dev line0");
  start();
  loseAndRestore([&] { host("link set wwan0 down"); },
                 [&] {
                   host("link set wwan0 up");
                   host("route add default dev wwan0 src 10.8.0.2");
                 },
                 "cellular");
}

std::string particular(const Decision& decision, const std::string& key) {
  for (const auto& [name, value] : decision.particulars) {
    if (name == key) return value;
  }
  return {};
}

/// The events whose request was sent from the store, once, and failed.
std::set<std::string> givenUp(const RecordingInspector& inspector) {
  std::map<std::string, std::string> names;
  for (const auto& each : inspector.ofKind("composed")) {
    names[particular(each, "requestId")] = particular(each, "event");
  }
  std::set<std::string> events;
  for (const auto& each : inspector.ofKind("givenUp")) {
    events.insert(names[particular(each, "requestId")]);
  }
  return events;
}

TEST_F(NetworkComesAndGoes, AHundredFlapsUnderLoadLoseAndDoubleNothing) {
  constexpr int kFlaps = 100;
  constexpr int kThreads = 4;
  constexpr int kEach = 125;
  start();
  std::atomic<int> flaps = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&flaps, name = "load" + std::to_string(i) + "-"] {
      for (int event = 0; event < kEach; ++event) {
        for (int seen = flaps; seen < event * kFlaps / kEach; seen = flaps) flaps.wait(seen);
        send(name, 1, event);
      }
    });
  }
  bool follows = true;
  while (flaps < kFlaps) {
    const bool isSlow = flaps % 10 == 0;  // the others are as quick as can be
    if (isSlow) follows = follows && isOnlineAtLast();
    net_->setLink("host0", false);
    if (isSlow) follows = follows && goesOffline();
    net_->setLink("host0", true);
    ++flaps;
    flaps.notify_all();
  }
  for (auto& thread : threads) thread.join();
  ASSERT_TRUE(follows) << "the status follows a slow flap";
  // Once more, for what a flap answered with an error; an answer takes the rows that were given up,
  // or are under way, along.
  ASSERT_TRUE(isOnlineAtLast());
  loseAndFindTheRoute();
  send("end", 1);
  EXPECT_TRUE(drains());
  EXPECT_TRUE(awaitAnswers());
  // A stored request is sent again once: one that met a flap just then is given up.
  const auto lost = givenUp(decisions());
  for (int i = 0; i < kThreads; ++i) {
    const std::string name = "load" + std::to_string(i) + "-";
    std::vector<int> due;
    for (int event = 0; event < kEach; ++event) {
      if (!lost.contains(name + std::to_string(event))) due.push_back(event);
    }
    EXPECT_THAT(received(name), UnorderedElementsAreArray(due));
  }
  EXPECT_LT(lost.size(), 10U);
}

}  // namespace
}  // namespace kifo::testing
