// A process that just exits must neither hang nor crash, whatever the SDK is doing.
#include <sstream>

#include "apps/server/LocalServer.h"
#include "platform/linux/DefaultsFile.h"
#include "testing/TemporaryDirectory.h"
#include "tests/linux/ChildProcess.h"

namespace kifo::testing {
namespace {

class ExitTest : public ::testing::Test {
 protected:
  ExitTest() {
    server_.setFaults({.latency = 1000.0, .on = server::Faults::On::LISTENER});
    server_.start();
  }
  int run(const std::string& way, const std::string& argument) {
    ChildProcess child({way, directory_.path(), argument});
    const std::string errors = child.errors();
    const int status = child.wait();
    if (status != 0) ADD_FAILURE() << errors;
    return status;
  }

  server::LocalServer server_;
  TemporaryDirectory directory_;
};

TEST_F(ExitTest, WithWorkThatNeverReturns) {
  EXPECT_EQ(run("request-under-way", server_.listenerUri()), 0);
  EXPECT_EQ(run("completion-never-returns", server_.apiUri()), 0);
  EXPECT_EQ(run("main-task-never-returns", ""), 0);
  EXPECT_EQ(run("answer-task-never-returns", ""), 0);
}

TEST_F(ExitTest, OfAForkedChildThatHasNoneOfItsParentsThreads) {
  // The leak check would look for the threads that the fork has left behind.
  ::setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
  EXPECT_EQ(run("fork-and-exit", server_.listenerUri()), 0);
}

TEST_F(ExitTest, WhileOtherThreadsArePrinting) {
  ChildProcess child({"print-while-exiting", directory_.path()});
  child.errors();
  EXPECT_EQ(child.wait(), 0);
}

TEST_F(ExitTest, KeepsAValueThatWasSetJustBefore) {
  EXPECT_EQ(run("set-and-exit", ""), 0);
  DefaultsFile::Values values;
  EXPECT_EQ(DefaultsFile(directory_.path()).read(values), DefaultsFile::State::sound);
  EXPECT_EQ(values["key"], DefaultsValue(std::string("kept")));
}

TEST_F(ExitTest, PrintsEveryLineThatWasPrintedBeforeInOrder) {
  ChildProcess child({"print-and-exit", directory_.path()});
  std::istringstream lines(child.errors());
  std::string line;
  int count = 0;
  while (std::getline(lines, line)) EXPECT_EQ(line, "Kifo Child: " + std::to_string(count++));
  EXPECT_EQ(count, 1000);
  EXPECT_EQ(child.wait(), 0);
}

}  // namespace
}  // namespace kifo::testing
