#include "testing/server/LocalServer.h"

#include <gtest/gtest.h>
#include <httplib.h>

#include <thread>

namespace kifo::testing {
namespace {

using namespace std::chrono_literals;
constexpr auto eventPath = "/sdkListenerEvent";
constexpr auto apiPath = "/getInAppCommunication";
constexpr auto eventBody = R"({"name":"page_in"})";

class LocalServerTest : public ::testing::Test {
 protected:
  LocalServerTest() { server_.start(); }

  httplib::Client client() {
    httplib::Client client("127.0.0.1", server_.port());
    client.set_keep_alive(true);
    client.set_read_timeout(30);
    return client;
  }

  httplib::Result postEvent() { return client().Post(eventPath, eventBody, "application/json"); }

  LocalServer server_;
};

TEST_F(LocalServerTest, keeps_what_was_received_as_it_was_sent) {
  const auto result =
      client().Post("/sdkListenerEvent?name=a%20%26%2Bb&name2=%C3%A9",
                    {{"LocalOrigin", "com.example.shop"}}, eventBody, "application/json");
  ASSERT_TRUE(result);
  EXPECT_EQ(result->status, 200);
  EXPECT_EQ(result->body, R"({"code":0,"message":"ok"})");
  ASSERT_TRUE(server_.requests().waitFor(1, 0s));
  const auto request = server_.requests().on(eventPath).front();
  EXPECT_EQ(request->method, "POST");
  EXPECT_EQ(request->target, "/sdkListenerEvent?name=a%20%26%2Bb&name2=%C3%A9");
  EXPECT_EQ(request->query,
            (std::map<std::string, std::string>{{"name", "a &+b"}, {"name2", "é"}}));
  EXPECT_EQ(request->header("localorigin"), "com.example.shop");
  EXPECT_EQ(request->headers.count("REMOTE_ADDR"), 0u);
  EXPECT_EQ(request->text("name"), "page_in");
  EXPECT_EQ(request->status, 200);
}

TEST_F(LocalServerTest, takes_a_query_of_a_whole_event_however_long) {
  const std::string value(300'000, 'x');
  auto connection = client();
  for (int i = 0; i < 2; ++i) {
    ASSERT_TRUE(connection.Post("/sdkListenerEvent?text=" + value, eventBody, "application/json"));
  }
  EXPECT_EQ(server_.requests().all().back()->query.at("text"), value);
  EXPECT_EQ(server_.requests().all().front()->remotePort,
            server_.requests().all().back()->remotePort);
}

TEST_F(LocalServerTest, answers_the_in_app_query_with_its_campaigns_and_other_paths_with_404) {
  server_.campaigns().serveText(R"({"model":[]})");
  EXPECT_EQ(client().Post(apiPath)->body, R"({"model":[]})");
  EXPECT_EQ(client().Get(apiPath)->body, R"({"model":[]})");
  EXPECT_EQ(client().Get("/elsewhere")->status, 404);
  server_.respond("/image", [](const ReceivedRequest&) {
    return LocalServer::Answer{302, "", "text/plain", {{"Location", "/other"}}};
  });
  EXPECT_EQ(client().Get("/image")->get_header_value("Location"), "/other");
}

TEST_F(LocalServerTest, comes_back_on_the_same_port_with_what_it_had_received) {
  const int port = server_.port();
  auto open = client();
  ASSERT_TRUE(open.Post(eventPath, eventBody, "application/json"));
  server_.stop();
  EXPECT_FALSE(postEvent());
  EXPECT_EQ(server_.start(), port);
  EXPECT_EQ(LocalServer({.port = port}).start(), 0) << "nobody else can have it";
  EXPECT_TRUE(postEvent());
  EXPECT_EQ(server_.requests().count(), 2u);
}

TEST_F(LocalServerTest, a_stop_does_not_wait_for_late_answers) {
  server_.setFaults({.latency = 600.0});
  std::thread sender([this] { EXPECT_FALSE(postEvent()); });
  ASSERT_TRUE(server_.requests().waitFor(1, 30s));
  server_.stop();
  sender.join();
}

TEST_F(LocalServerTest, serves_more_connections_than_it_has_threads) {
  LocalServer::Options options;
  options.threads = 2;
  LocalServer narrow(options);
  narrow.start();
  std::vector<std::unique_ptr<httplib::Client>> clients;
  for (int i = 0; i < 6; ++i) {
    clients.push_back(std::make_unique<httplib::Client>("127.0.0.1", narrow.port()));
    clients.back()->set_keep_alive(true);
    EXPECT_TRUE(clients.back()->Post(eventPath, eventBody, "application/json"));
  }
  EXPECT_EQ(narrow.requests().count(), 6u);
}

TEST_F(LocalServerTest, misbehaves_as_told_and_only_where_and_as_often_as_told) {
  server_.setFaults({.status = 500, .on = Faults::On::LISTENER, .times = 1});
  EXPECT_EQ(client().Post(apiPath)->status, 200);
  EXPECT_EQ(postEvent()->status, 500);
  EXPECT_EQ(postEvent()->status, 200);

  server_.setFaults({.everyOther = 503});
  EXPECT_EQ(postEvent()->status, 200);
  EXPECT_EQ(postEvent()->status, 503);
  EXPECT_EQ(postEvent()->status, 200);

  server_.setFaults({.connection = Faults::Connection::DROP});
  EXPECT_FALSE(postEvent());
  EXPECT_EQ(server_.requests().all().back()->status, 0);
  server_.setFaults({.connection = Faults::Connection::DIE});
  EXPECT_FALSE(postEvent());
}

TEST_F(LocalServerTest, spoils_bodies) {
  using Body = Faults::Body;
  const auto body = [this](Body wanted, std::size_t size = 0) {
    server_.setFaults({.body = wanted, .bodySize = size});
    return client().Post(apiPath)->body;
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
  const auto set =
      client().Post("/faults", R"({"status":401,"body":"empty","on":"api"})", "application/json");
  EXPECT_EQ(set->status, 200);
  EXPECT_EQ(nlohmann::json::parse(client().Get("/faults")->body)["status"], 401);
  EXPECT_EQ(client().Post(apiPath)->status, 401);
  for (const auto* wrong :
       {R"({"latancy":1})", R"({"status":"500"})", R"({"body":"bad"})", "[]", ""}) {
    EXPECT_EQ(client().Post("/faults", wrong, "application/json")->status, 400) << wrong;
  }
  EXPECT_EQ(server_.faults().status, 401);
  EXPECT_EQ(server_.requests().count(), 1u);
}

}  // namespace
}  // namespace kifo::testing
