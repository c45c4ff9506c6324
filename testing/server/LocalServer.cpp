#include "testing/server/LocalServer.h"

#include <algorithm>
#include <chrono>

#include "testing/server/HttpListener.h"

namespace kifo::testing {

namespace {

constexpr auto jsonType = "application/json";
constexpr auto goodAnswer = R"({"code":0,"message":"ok"})";

// The HTTP library adds these to what was received.
constexpr const char* addedHeaders[] = {"REMOTE_ADDR", "REMOTE_PORT", "LOCAL_ADDR", "LOCAL_PORT"};

ReceivedRequest received(const httplib::Request& request) {
  ReceivedRequest result;
  result.time = std::chrono::duration_cast<std::chrono::milliseconds>(
                    std::chrono::system_clock::now().time_since_epoch())
                    .count();
  result.method = request.method;
  result.path = request.path;
  result.target = request.target;
  if (const auto query = request.target.find('?'); query != std::string::npos) {
    result.query = parseQuery(std::string_view(request.target).substr(query + 1));
  }
  result.headers.insert(request.headers.begin(), request.headers.end());
  for (const auto* name : addedHeaders) result.headers.erase(name);
  result.body = request.body;
  auto json = nlohmann::json::parse(request.body, nullptr, /*allow_exceptions=*/false);
  if (!json.is_discarded()) result.json = std::move(json);
  result.remotePort = request.remote_port;
  return result;
}

std::string dumped(const nlohmann::json& json) {
  return json.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

void sendHuge(httplib::Response& response, std::size_t size) {
  static const std::string start = R"({"message":")";
  static const std::string end = R"("})";
  size = std::max(size, start.size() + end.size());
  response.set_content_provider(
      size, jsonType, [size](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
        std::string chunk(std::min<std::size_t>(length, 65536), 'a');
        for (std::size_t i = 0; i < chunk.size(); ++i) {
          const auto at = offset + i;
          if (at < start.size()) chunk[i] = start[at];
          if (at >= size - end.size()) chunk[i] = end[at - (size - end.size())];
        }
        return sink.write(chunk.data(), chunk.size());
      });
}

void sendHalf(httplib::Response& response, const std::string& body, HttpConnection& connection) {
  const auto size = std::max<std::size_t>(body.size(), 2);
  response.set_content_provider(
      size, jsonType, [body, &connection](std::size_t, std::size_t, httplib::DataSink& sink) {
        sink.write(body.data(), body.size() / 2);
        connection.cut();
        return false;
      });
}

void sendBody(httplib::Response& response, const Faults& faults,
              const LocalServer::Answer& answer) {
  switch (faults.body) {
    case Faults::Body::GOOD:
      return response.set_content(answer.body, answer.contentType);
    case Faults::Body::TRUNCATED:
      return response.set_content(answer.body.substr(0, answer.body.size() / 2), jsonType);
    case Faults::Body::INVALID_UTF8:
      return response.set_content("{\"message\":\"\xff\xfe\xc0\"}", jsonType);
    case Faults::Body::EMPTY:
      return response.set_content("", jsonType);
    case Faults::Body::HUGE_BODY:
      return sendHuge(response, faults.bodySize);
  }
}

}  // namespace

struct LocalServer::Hit {
  Faults faults;
  int status = 0;  // In place of the answer's own; 0: none.
};

LocalServer::LocalServer() : LocalServer(Options()) {}

LocalServer::LocalServer(Options options) : options_(std::move(options)), port_(options_.port) {}

LocalServer::~LocalServer() {
  stop();
}

int LocalServer::start() {
  if (listener_) return port_;
  {
    const std::lock_guard lock(mutex_);
    running_ = true;
  }
  auto listener = std::make_unique<HttpListener>(
      options_.threads,
      [this](const httplib::Request& request, httplib::Response& response,
             HttpConnection& connection) { handle(request, response, connection); });
  const int bound = listener->start(options_.host, port_);
  if (bound == 0) return 0;
  listener_ = std::move(listener);
  port_ = bound;
  return bound;
}

void LocalServer::stop() {
  {
    const std::lock_guard lock(mutex_);
    running_ = false;
  }
  stopped_.notify_all();
  listener_.reset();
}

