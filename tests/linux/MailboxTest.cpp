#include "platform/linux/threads/Mailbox.h"

#include <poll.h>

#include "platform/linux/threads/Worker.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

/// The test is the consumer.
class MailboxTest : public ::testing::Test {
 protected:
  [[nodiscard]] bool isSignalled() const {
    pollfd polled{mailbox_.descriptor(), POLLIN, 0};
    return poll(&polled, 1, 0) == 1;
  }
  std::vector<int> taken() {
    mailbox_.endWait(isSignalled());
    return mailbox_.take();
  }
  void postFromAThreadOfTheSdk(int item) {
    Worker worker;
    ASSERT_TRUE(worker.start("kifo.test", [&] { mailbox_.post(item); }));
    ASSERT_TRUE(worker.join(SerialQueue::Duration(20)));
  }

  Mailbox<int> mailbox_;
};

TEST_F(MailboxTest, ItemsArriveInOrderAndOnlyTheFirstOfTheHostsWakesTheConsumer) {
  ASSERT_EQ(mailbox_.beginWait(Wakeups::kForever), Wakeups::kForever);
  mailbox_.post(1);
  EXPECT_TRUE(isSignalled());
  mailbox_.post(2);
  EXPECT_THAT(taken(), ElementsAre(1, 2));
  ASSERT_LE(mailbox_.beginWait(Wakeups::kForever), std::chrono::milliseconds(1));
  mailbox_.post(3);
  EXPECT_FALSE(isSignalled()) << "it looks for itself";
  mailbox_.endWait(false);
  EXPECT_EQ(mailbox_.beginWait(Wakeups::kForever), Wakeups::Duration::zero());
  EXPECT_THAT(taken(), ElementsAre(3));
}

TEST_F(MailboxTest, AThreadOfTheSdkWakesTheConsumerWhilePollingToo) {
  mailbox_.post(1);
  EXPECT_THAT(taken(), ElementsAre(1));
  ASSERT_LE(mailbox_.beginWait(Wakeups::kForever), std::chrono::milliseconds(1));
  postFromAThreadOfTheSdk(2);
  EXPECT_TRUE(isSignalled());
  EXPECT_THAT(taken(), ElementsAre(2));
}

TEST_F(MailboxTest, AWakeUpOfABusyConsumerEndsItsNextWaitOnce) {
  mailbox_.wake();
  EXPECT_EQ(mailbox_.beginWait(Wakeups::kForever), Wakeups::Duration::zero());
  mailbox_.endWait(isSignalled());
  EXPECT_EQ(mailbox_.beginWait(Wakeups::kForever), Wakeups::kForever);
}

TEST_F(MailboxTest, WhatComesAfterTheEndIsLeftToItsPoster) {
  mailbox_.close();
  EXPECT_FALSE(mailbox_.post(1));
  EXPECT_THAT(taken(), ElementsAre(1));
}

}  // namespace
}  // namespace kifo
