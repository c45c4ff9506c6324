#include "tests/support/SdkTest.h"

#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "tests/support/DatabaseRows.h"

namespace kifo {
namespace {

constexpr auto kApi = "http://api.test/inapp";
constexpr auto kListener = "http://listener.test/events";

bool isQuery(const HttpRequest& request) {
  return request.url.starts_with(kApi);
}

}  // namespace

SdkTest::SdkTest() {
  fake.reachability->setFlags(2);
}

KifoInitConfig SdkTest::configuration() {
  KifoInitConfig config;
  config.bundle = {"com.example.test"};
  config.apiUri = kApi;
  config.listenerUri = kListener;
  config.authorization = "token";
  config.applicationName = "Shop";
  config.actorId = "actor";
  return config;
}

void SdkTest::start(const std::string& answer, const KifoInitConfig& config) {
  inAppAnswer = answer;
  answerWith(200);
  Kifo::initialize(config);
  fake.runUntilIdle();
}

void SdkTest::answerWith(int status, const std::string& body) {
  fake.http->setHandler([status, body, answer = inAppAnswer](const HttpRequest& request) {
    if (isQuery(request)) return std::optional(HttpAnswer{{}, 200, answer});
    return std::optional(HttpAnswer{{}, status, body});
  });
}

void SdkTest::answerNothing() {
  fake.http->setHandler([](const HttpRequest&) { return std::optional<HttpAnswer>(); });
}

void SdkTest::setOnline(bool online) {
  fake.reachability->change(online ? 2 : 0);
  fake.runUntilIdle();
}

void SdkTest::restartProcess() {
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

std::vector<nlohmann::json> SdkTest::events() const {
  std::vector<nlohmann::json> bodies;
  for (const auto& request : fake.http->requests()) {
    if (!isQuery(request) && request.body) bodies.push_back(nlohmann::json::parse(*request.body));
  }
  return bodies;
}

std::vector<std::string> SdkTest::eventNames() const {
  std::vector<std::string> names;
  for (const auto& event : events()) names.push_back(event.value("name", ""));
  return names;
}

nlohmann::json SdkTest::lastEvent(const std::string& name) const {
  nlohmann::json last;
  for (const auto& event : events()) {
    if (event.value("name", "") == name) last = event;
  }
  return last;
}

std::string SdkTest::databasePath() const {
  return Platform::current()->documentsDirectory + "/KifoLog.db";
}

std::vector<std::string> SdkTest::rows(const std::string& query) const {
  return testing::databaseRows(databasePath(), query);
}

}  // namespace kifo
