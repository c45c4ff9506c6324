#include "testing/server/LocalServer.h"

#include "platform/linux/http/CurlTransport.h"
#include "tests/support/Sockets.h"

namespace kifo::testing {
namespace {

using namespace std::chrono_literals;
constexpr auto eventPath = "/sdkListenerEvent";
constexpr auto apiPath = "/getInAppCommunication";
constexpr auto eventBody = R"({"name":"page_in"})";

class LocalServerTest : public FakesTest {
 protected:
  LocalServerTest() { server_.start(); }

  HttpAnswer fetch(HttpRequest request) {
    request.url = server_.uri() + request.url;
    return answerTo(client_, std::move(request)).get();
  }
  HttpAnswer get(const std::string& path) { return fetch({.url = path}); }
  HttpAnswer post(const std::string& path, const std::string& body = "") {
    return fetch({.method = "POST", .url = path, .body = body});
  }
  HttpAnswer postEvent() { return post(eventPath, eventBody); }

  LocalServer server_;
  CurlTransport client_;
};

TEST_F(LocalServerTest, keeps_what_was_received_as_it_was_sent) {
  const auto answer = fetch({.method = "POST",
                             .url = "/sdkListenerEvent?name=a%20%26%2Bb&name2=%C3%A9",
                             .headers = {{"LocalOrigin", "com.example.shop"}},
                             .body = eventBody});
  EXPECT_EQ(answer.status, 200);
  EXPECT_EQ(answer.body, R"({"code":0,"message":"ok"})");
  ASSERT_TRUE(server_.requests().waitFor(1, 0s));
  const auto request = server_.requests().on(eventPath).at(0);
  EXPECT_EQ(request->method, "POST");
  EXPECT_EQ(request->target, "/sdkListenerEvent?name=a%20%26%2Bb&name2=%C3%A9");
  EXPECT_EQ(request->query,
            (std::map<std::string, std::string>{{"name", "a &+b"}, {"name2", "é"}}));
  EXPECT_EQ(request->header("localorigin"), "com.example.shop");
  EXPECT_EQ(request->text("name"), "page_in");
  EXPECT_EQ(request->status, 200);
}

TEST_F(LocalServerTest, takes_a_query_of_a_whole_event_however_long) {
  const std::string value(300'000, 'x');
  for (int i = 0; i < 2; ++i) {
    ASSERT_EQ(post("/sdkListenerEvent?text=" + value, eventBody).status, 200);
  }
  EXPECT_EQ(testing::last(server_.requests().all())->query.at("text"), value);
  EXPECT_EQ(server_.requests().all().at(0)->remotePort,
            testing::last(server_.requests().all())->remotePort);
  EXPECT_TRUE(post("/sdkListenerEvent?text=" + std::string(4u << 20, 'x')).error)
      << "too long even for it";
}

TEST_F(LocalServerTest, answers_the_in_app_query_with_its_campaigns_and_other_paths_with_404) {
  server_.campaigns().serveText(R"({"model":[]})");
  EXPECT_EQ(post(apiPath).body, R"({"model":[]})");
  EXPECT_EQ(get(apiPath).body, R"({"model":[]})");
  EXPECT_EQ(get("/elsewhere").status, 404);
  server_.respond("/image", [](const ReceivedRequest&) {
    return LocalServer::Answer{302, "", "text/plain", {{"Location", apiPath}}};
  });
  EXPECT_EQ(get("/image").body, R"({"model":[]})");
}

TEST_F(LocalServerTest, comes_back_on_the_same_port_with_what_it_had_received) {
  const int port = server_.port();
  ASSERT_EQ(postEvent().status, 200);
  server_.stop();
  EXPECT_TRUE(postEvent().error);
  EXPECT_EQ(server_.start(), port);
  EXPECT_EQ(LocalServer({.port = port}).start(), 0) << "nobody else can have it";
  EXPECT_EQ(postEvent().status, 200);
  EXPECT_EQ(server_.requests().count(), 2u);
}

TEST_F(LocalServerTest, a_stop_does_not_wait_for_late_answers) {
  server_.setFaults({.latency = 600.0});
  auto late = answerTo(client_, {.url = server_.apiUri()});
  ASSERT_TRUE(server_.requests().waitFor(1, 30s));
  server_.stop();
  EXPECT_TRUE(late.get().error);
}

TEST_F(LocalServerTest, misbehaves_as_told_and_only_where_and_as_often_as_told) {
  server_.setFaults({.status = 500, .on = Faults::On::LISTENER, .times = 1});
  EXPECT_EQ(post(apiPath).status, 200);
  EXPECT_EQ(postEvent().status, 500);
  EXPECT_EQ(postEvent().status, 200);

  server_.setFaults({.everyOther = 503});
  EXPECT_EQ(postEvent().status, 200);
  EXPECT_EQ(postEvent().status, 503);
  EXPECT_EQ(postEvent().status, 200);

  server_.setFaults({.connection = Faults::Connection::DROP});
  EXPECT_TRUE(postEvent().error);
  EXPECT_EQ(testing::last(server_.requests().all())->status, 0);
  server_.setFaults({.connection = Faults::Connection::DIE});
  EXPECT_TRUE(postEvent().error);
  EXPECT_EQ(testing::last(server_.requests().all())->status, 200) << "its answer is cut";
}

TEST_F(LocalServerTest, spoils_bodies) {
  using Body = Faults::Body;
  const auto body = [this](Body wanted, std::size_t size = 0) {
    server_.setFaults({.body = wanted, .bodySize = size});
    return post(apiPath).body;
  };
  EXPECT_EQ(body(Body::EMPTY), "");
  EXPECT_FALSE(nlohmann::json::accept(body(Body::TRUNCATED)));
  EXPECT_NE(body(Body::TRUNCATED), "");
  EXPECT_FALSE(nlohmann::json::accept(body(Body::INVALID_UTF8)));
  const auto huge = body(Body::HUGE_BODY, 3'000'000);
  EXPECT_EQ(huge.size(), 3'000'000u);
  EXPECT_TRUE(nlohmann::json::accept(huge));
}

TEST_F(LocalServerTest, takes_faults_by_http_and_refuses_what_is_none) {
  EXPECT_EQ(post("/faults", R"({"status":401,"body":"empty","on":"api"})").status, 200);
  EXPECT_EQ(nlohmann::json::parse(get("/faults").body)["status"], 401);
  EXPECT_EQ(post(apiPath).status, 401);
  for (const auto* wrong :
       {R"({"latancy":1})", R"({"status":"500"})", R"({"body":"bad"})", "[]", ""}) {
    EXPECT_EQ(post("/faults", wrong).status, 400) << wrong;
  }
  EXPECT_EQ(server_.faults().status, 401);
  EXPECT_EQ(server_.requests().count(), 1u);
}

}  // namespace
}  // namespace kifo::testing
