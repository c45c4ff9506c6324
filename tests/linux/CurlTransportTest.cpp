#include "platform/linux/http/CurlTransport.h"

#include <curl/curl.h>

#include <chrono>
#include <cmath>
#include <future>
#include <latch>
#include <set>
#include <stdexcept>

#include "testing/server/LocalServer.h"
#include "tests/support/Sockets.h"

namespace kifo::testing {
namespace {

using Answer = LocalServer::Answer;
using namespace std::chrono_literals;

class CurlTransportTest : public FakesTest {
 protected:
  CurlTransportTest() {
    for (const auto* path : {"/a", "/b", "/same", "/other", "/then", "/again", "/after"}) {
      server_.respond(path, [](const ReceivedRequest&) { return Answer{}; });
    }
    server_.start();
  }

  std::future<HttpAnswer> send(HttpRequest request) {
    return answerTo(*transport_, std::move(request));
  }
  HttpAnswer fetch(HttpRequest request) { return send(std::move(request)).get(); }
  HttpAnswer get(const std::string& path) { return fetch({.url = server_.uri() + path}); }
  /// The only request that the server saw on `path`.
  ReceivedRequest received(const std::string& path) {
    const auto all = server_.requests().on(path);
    EXPECT_EQ(all.size(), 1u);
    return all.empty() ? ReceivedRequest{} : *all.front();
  }
  /// The ports, and so the connections, from which requests came.
  std::set<int> connections() {
    std::set<int> ports;
    for (const auto& request : server_.requests().all()) ports.insert(request->remotePort);
    return ports;
  }

  /// Leaves `count` connections that the next requests can use.
  void keepConnections(int count) {
    std::latch all(count);
    server_.respond("/together", [&](const ReceivedRequest&) {
      all.arrive_and_wait();
      return Answer{};
    });
    std::vector<std::future<HttpAnswer>> answers;
    for (int index = 0; index < count; ++index) {
      answers.push_back(send({.url = server_.uri() + "/together"}));
    }
    for (auto& answer : answers) ASSERT_EQ(answer.get().status, 200);
  }

  void redirect(const std::string& path, int status, const std::string& to) {
    server_.respond(path, [=](const ReceivedRequest&) {
      return Answer{.status = status, .headers = {{"Location", to}}};
    });
  }

