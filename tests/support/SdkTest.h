#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "testing/FakePlatform.h"
#include "tests/support/Common.h"
#include "tests/support/DatabaseRows.h"
#include "tests/support/HostDoubles.h"

namespace kifo {

/// The whole SDK on fakes, with a real database file in a directory of its own.
class SdkTest : public ::testing::Test {
 protected:
  static constexpr auto kApi = "http://api.test/inapp";

  SdkTest() { fake.reachability->setFlags(2); }

  /// A configuration that initialises: endpoints, a token, a bundle, the actor "actor".
  static KifoInitConfig configuration() {
    KifoInitConfig config;
    config.bundle = {"com.example.test"};
    config.apiUri = kApi;
    config.listenerUri = "http://listener.test/events";
    config.authorization = "token";
    config.applicationName = "Shop";
    config.actorId = "actor";
    return config;
  }
  /// Initialises, answers the in-app query with `answer` and runs everything that follows; the
  /// listener then answers every event with 200.
  void start(const std::string& answer =
                 R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":100}})",
             const KifoInitConfig& config = configuration()) {
    inAppAnswer = answer;
    answerWith(200);
    Kifo::initialize(config);
    fake.runUntilIdle();
  }
  /// From now on every request is answered with `status`; the in-app query with the start's answer.
  void answerWith(int status, const std::string& body = R"({"code":0})") {
    fake.http->setHandler([status, body, answer = inAppAnswer](const HttpRequest& request) {
      if (isQuery(request)) return std::optional(HttpAnswer{{}, 200, answer});
      return std::optional(HttpAnswer{{}, status, body});
    });
  }
  /// Requests stay open from now on.
  void answerNothing() {
    fake.http->setHandler([](const HttpRequest&) { return std::optional<HttpAnswer>(); });
  }
  void setOnline(bool online) {
    fake.reachability->change(online ? 2 : 0);
    fake.runUntilIdle();
  }
  /// As if the process were killed and begun again on the same files: what is queued or under way
  /// is lost, and nothing is initialised.
  void restartProcess() {
    for (auto* queue :
         {&fake.mainQueue, &fake.answerQueue, &fake.reachabilityQueue, &fake.transportQueue}) {
      (*queue)->discard();
      *queue = std::make_shared<testing::FakeSerialQueue>(fake.executor);
    }
    Runtime::detach();
    fake.http = std::make_shared<testing::FakeHttpTransport>(fake.transportQueue);
    fake.reachability->setFlags(2);
    Platform::install(fake.platform());
  }

  /// The events that reached the transport so far, as their bodies.
  std::vector<nlohmann::json> events() const {
    std::vector<nlohmann::json> bodies;
    for (const auto& request : fake.http->requests()) {
      if (!isQuery(request) && request.body) bodies.push_back(nlohmann::json::parse(*request.body));
    }
    return bodies;
  }
  std::vector<std::string> eventNames() const {
    std::vector<std::string> names;
    for (const auto& event : events()) names.push_back(event.value("name", ""));
    return names;
  }
  /// The last event of a name; null when there is none.
  nlohmann::json lastEvent(const std::string& name) const {
    nlohmann::json last;
    for (const auto& event : events()) {
      if (event.value("name", "") == name) last = event;
    }
    return last;
  }

  std::string databasePath() const {
    return Platform::current()->documentsDirectory + "/KifoLog.db";
  }
  /// Rows of a query, cells joined by "|", on the database file as another process would see it.
  std::vector<std::string> rows(const std::string& query) const {
    return testing::databaseRows(databasePath(), query);
  }

  testing::InstalledFakePlatform fake;
  std::string inAppAnswer;

 private:
  static bool isQuery(const HttpRequest& request) { return request.url.starts_with(kApi); }
};

}  // namespace kifo
