#include "Kifo_iOS_Common_Kit/notifications/PushImage.h"

#include <future>
#include <thread>

#include "Kifo_iOS_Common_Kit/core/Url.h"
#include "platform/linux/http/CurlTransport.h"
#include "testing/server/LocalServer.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

using testing::InstalledFakePlatform;

TEST(Url, OnlyWhatCanBeAnAddressIsOne) {
  for (const char* good :
       {"http://a/b.jpg", "https://a/%20?x=1&y=(2)#f", "image.jpg", "file:///x"}) {
    EXPECT_TRUE(isUrl(good)) << good;
  }
  for (const char* bad : {"", "http://a/b c", "http://a/%2", "http://a/%zz", "http://a/\xc3\xbc",
                          "http://a/<b>", "http://a/\n"}) {
    EXPECT_FALSE(isUrl(bad)) << bad;
  }
}

/// Loads on a thread of its own while the test answers.
class PushImageTest : public testing::FakesTest {
 protected:
  PushImage loadAnsweredBy(const std::function<void()>& answer) {
    std::promise<void> sent;
    fake_.http->setHandler([&](const HttpRequest&) {
      sent.set_value();
      return std::nullopt;
    });
    PushImage image;
    std::thread loader([&] { image = loadPushImage("HTTP://host/image.png", 60.0); });
    sent.get_future().wait();
    answer();
    loader.join();
    return image;
  }
};

TEST_F(PushImageTest, AnAnswerThatIsNoSuccessGivesItsStatusAndAFailureOrAStopItsMessage) {
  const auto missing = loadAnsweredBy([&] { fake_.http->answer(0, 404, "not found page"); });
  EXPECT_EQ(missing.bytes, std::nullopt);
  EXPECT_EQ(missing.error, "HTTP status 404");
  const auto failed = loadAnsweredBy([&] { fake_.http->fail(1, 6, "Could not resolve host"); });
  EXPECT_EQ(failed.error, "Could not resolve host");
  const auto empty = loadAnsweredBy([&] { fake_.http->answer(2, 204, ""); });
  EXPECT_EQ(empty.bytes, std::nullopt);
  EXPECT_EQ(empty.error, "the answer is empty");
  EXPECT_EQ(loadAnsweredBy([&] { fake_.http->stop(); }).error, "cancelled");
}

TEST_F(PushImageTest, OnlyABodyThatBeginsAsAnImageDoesCounts) {
  std::size_t index = 0;
  const auto load = [&](const std::string& body) {
    return loadAnsweredBy([&] { fake_.http->answer(index++, 200, body); });
  };
  for (const char* good : {"\xff\xd8\xff\xe0", "GIF89a", "BM6", "RIFF1234WEBPVP8 ",
                           "\x01\x02\x03\x20"
                           "ftypavif",
                           "<?xml version=\"1.0\"?>\n<svg>"}) {
    EXPECT_EQ(load(good).bytes, good);
  }
  for (const char* bad : {"<!DOCTYPE html><p>Log in to this network", "{}", "RIFF1234WAVEfmt ",
                          "RIFF", "ftyp", "\x89PNG"}) {
    EXPECT_EQ(load(bad).error, "the answer is no image") << bad;
  }
}

TEST_F(PushImageTest, NoAnswerEndsAtTheLimitAndALateOneFindsNobody) {
  const auto image = loadPushImage("http://host/image.png", 0.01);
  EXPECT_EQ(image.error, "timed out");
  EXPECT_TRUE(fake_.http->answer(0, 200, "late"));
}

TEST_F(PushImageTest, OtherSchemesNeverReachTheTransportAndTheRequestCarriesTheLimits) {
  for (const char* url : {"file:///etc/passwd", "ftp://host/x", "image.jpg"}) {
    EXPECT_FALSE(loadPushImage(url, 0.0).bytes) << url;
  }
  loadPushImage("http://host/image.png", 0.0);
  ASSERT_EQ(fake_.http->count(), 1U);
  EXPECT_EQ(fake_.http->requests()[0].maximumBodySize, 10U << 20);
  EXPECT_EQ(fake_.http->requests()[0].method, "GET");
  EXPECT_EQ(fake_.http->requests()[0].body, std::nullopt);
}

TEST_F(PushImageTest, AskedOnTheThreadOfASystemsTransportTheWaitEndsAtItsLimit) {
  Platform platform = fake_.platform();
  const auto transport = std::make_shared<CurlTransport>();
  platform.http = transport;
  Platform::install(std::move(platform));
  testing::LocalServer server;
  server.respond("/image", [](const auto&) {
    return testing::LocalServer::Answer{.body = "GIF89a", .contentType = "image/png"};
  });
  server.start();
  const std::string url = server.uri() + "/image";
  std::promise<PushImage> loaded;
  transport->send([&] { return HttpRequest{.url = url}; },
                  [&](const HttpAnswer&) { loaded.set_value(loadPushImage(url, 0.05)); });
  EXPECT_EQ(loaded.get_future().get().error, "timed out");
  EXPECT_EQ(loadPushImage(url, 60.0).bytes, "GIF89a");
  transport->stop();
}

}  // namespace
}  // namespace kifo