std::string LocalServer::uri() const {
  return "http://" + options_.host + ":" + std::to_string(port_);
}

Faults LocalServer::faults() const {
  const std::lock_guard lock(mutex_);
  return faults_;
}

void LocalServer::setFaults(const Faults& faults) {
  const std::lock_guard lock(mutex_);
  faults_ = faults;
  hits_ = 0;
}

void LocalServer::respond(const std::string& path, Responder responder) {
  const std::lock_guard lock(mutex_);
  responders_[path] = std::move(responder);
}

void LocalServer::observe(Observer observer) {
  const std::lock_guard lock(mutex_);
  observer_ = std::move(observer);
}

void LocalServer::handle(const httplib::Request& request, httplib::Response& response,
                         HttpConnection& connection) {
  if (handleControl(request, response)) return;
  auto incoming = received(request);
  const Hit hit = this->hit(incoming.path);
  const Answer answer = answerTo(incoming);
  const bool dropped = hit.faults.connection == Faults::Connection::DROP;
  incoming.status = dropped ? 0 : hit.status != 0 ? hit.status : answer.status;
  const auto kept = requests_.add(std::move(incoming));
  Observer observer;
  {
    const std::lock_guard lock(mutex_);
    observer = observer_;
  }
  if (observer) observer(*kept);
  if (!waitOut(hit.faults.latency) || dropped) return connection.cut();
  response.status = kept->status;
  for (const auto& [name, value] : answer.headers) response.set_header(name, value);
  if (hit.faults.connection == Faults::Connection::DIE) {
    return sendHalf(response, answer.body, connection);
  }
  sendBody(response, hit.faults, answer);
}

bool LocalServer::handleControl(const httplib::Request& request, httplib::Response& response) {
  if (request.path == "/faults") {
    handleFaults(request, response);
    return true;
  }
  if (request.path != "/requests") return false;
  if (request.method == "DELETE") requests_.clear();
  auto list = nlohmann::json::array();
  for (const auto& each : requests_.all()) list.push_back(each->toJson());
  response.set_content(dumped(list), jsonType);
  return true;
}

void LocalServer::handleFaults(const httplib::Request& request, httplib::Response& response) {
  if (request.method == "POST") {
    std::string problem;
    const auto wanted = Faults::fromJson(
        nlohmann::json::parse(request.body, nullptr, /*allow_exceptions=*/false), problem);
    if (!wanted) {
      response.status = 400;
      response.set_content(dumped({{"code", 400}, {"message", problem}}), jsonType);
      return;
    }
    setFaults(*wanted);
  }
  response.set_content(dumped(faults().toJson()), jsonType);
}

LocalServer::Answer LocalServer::answerTo(const ReceivedRequest& request) {
  Responder responder;
  {
    const std::lock_guard lock(mutex_);
    if (const auto found = responders_.find(request.path); found != responders_.end()) {
      responder = found->second;
    }
  }
  if (responder) return responder(request);
  if (request.path == options_.apiPath) return {200, campaigns_.answer(), jsonType, {}};
  if (request.path == options_.listenerPath) return {200, goodAnswer, jsonType, {}};
  return {404, R"({"code":404,"message":"nothing is here"})", jsonType, {}};
}

LocalServer::Hit LocalServer::hit(const std::string& path) {
  const std::lock_guard lock(mutex_);
  const bool meant =
      faults_.on == Faults::On::ALL ||
      path == (faults_.on == Faults::On::API ? options_.apiPath : options_.listenerPath);
  if (!meant || (faults_.times && hits_ >= *faults_.times)) return {};
  ++hits_;
  Hit hit{faults_, faults_.status};
  if (faults_.everyOther != 0 && hits_ % 2 == 0) hit.status = faults_.everyOther;
  return hit;
}

bool LocalServer::waitOut(double seconds) {
  if (seconds <= 0.0) return true;
  std::unique_lock lock(mutex_);
  return !stopped_.wait_for(lock, std::chrono::duration<double>(seconds),
                            [this] { return !running_; });
}

}  // namespace kifo::testing
