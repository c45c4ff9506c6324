// A process that just exits must neither hang nor crash, whatever the SDK is doing.
#include <sstream>

#include "platform/linux/FileUserDefaults.h"
#include "testing/ChildProgram.h"
#include "testing/TemporaryDirectory.h"
#include "testing/server/LocalServer.h"
#include "tests/support/Common.h"

namespace kifo::testing {
namespace {

class ExitTest : public ::testing::Test {
 protected:
  ExitTest() {
    server_.setFaults({.latency = 1000.0, .on = Faults::On::LISTENER});
    server_.start();
  }
  /// Runs LinuxChild.cpp in one of its ways until it ends, which it has to do well, and hands back
  /// what it printed.
  std::string run(const std::string& way, const std::string& argument = "",
                  const ChildProgram::Environment& changes = {}) {
    ChildProgram child;
    child.start({KIFO_LINUX_CHILD, way, directory_.path(), argument}, changes,
                ChildProgram::Errors::kept);
    std::string lines = child.readErrors();
    EXPECT_EQ(child.wait(), 0) << way << ": " << lines;
    return lines;
  }

  LocalServer server_;
  TemporaryDirectory directory_;
};

TEST_F(ExitTest, WithWorkThatNeverReturns) {
  run("request-under-way", server_.listenerUri());
  run("completion-never-returns", server_.apiUri());
  run("main-task-never-returns");
  run("answer-task-never-returns");
}

TEST_F(ExitTest, OfAForkedChildThatHasNoneOfItsParentsThreads) {
  // The leak check would look for the threads that the fork has left behind.
  run("fork-and-exit", server_.listenerUri(), {{"ASAN_OPTIONS", "detect_leaks=0"}});
}

TEST_F(ExitTest, WhileOtherThreadsArePrinting) {
  run("print-while-exiting");
}

TEST_F(ExitTest, KeepsAValueThatWasSetJustBefore) {
  run("set-and-exit");
  DefaultsFile::Values values;
  EXPECT_EQ(DefaultsFile(directory_.path()).read(values), DefaultsFile::State::sound);
  EXPECT_EQ(values["key"], DefaultsValue(std::string("kept")));
}

TEST_F(ExitTest, PrintsEveryLineThatWasPrintedBeforeInOrder) {
  std::istringstream lines(run("print-and-exit"));
  std::string line;
  int count = 0;
  while (std::getline(lines, line)) EXPECT_EQ(line, "Kifo Child: " + std::to_string(count++));
  EXPECT_EQ(count, 1000);
}

}  // namespace
}  // namespace kifo::testing
