#include <sched.h>
#include <sys/mount.h>

#include <fstream>
#include <sstream>
#include <thread>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "tests/namespaces/NetworkScene.h"

namespace kifo::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class NetworkTrouble : public NetworkScene {};

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

TEST_F(NetworkTrouble, ABlackHoleHoldsUpNeitherEventsNorTheStoreNorTheEnd) {
  start();
  ASSERT_TRUE(drains());
  setBlackHole(true);
  send("lost", 10);
  EXPECT_EQ(rowCount(), "10") << "stored while every request still waits";
  EXPECT_EQ(Kifo::networkStatus(), KifoNetworkStatus::ONLINE) << "the link says nothing of it";
  EXPECT_FALSE(shutDown(0.5)) << "the requests were cut short";
  EXPECT_EQ(lingering(), 0) << "what was given up may not arrive after all";
  EXPECT_THAT(received("lost"), IsEmpty());

  setBlackHole(false);
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

TEST_F(NetworkTrouble, AServerThatComesBackWithAnotherAddressIsFoundByItsName) {
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
    shutDown();
  }).join();
}

}  // namespace
}  // namespace kifo::testing
