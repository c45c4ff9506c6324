#include "platform/linux/watch/WatchSocket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <future>

#include "testing/TemporaryDirectory.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

/// A tool that reads a line at a time.
class Tool {
 public:
  explicit Tool(const std::string& directory)
      : descriptor_(WatchSocket::connectTo(directory, getpid())) {}
  ~Tool() { leave(); }
  Tool(const Tool&) = delete;
  Tool& operator=(const Tool&) = delete;

  void leave() {
    if (descriptor_ >= 0) ::close(std::exchange(descriptor_, -1));
  }
  void ask(const std::string& text) { send(descriptor_, text.data(), text.size(), MSG_NOSIGNAL); }
  /// The next line; none when the host has closed.
  std::optional<std::string> line() {
    std::size_t end = 0;
    while ((end = input_.find('\n')) == std::string::npos) {
      char bytes[4096];
      const ssize_t size = recv(descriptor_, bytes, sizeof bytes, 0);
      if (size <= 0) return std::nullopt;
      input_.append(bytes, static_cast<std::size_t>(size));
    }
    std::string line = input_.substr(0, end);
    input_.erase(0, end + 1);
    return line;
  }

 private:
  int descriptor_;
  std::string input_;
};

mode_t modeOf(const std::string& path) {
  struct stat status {};
  stat(path.c_str(), &status);
  return status.st_mode & 0777;
}

class WatchSocketTest : public ::testing::Test {
 protected:
  WatchService::Source source() {
    return {.greeting = [] { return "hello"; },
            .state = [](const auto& reply) { reply("the state"); },
            .followed = [this](bool isFollowed) { (isFollowed ? begun_ : ended_).set_value(); }};
  }

  kifo::testing::TemporaryDirectory home_;
  const std::string directory_ = home_.file("run");
  std::promise<void> begun_;
  std::promise<void> ended_;
};

TEST_F(WatchSocketTest, AToolIsGreetedAsksForTheStateAndFollows) {
  WatchSocket service(directory_);
  ASSERT_EQ(service.open(source()), "");
  EXPECT_EQ(service.open(source()), "") << "open already";
  EXPECT_THAT(WatchSocket::processes(directory_), ElementsAre(getpid()));
  service.publish("to nobody");
  Tool tool(directory_);
  EXPECT_EQ(tool.line(), "hello");
  tool.ask("state\n");
  EXPECT_EQ(tool.line(), "the state");
  tool.ask("follow\n");
  begun_.get_future().wait();
  service.publish("one");
  service.publish("two");
  EXPECT_EQ(tool.line(), "one");
  EXPECT_EQ(tool.line(), "two");
  tool.leave();
  ended_.get_future().wait();
  service.close();
  EXPECT_THAT(WatchSocket::processes(directory_), IsEmpty());
  EXPECT_NE(access((directory_ + "/" + std::to_string(getpid()) + ".sock").c_str(), F_OK), 0);
}

TEST_F(WatchSocketTest, ASlowToolLosesLinesAndIsToldHowMany) {
  constexpr int kLines = 100000;
  WatchSocket service(directory_, 64u << 10);
  ASSERT_EQ(service.open(source()), "");
  Tool tool(directory_);
  tool.ask("follow\n");
  begun_.get_future().wait();
  // It reads nothing meanwhile: the publisher neither waits for it nor keeps more than it may.
  for (int number = 0; number < kLines; ++number) service.publish(std::to_string(number));
  EXPECT_EQ(tool.line(), "hello");
  int expected = 0;
  std::int64_t lost = 0;
  while (expected < kLines) {
    const auto line = tool.line();
    ASSERT_TRUE(line);
    if (line->starts_with("{")) {
      const auto count = nlohmann::json::parse(*line).at("count").get<int>();
      lost += count;
      expected += count;
    } else {
      ASSERT_EQ(*line, std::to_string(expected)) << "out of order, or lost without being counted";
      ++expected;
    }
  }
  EXPECT_GT(lost, 0);
}

TEST_F(WatchSocketTest, OnlyThisUserGetsInAndNothingButTheTwoQuestionsIsTaken) {
  WatchSocket service(directory_);
  ASSERT_EQ(service.open(source()), "");
  EXPECT_EQ(modeOf(directory_), 0700u);
  EXPECT_EQ(modeOf(directory_ + "/" + std::to_string(getpid()) + ".sock"), 0600u);
  for (const std::string& text : {std::string("shutdown\n"), std::string(1000, 'x')}) {
    Tool tool(directory_);
    EXPECT_EQ(tool.line(), "hello");
    tool.ask(text);
    EXPECT_EQ(tool.line(), std::nullopt) << "the connection is closed";
  }
  const std::string shared = home_.file("shared");
  ASSERT_EQ(mkdir(shared.c_str(), 0700), 0);
  ASSERT_EQ(chmod(shared.c_str(), 0755), 0);
  EXPECT_EQ(WatchSocket(shared).open(source()), shared + " is not a directory of this user alone");
  EXPECT_THAT(WatchSocket(home_.file(std::string(100, 'd'))).open(source()),
              StartsWith("the path is too long"));
}

TEST_F(WatchSocketTest, ASocketOfAProcessThatWasKilledIsRemoved) {
  ASSERT_EQ(mkdir(directory_.c_str(), 0700), 0);
  const std::string stale = directory_ + "/999999.sock";
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, stale.c_str(), stale.size() + 1);
  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ::close(listener);
  WatchSocket service(directory_);
  ASSERT_EQ(service.open(source()), "");
  EXPECT_NE(access(stale.c_str(), F_OK), 0);
  EXPECT_THAT(WatchSocket::processes(directory_), ElementsAre(getpid()));
}

}  // namespace
}  // namespace kifo
