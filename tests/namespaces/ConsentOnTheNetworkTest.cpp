
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <sstream>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/notifications/NotificationManager.h"
#include "tests/namespaces/NetworkScene.h"
#include "tests/support/Sockets.h"

namespace kifo::testing {
namespace {

using Counters = std::map<std::string, std::string>;

class ConsentOnTheNetwork : public NetworkScene {
 protected:
  /// What the kernel of this namespace has sent for programs: TCP of both families, UDP and all of
  /// IPv4. Packets of its own, such as a neighbour's discovery, are not among it.
  static Counters sent() {
    const std::set<std::string> wanted = {"Ip OutRequests", "Tcp ActiveOpens", "Tcp OutSegs",
                                          "Udp OutDatagrams"};
    Counters counters;
    std::ifstream file("/proc/thread-self/net/snmp");
    for (std::string names, values; std::getline(file, names) && std::getline(file, values);) {
      std::istringstream name(names), value(values);
      std::string protocol, key, count;
      name >> protocol;
      value >> count;
      protocol.pop_back();  // a colon
      while (name >> key && value >> count) {
        if (wanted.contains(protocol + " " + key)) counters[protocol + " " + key] = count;
      }
    }
    std::ifstream sixth("/proc/thread-self/net/snmp6");
    for (std::string key, count; sixth >> key >> count;) {
      if (key == "Udp6OutDatagrams") counters[key] = count;
    }
    return counters;
  }
  /// The netlink sockets of this namespace, which is where the network would be watched.
  static std::size_t watchers() {
    std::ifstream file("/proc/thread-self/net/netlink");
    std::size_t lines = 0;
    for (std::string line; std::getline(file, line);) ++lines;
    return lines;
  }
  std::set<std::string> files() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(documents_.path())) {
      names.insert(entry.path().filename());
    }
    return names;
  }
  /// Waits until the transport has cancelled what it had: by a request that it begins afterwards.
  void awaitTransport() const {
    answerTo(*Platform::current()->http, {.url = endpoint("10.99.0.1", "/barrier")}).wait();
  }
  void callMuch() {
    send("tap", 20);
    KifoEventManager::sendPageInEvent(nullptr, "page");
    const auto push = std::make_shared<NotificationContent>();
    push->userInfo = {{"image", endpoint("10.99.0.1", "/a.png")}};
    NotificationManager::didReceive({"push", push}, [](const auto&) {});
    EXPECT_TRUE(awaitAnswers());
  }
};

TEST_F(ConsentOnTheNetwork, NoPacketLeavesAndNoFileIsMadeUntilItIsGivenNorOnceItIsRevoked) {
  Platform::install(platform());
  auto config = configuration();
  config.requiresConsent = true;
  const Counters before = sent();
  const std::size_t sockets = watchers();
  ASSERT_EQ(before.size(), 5U);
  Kifo::initialize(config);
  callMuch();
  EXPECT_EQ(sent(), before);
  EXPECT_EQ(watchers(), sockets);
  EXPECT_EQ(files(), std::set<std::string>());

  Kifo::giveConsent();
  ASSERT_TRUE(awaitReceived("sdk_initialize", 1));
  EXPECT_NE(sent(), before);
  EXPECT_NE(watchers(), sockets);
  EXPECT_TRUE(files().contains("KifoLog.db"));

  server_->setFaults({.latency = 3600.0});
  send("held", 20);
  Kifo::revokeConsent();
  ASSERT_TRUE(awaitAnswers());
  EXPECT_EQ(files(), std::set<std::string>{"consent.refused"});
  EXPECT_EQ(watchers(), sockets);
  server_->setFaults({});
  awaitTransport();
  const auto opened = [] { return sent()["Tcp ActiveOpens"]; };
  const std::string connections = opened();
  callMuch();
  EXPECT_EQ(opened(), connections);
  EXPECT_THAT(received("tap"), IsEmpty()) << "what was called without consent";
  EXPECT_THAT(received("page_in"), IsEmpty());
  EXPECT_EQ(files(), std::set<std::string>{"consent.refused"});
  Kifo::shutdown(10.0);
}

}  // namespace
}  // namespace kifo::testing
