#include "platform/linux/LinuxConsole.h"

#include <sstream>

#include "tests/linux/Pipe.h"

namespace kifo::testing {
namespace {

using Seconds = SerialQueue::Duration;

class LinuxConsoleTest : public ::testing::Test {
 protected:
  Pipe pipe_;
  std::shared_ptr<FakeSerialQueue> queue_ = std::make_shared<FakeSerialQueue>();
  std::shared_ptr<LinuxConsole> console_ = std::make_shared<LinuxConsole>(queue_, pipe_.writing());
};

TEST_F(LinuxConsoleTest, AReaderThatDoesNotReadHoldsUpNobodyAndLosesOnlyTheNewestLines) {
  constexpr int kLines = 3000;
  for (int line = 0; line < kLines; ++line) {
    console_->write(std::to_string(line) + " " + std::string(1000, 'x'));
    queue_->runUntilIdle();
  }
  std::string text;
  for (int round = 0; round < 1000 && queue_->pending() > 0; ++round) {
    text += pipe_.read();
    queue_->advance(0.05);
  }
  text += pipe_.read();
  std::istringstream lines(text);
  std::string line;
  int count = 0;
  while (std::getline(lines, line) && line.ends_with('x')) {
    EXPECT_EQ(std::stoi(line), count++);
  }
  EXPECT_GT(count, 1000) << "a mebibyte of lines waits";
  EXPECT_EQ(line, "… " + std::to_string(kLines - count) + " lines dropped");
  console_->write("after");
  queue_->runUntilIdle();
  EXPECT_EQ(pipe_.read(), "after\n");
}

TEST_F(LinuxConsoleTest, AReaderThatHasGoneCostsTheLinesAndNothingElse) {
  pipe_.closeReading();
  console_->write("lost");
  queue_->runUntilIdle();  // a signal would end the process here
  console_->finish(Seconds(10));
  console_->write("lost too");
  EXPECT_EQ(queue_->pending(), 0u);
}

TEST_F(LinuxConsoleTest,
       WhatAStoppedQueueOrItsOwnEndLeavesIsPrintedThenAndAfterAStopEachLineAtOnce) {
  console_->write("left");
  queue_->discard();
  console_->finish(Seconds(10));
  EXPECT_EQ(pipe_.read(), "left\n");
  console_->write("at once");
  EXPECT_EQ(pipe_.read(), "at once\n");
  console_ = std::make_shared<LinuxConsole>(queue_, pipe_.writing());
  console_->write("left again");
  console_.reset();
  EXPECT_EQ(pipe_.read(), "left again\n");
  queue_->runUntilIdle();
  EXPECT_EQ(pipe_.read(), "") << "not twice";
}

}  // namespace
}  // namespace kifo::testing
