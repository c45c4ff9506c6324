#include <sched.h>
#include <sys/mount.h>

#include <atomic>
#include <fstream>
#include <numeric>
#include <sstream>
#include <thread>

#include "tests/namespaces/NetworkScene.h"

namespace kifo::testing {
namespace {

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
    EXPECT_TRUE(Kifo::shutdown(10.0));
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
  loseTheRoute();
  findTheRoute();
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

/// How many connections of the calling thread's namespace the kernel still tries to bring to an
/// end, with whatever they have left to say, though nobody holds them any more.
std::ptrdiff_t lingering() {
  std::ifstream table("/proc/thread-self/net/tcp");
  std::ptrdiff_t count = 0;
  for (std::string line; std::getline(table, line);) {
    std::istringstream words(line);
    std::string number, local, remote, state;
    words >> number >> local >> remote >> state;
    count += state == "04" ? 1 : 0;  // FIN_WAIT1
  }
  return count;
}

TEST_F(NetworkComesAndGoes, ABlackHoleHoldsUpNeitherEventsNorTheStoreNorTheEnd) {
  start();
  ASSERT_TRUE(drains());
  net("rule add prio 1 from 10.7.0.2 blackhole");
  send("lost", 10);
  EXPECT_EQ(rowCount(), "10") << "stored while every request still waits";
  EXPECT_EQ(Kifo::networkStatus(), KifoNetworkStatus::ONLINE) << "the link says nothing of it";
  EXPECT_FALSE(Kifo::shutdown(0.5)) << "the requests were cut short";
  EXPECT_EQ(lingering(), 0) << "what was given up may not arrive after all";
  EXPECT_THAT(received("lost"), IsEmpty());

  net("rule del prio 1 from 10.7.0.2 blackhole");
  start();
  ASSERT_TRUE(awaitReceived("lost", 10));
  EXPECT_TRUE(drains());
  EXPECT_THAT(received("lost"), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9));
}

/// Gives the calling thread, and those that it starts, a hosts file of their own.
class OwnHostsFile {
 public:
  explicit OwnHostsFile(const TemporaryDirectory& directory) : path_(directory.file("hosts")) {
    write("");
    isThere_ = unshare(CLONE_NEWNS) == 0 &&
               mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               mount(path_.c_str(), "/etc/hosts", nullptr, MS_BIND, nullptr) == 0;
  }
  [[nodiscard]] bool isThere() const { return isThere_; }
  void write(const std::string& lines) const { std::ofstream(path_) << lines; }

 private:
  const std::string path_;
  bool isThere_ = false;
};

TEST_F(NetworkComesAndGoes, AServerThatComesBackWithAnotherAddressIsFoundByItsName) {
  const TemporaryDirectory directory;
  // On a thread of its own, for what it changes cannot be changed back.
  std::thread([&] {
    const InNamespace inside(*host_);
    const OwnHostsFile hosts(directory);
    if (!hosts.isThere()) GTEST_SKIP() << "cannot have a hosts file of its own";
    hosts.write("10.99.0.1 kiosk-server.test\n");
    start("kiosk-server.test");
    ASSERT_TRUE(drains());
    loseTheRoute();
    send("moved", 3);
    net("addr del 10.99.0.1/32 dev lo");
    net("addr add 10.99.0.2/32 dev lo");
    hosts.write("10.99.0.2 kiosk-server.test\n");
    findTheRoute();
    EXPECT_TRUE(awaitReceived("moved", 3));
    EXPECT_TRUE(drains());
    EXPECT_THAT(received("moved"), ElementsAre(0, 1, 2));
    Kifo::shutdown(10.0);
  }).join();
}

}  // namespace
}  // namespace kifo::testing
