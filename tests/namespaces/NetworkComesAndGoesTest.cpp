#include <algorithm>
#include <atomic>
#include <numeric>
#include <string>
#include <thread>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/PayloadKeys.h"
#include "tests/namespaces/NetworkScene.h"

namespace kifo::testing {
namespace {

using ::testing::Each;
using ::testing::ElementsAreArray;

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

  /// Everything that has to hold around a loss of the network.
  template <class Lose, class Restore>
  void loseAndRestore(const Lose& lose, const Restore& restore) {
    send("before", 1);
    ASSERT_TRUE(awaitReceived("before", 1));
    EXPECT_THAT(values("before", Constants::NETWORK_STATUS), Each("wifi"));
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
    EXPECT_THAT(values("after", Constants::NETWORK_STATUS), Each("wifi"));
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
  const std::int64_t lost = Kifo::statistics().sinceInitialize.givenUp();
  std::int64_t arrived = 0;
  for (int i = 0; i < kThreads; ++i) {
    auto numbers = received("load" + std::to_string(i) + "-");
    arrived += std::ssize(numbers);
    std::ranges::sort(numbers);
    EXPECT_EQ(std::ranges::adjacent_find(numbers), numbers.end()) << "an event came twice";
  }
  EXPECT_EQ(arrived + lost, kThreads * kEach);
  EXPECT_LT(lost, 10);
}

}  // namespace
}  // namespace kifo::testing
