// What every console sink promises, asked of the one on a descriptor and of the recording one; and
// what the SDK makes of a text before a sink gets it.
#include <sstream>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "platform/linux/LinuxConsole.h"
#include "tests/linux/Pipe.h"

namespace kifo::testing {
namespace {

struct DescriptorConsole {
  std::vector<std::string> lines() {
    queue->runUntilIdle();
    std::istringstream text(pipe.read());
    std::vector<std::string> all;
    for (std::string line; std::getline(text, line);) all.push_back(line);
    return all;
  }

  Pipe pipe;
  std::shared_ptr<FakeSerialQueue> queue = std::make_shared<FakeSerialQueue>();
  std::shared_ptr<ConsoleSink> sink = std::make_shared<LinuxConsole>(queue, pipe.writing());
};

struct KeptConsole {
  std::vector<std::string> lines() const { return console->lines(); }

  std::shared_ptr<RecordingConsole> console = std::make_shared<RecordingConsole>();
  std::shared_ptr<ConsoleSink> sink = console;
};

template <class Bench>
class ConsoleContract : public ::testing::Test {
 protected:
  Bench bench_;
};

using Benches = ::testing::Types<DescriptorConsole, KeptConsole>;
TYPED_TEST_SUITE(ConsoleContract, Benches);

TYPED_TEST(ConsoleContract, LinesOfManyThreadsStayWholeAndEachThreadsInOrder) {
  onThreads(4, [&](int thread) {
    for (int line = 0; line < 100; ++line) {
      this->bench_.sink->write(std::to_string(thread) + " " + std::to_string(line));
    }
  });
  std::vector<int> next(4);
  for (const std::string& line : this->bench_.lines()) {
    const int thread = line.at(0) - '0';
    EXPECT_EQ(line, std::to_string(thread) + " " + std::to_string(next.at(thread)++));
  }
  EXPECT_EQ(next, std::vector<int>(4, 100));
  nullPlatform().console->write("nowhere");
}

TEST(ConsoleTest, ControlCharactersOfATextAreShownEscapedAndNothingElseIsChanged) {
  const InstalledFakePlatform fake;
  Console::print("Tag:",
                 "a title\nTag: forged\r\x1b[2J\x07\x7f\xc2\x9b"
                 "31m");
  Console::printBare(std::string("tab\tzero\0end", 12));
  Console::print("Tag:", "Çay ☕ \"quoted\" \\ \xc2\xa0\xff");
  EXPECT_THAT(fake.console->lines(),
              ElementsAre("Tag: a title\\nTag: forged\\x0d\\x1b[2J\\x07\\x7f\\x9b31m",
                          "tab\\x09zero\\x00end", "Tag: Çay ☕ \"quoted\" \\ \xc2\xa0\xff"));
}

}  // namespace
}  // namespace kifo::testing
