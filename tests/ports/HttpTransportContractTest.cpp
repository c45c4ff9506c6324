// What every transport promises, asked of libcurl against a server and of the fake.
#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <mutex>

#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "platform/linux/http/CurlTransport.h"
#include "testing/server/LocalServer.h"
#include "tests/support/Common.h"

namespace kifo::testing {
namespace {

constexpr auto kGoodPath = "/good";
constexpr auto kMutePath = "/sdkListenerEvent";

struct RealTransport {
  RealTransport() {
    server.respond(kGoodPath, [](const ReceivedRequest& request) {
      return LocalServer::Answer{.status = 201, .body = request.body};
    });
    server.setFaults({.latency = 1000.0, .on = Faults::On::LISTENER});
    server.start();
  }
  std::string url(const std::string& path) const { return server.uri() + path; }
  void settle() {}

  LocalServer server;
  std::shared_ptr<HttpTransport> transport = std::make_shared<CurlTransport>();
};

struct FakeTransport {
  FakeTransport() {
    fake->setHandler([](const HttpRequest& request) -> std::optional<HttpAnswer> {
      if (request.url == kMutePath) return std::nullopt;
      return HttpAnswer{std::nullopt, 201, request.body.value_or("")};
    });
  }
  std::string url(const std::string& path) const { return path; }
  void settle() { queue->runUntilIdle(); }

  std::shared_ptr<FakeSerialQueue> queue = std::make_shared<FakeSerialQueue>();
  std::shared_ptr<FakeHttpTransport> fake = std::make_shared<FakeHttpTransport>(queue);
  std::shared_ptr<HttpTransport> transport = fake;
};

/// The answers that came, in order.
class Answers {
 public:
  HttpTransport::Done take() {
    return [this](HttpAnswer answer) {
      const std::lock_guard lock(mutex_);
      answers_.push_back(std::move(answer));
      arrived_.notify_all();
    };
  }
  std::vector<HttpAnswer> waitFor(std::size_t count) {
    std::unique_lock lock(mutex_);
    arrived_.wait_for(lock, std::chrono::seconds(30), [&] { return answers_.size() >= count; });
    return answers_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable arrived_;
  std::vector<HttpAnswer> answers_;
};

const Error kCancelled{"http", 0, "cancelled"};

template <class Bench>
class HttpTransportContract : public FakesTest {
 protected:
  void send(const char* path, std::string body = {}) {
    bench_.transport->send(
        [this, path, body = std::move(body)] {
          ++made_;
          return HttpRequest{.method = "POST", .url = bench_.url(path), .body = body};
        },
        answers_.take());
  }
  std::vector<HttpAnswer> waitFor(std::size_t count) {
    bench_.settle();
    return answers_.waitFor(count);
  }

  Answers answers_;
  std::atomic<int> made_ = 0;
  Bench bench_;
};

using Benches = ::testing::Types<RealTransport, FakeTransport>;
TYPED_TEST_SUITE(HttpTransportContract, Benches);

TYPED_TEST(HttpTransportContract, EachRequestIsMadeOnceAndAnsweredOnceWhateverTheThread) {
  onThreads(4, [&](int index) {
    for (int each = 0; each < 50; ++each) this->send(kGoodPath, std::to_string(index * 50 + each));
  });
  std::vector<int> bodies;
  for (const auto& answer : this->waitFor(200)) {
    EXPECT_EQ(answer.error, std::nullopt);
    EXPECT_EQ(answer.status, 201);
    bodies.push_back(std::stoi(answer.body));
  }
  std::ranges::sort(bodies);
  EXPECT_EQ(std::ranges::unique(bodies).size(), 0u);
  EXPECT_EQ(bodies.size(), 200u);
  EXPECT_EQ(this->made_, 200);
}

TYPED_TEST(HttpTransportContract, StoppingCancelsWhatIsOpenAndWhatComesLaterAtOnce) {
  for (int index = 0; index < 3; ++index) this->send(kMutePath);
  this->bench_.transport->networkChanged();
  this->bench_.transport->stop();
  EXPECT_EQ(this->answers_.waitFor(3).size(), 3u);
  this->send(kGoodPath);
  this->bench_.transport->stop();
  const auto all = this->answers_.waitFor(4);
  ASSERT_EQ(all.size(), 4u);
  for (const auto& answer : all) {
    EXPECT_EQ(answer.error, kCancelled);
    EXPECT_EQ(answer.status, 0);
  }
}

TYPED_TEST(HttpTransportContract, CancellingAnswersWhatIsOpenAndNothingThatIsSentAfterwards) {
  for (int index = 0; index < 20; ++index) this->send(kMutePath);  // more than run at once
  this->bench_.transport->cancelOpen();
  this->send(kGoodPath, "later");
  const auto all = this->waitFor(21);
  ASSERT_EQ(all.size(), 21u);
  EXPECT_EQ(std::ranges::count(all, kCancelled, &HttpAnswer::error), 20);
  EXPECT_EQ(std::ranges::count(all, "later", &HttpAnswer::body), 1);
}

TYPED_TEST(HttpTransportContract, WhatIsSentWhileItStopsIsAnsweredOnceAllTheSame) {
  onThreads(5, [this](int thread) {
    if (thread == 4) return this->bench_.transport->stop();
    for (int each = 0; each < 50; ++each) this->send(kMutePath);
  });
  for (const auto& answer : this->answers_.waitFor(200)) EXPECT_EQ(answer.error, kCancelled);
}

TYPED_TEST(HttpTransportContract, ACompletionMaySendAgainAndMayStopTheTransport) {
  Answers second;
  this->bench_.transport->send([&] { return HttpRequest{.url = this->bench_.url(kGoodPath)}; },
                               [&](const HttpAnswer&) {
                                 this->send(kMutePath);
                                 this->bench_.transport->stop();
                                 this->bench_.transport->send([] { return HttpRequest{}; },
                                                              second.take());
                               });
  this->bench_.settle();
  ASSERT_EQ(second.waitFor(1).size(), 1u);
  EXPECT_EQ(second.waitFor(1)[0].error, kCancelled);
  ASSERT_EQ(this->answers_.waitFor(1).size(), 1u);
  EXPECT_EQ(this->answers_.waitFor(1)[0].error, kCancelled);
}

TEST(NullHttpTransport, AnswersEverythingWithCancelled) {
  Answers answers;
  nullPlatform().http->send([] { return HttpRequest{}; }, answers.take());
  EXPECT_EQ(answers.waitFor(1).at(0).error, kCancelled);
}

}  // namespace
}  // namespace kifo::testing