  LocalServer server_;
  std::shared_ptr<CurlTransport> transport_ = std::make_shared<CurlTransport>();
};

TEST_F(CurlTransportTest, SendsTheHeadersItIsGivenAndBesidesOnlyWhatHttpNeeds) {
  const std::string body(2u << 20, 'x');  // large enough for a client to ask before it sends
  const auto answer = fetch({.method = "POST",
                             .url = server_.uri() + "/a?x=%20%C3%A9&y=1",
                             .headers = {{"Authorization", "BearerMOBILE t"},
                                         {"Content-Type", "application/json"},
                                         {"SdkVersion", "1"}},
                             .body = body});
  EXPECT_EQ(answer.error, std::nullopt);
  const auto request = received("/a");
  EXPECT_EQ(request.method, "POST");
  EXPECT_EQ(request.target, "/a?x=%20%C3%A9&y=1");
  EXPECT_EQ(request.body, body);
  EXPECT_THAT(
      request.headers,
      UnorderedElementsAre(Pair("Authorization", "BearerMOBILE t"),
                           Pair("Content-Type", "application/json"), Pair("SdkVersion", "1"),
                           Pair("Host", "127.0.0.1:" + std::to_string(server_.port())),
                           Pair("Accept", "*/*"), Pair("Accept-Encoding", "gzip"),
                           Pair("Content-Length", std::to_string(body.size()))));
}

TEST_F(CurlTransportTest, AHeaderWithoutAValueIsSentAllTheSame) {
  const ListeningSocket mute;
  send({.url = mute.uri(), .headers = {{"LocalOrigin", ""}}});
  const int connection = mute.accept();
  std::string text(1024, '\0');
  text.resize(static_cast<std::size_t>(recv(connection, text.data(), text.size(), 0)));
  close(connection);
  EXPECT_THAT(text, HasSubstr("\r\nLocalOrigin:\r\n"));
}

TEST_F(CurlTransportTest, ABodyIsSentWhereThereIsOneAndItsLengthWhereOneIsDue) {
  fetch({.url = server_.uri() + "/get"});
  fetch({.method = "POST", .url = server_.uri() + "/post"});
  fetch({.method = "POST", .url = server_.uri() + "/nul", .body = std::string("a\0'b", 4)});
  fetch({.method = "DELETE", .url = server_.uri() + "/delete"});
  fetch({.method = "PUT", .url = server_.uri() + "/put", .body = "text"});
  EXPECT_EQ(received("/get").method, "GET");
  EXPECT_EQ(received("/get").headers.count("Content-Length"), 0u);
  EXPECT_EQ(received("/post").header("Content-Length"), "0");
  EXPECT_EQ(received("/post").headers.count("Content-Type"), 0u);
  EXPECT_EQ(received("/nul").body, std::string("a\0'b", 4));
  EXPECT_EQ(received("/delete").method, "DELETE");
  EXPECT_EQ(received("/put").method, "PUT");
  EXPECT_EQ(received("/put").body, "text");
}

TEST_F(CurlTransportTest, CompressedAnswersArriveDecompressedAndAreCappedAfterwards) {
  const std::string text(1u << 20, 'z');
  server_.respond("/z", [&](const ReceivedRequest&) {
    return Answer{.body = gzipped(text), .headers = {{"Content-Encoding", "gzip"}}};
  });
  EXPECT_EQ(get("/z").body, text);
  const auto capped = fetch({.url = server_.uri() + "/z", .maximumBodySize = text.size() - 1});
  EXPECT_EQ(capped.error.value(),
            (Error{"http", CURLE_FILESIZE_EXCEEDED, "the answer is larger than what is taken"}));
  EXPECT_EQ(capped.status, 0);
  EXPECT_THAT(capped.body, IsEmpty());
  server_.respond("/broken", [](const ReceivedRequest&) {
    return Answer{.body = "no gzip", .headers = {{"Content-Encoding", "gzip"}}};
  });
  EXPECT_EQ(get("/broken").error.value().code, CURLE_BAD_CONTENT_ENCODING);
}

TEST_F(CurlTransportTest, RedirectsAreFollowedAndCarryTheTokenOnlyToTheSameHost) {
  redirect("/away", 307, "http://localhost:" + std::to_string(server_.port()) + "/other");
  redirect("/near", 307, "/same");
  for (const auto* path : {"/away", "/near"}) {
    const auto answer =
        fetch({.method = "POST",
               .url = server_.uri() + path,
               .headers = {{"authorization", "BearerMOBILE t"}, {"SdkVersion", "1"}},
               .body = "{}"});
    EXPECT_EQ(answer.status, 200);
  }
  EXPECT_EQ(received("/same").header("Authorization"), "BearerMOBILE t");
  EXPECT_EQ(received("/other").headers.count("Authorization"), 0u);
  EXPECT_EQ(received("/other").header("SdkVersion"), "1");
  EXPECT_EQ(received("/other").body, "{}");
}

TEST_F(CurlTransportTest, RedirectsEndAtTenAndNeverLeaveHttp) {
  redirect("/loop", 302, "/loop");
  EXPECT_EQ(get("/loop").error.value().code, CURLE_TOO_MANY_REDIRECTS);
  EXPECT_EQ(server_.requests().on("/loop").size(), 11u);
  redirect("/file", 302, "file:///etc/passwd");
  EXPECT_EQ(get("/file").error.value().code, CURLE_UNSUPPORTED_PROTOCOL);
  redirect("/seen", 303, "/then");
  fetch({.method = "POST", .url = server_.uri() + "/seen", .body = "{}"});
  EXPECT_EQ(received("/then").method, "GET");
}

TEST_F(CurlTransportTest, ARefusedRequestIsAnErrorAndNothingIsSent) {
  const std::string url = server_.uri() + "/a";
  const std::vector<std::pair<HttpRequest, int>> cases = {
      {{.url = ""}, CURLE_URL_MALFORMAT},
      {{.url = "not a url"}, CURLE_URL_MALFORMAT},
      {{.url = "http://"}, CURLE_URL_MALFORMAT},
      {{.url = "file:///etc/passwd"}, CURLE_UNSUPPORTED_PROTOCOL},
      {{.url = "ftp://127.0.0.1/"}, CURLE_UNSUPPORTED_PROTOCOL},
      {{.url = "http://127.0.0.1:1/"}, CURLE_COULDNT_CONNECT},
      {{.url = url, .headers = {{"Authorization", "t\r\nEvil: 1"}}}, CURLE_BAD_FUNCTION_ARGUMENT},
      {{.url = url, .headers = {{"Authorization", std::string("t\0x", 3)}}},
       CURLE_BAD_FUNCTION_ARGUMENT},
      {{.url = url, .headers = {{"A: b", "c"}}}, CURLE_BAD_FUNCTION_ARGUMENT},
      {{.method = "GET\r\n", .url = url}, CURLE_BAD_FUNCTION_ARGUMENT}};
  for (const auto& [request, code] : cases) {
    const auto answer = fetch(request);
    ASSERT_TRUE(answer.error) << request.url;
    EXPECT_EQ(answer.error->domain, "http");
    EXPECT_EQ(answer.error->code, code) << request.url;
    EXPECT_THAT(answer.error->message, Not(IsEmpty()));
  }
  EXPECT_EQ(server_.requests().count(), 0u);
}

TEST_F(CurlTransportTest, AMakerThatThrowsIsAnErrorAndACompletionThatThrowsIsPrinted) {
  std::promise<HttpAnswer> first;
  transport_->send([]() -> HttpRequest { throw std::runtime_error("no request"); },
                   [&](HttpAnswer answer) { first.set_value(std::move(answer)); });
  EXPECT_EQ(first.get_future().get().error.value().code, CURLE_ABORTED_BY_CALLBACK);
  transport_->send([this] { return HttpRequest{.url = server_.uri() + "/a"}; },
                   [](const HttpAnswer&) { throw std::runtime_error("in the host"); });
  EXPECT_EQ(get("/b").status, 200);
  transport_->stop();
  EXPECT_THAT(fake_.console->lines(),
              ElementsAre("Kifo HttpTransport: making a request threw: no request",
                          "Kifo HttpTransport: a completion threw: in the host"));
}

TEST_F(CurlTransportTest, WhatMayNotBeRepeatedGoesOutOnceWhenKeptConnectionsEndWithoutAByte) {
  struct Case {
    const char* method;
    bool mayRepeat;
    std::uint64_t dropped;
    std::size_t sent;
    int code;  ///< 0: answered.
  };
  for (const auto& each :
       {Case{"POST", false, 9, 1, CURLE_GOT_NOTHING}, Case{"POST", true, 9, 2, CURLE_GOT_NOTHING},
        Case{"POST", true, 1, 2, 0}, Case{"GET", false, 1, 2, 0}}) {
    keepConnections(3);
    server_.requests().clear();
    server_.setFaults({.connection = Faults::Connection::DROP, .times = each.dropped});
    const auto answer =
        fetch({.method = each.method, .url = server_.listenerUri(), .mayRepeat = each.mayRepeat});
    server_.setFaults({});
    EXPECT_EQ(server_.requests().count(), each.sent) << each.method << " " << each.mayRepeat;
    EXPECT_EQ(answer.error ? answer.error->code : 0, each.code) << each.method;
  }
}

TEST_F(CurlTransportTest, AMuteServerIsGivenUpWhenTheTimeIsOverEvenForThoseThatStillWait) {
  const ListeningSocket mute;
  const ListeningSocket idle;
  std::vector<std::future<HttpAnswer>> patient;
  for (int index = 0; index < 40; ++index) patient.push_back(send({.url = mute.uri()}));
  for (const auto& uri : {mute.uri(), idle.uri()}) {
    auto impatient = send({.url = uri, .timeout = 0.05});
    ASSERT_EQ(impatient.wait_for(20s), std::future_status::ready);
    EXPECT_EQ(impatient.get().error.value(),
              (Error{"http", CURLE_OPERATION_TIMEDOUT, "no whole answer came in time"}));
  }
  EXPECT_EQ(get("/other").status, 200) << "one host does not hold up another";
  for (const double timeout : {0.0, -1.0, std::nan("")}) {
    EXPECT_EQ(fetch({.url = "http://127.0.0.1:" + std::to_string(server_.port()) + "/a",
                     .timeout = timeout})
                  .error.value()
                  .code,
              CURLE_OPERATION_TIMEDOUT);
  }
  transport_->stop();
  for (auto& answer : patient) EXPECT_EQ(answer.get().error.value().message, "cancelled");
}

TEST_F(CurlTransportTest, ALateAnswerIsTakenAsLongAsThereIsTimeAndThatMayBeBeyondAllMeasure) {
  for (const double timeout : {60.0, 5000.0, 1e300, HUGE_VAL}) {
    server_.setFaults({.latency = 0.05, .times = 1});
    EXPECT_EQ(fetch({.url = server_.apiUri(), .timeout = timeout}).status, 200);
  }
}

TEST_F(CurlTransportTest, StoppingDoesNotWaitForACompletionThatNeverReturns) {
  const ListeningSocket mute;
  std::promise<void> entered;
  std::promise<void> release;
  std::promise<void> left;
  auto open = send({.url = mute.uri()});
  transport_->send([this] { return HttpRequest{.url = server_.uri() + "/a"}; },
                   [&](const HttpAnswer&) {
                     entered.set_value();
                     release.get_future().wait();
                     left.set_value();
                   });
  entered.get_future().wait();
  transport_->stop();
  EXPECT_EQ(open.get().error.value().message, "cancelled");
  transport_.reset();
  release.set_value();
  left.get_future().wait();
}

TEST_F(CurlTransportTest, RequestsShareOneConnectionUntilTheNetworkChanges) {
  transport_->networkChanged();  // nothing is there yet that it could concern
  for (int index = 0; index < 20; ++index) get("/again");
  const auto before = connections();
  EXPECT_EQ(before.size(), 1u);
  transport_->networkChanged();
  server_.requests().clear();
  get("/after");
  get("/after");
  EXPECT_EQ(connections().size(), 1u);
  EXPECT_NE(connections(), before);
}

TEST_F(CurlTransportTest, ARequestUnderWaySurvivesANetworkChangeButItsConnectionIsUsedNoMore) {
  std::promise<int> arrived;
  std::promise<void> release;
  server_.respond("/slow", [&](const ReceivedRequest& request) {
    arrived.set_value(request.remotePort);
    release.get_future().wait();
    return Answer{};
  });
  auto slow = send({.url = server_.uri() + "/slow"});
  const int before = arrived.get_future().get();
  transport_->networkChanged();
  get("/other");  // the change has been taken in
  release.set_value();
  EXPECT_EQ(slow.get().status, 200);
  server_.requests().clear();
  for (int index = 0; index < 3; ++index) get("/after");
  EXPECT_FALSE(connections().contains(before));
}

TEST_F(CurlTransportTest, ARequestOverAnAddressThatIsGoneEndsWithAnError) {
  const ListeningSocket mute;
  transport_ = std::make_shared<CurlTransport>(
      CurlTransportOptions{.localAddresses = [] { return std::set<std::string>{"192.0.2.1"}; }});
  auto stranded = send({.url = mute.uri()});
  const int connection = mute.accept();
  char byte = 0;
  EXPECT_EQ(recv(connection, &byte, 1, 0), 1);  // the request is on its way
  transport_->networkChanged();
  ASSERT_EQ(stranded.wait_for(20s), std::future_status::ready);
  EXPECT_EQ(stranded.get().error.value(),
            (Error{"http", CURLE_RECV_ERROR, "the network that it was sent over is gone"}));
  close(connection);
}

}  // namespace
}  // namespace kifo::testing
