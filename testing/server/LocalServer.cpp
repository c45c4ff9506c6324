#include "testing/server/LocalServer.h"

#include <arpa/inet.h>
#include <microhttpd.h>
#include <netinet/in.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

namespace kifo::testing {

namespace {

constexpr auto jsonType = "application/json";
constexpr auto goodAnswer = R"({"code":0,"message":"ok"})";
constexpr std::size_t memoryOfAConnection = 2u << 20;  // Half of it is the read buffer.
constexpr unsigned mostConnections = 10'000;

/// A body as it is sent: `head`, as many "a" as are missing, and `tail`, `size` bytes in all. The
/// connection breaks at `end`.
struct Body {
  std::string head;
  std::string tail;
  std::uint64_t size = head.size() + tail.size();
  std::uint64_t end = size;

  static ssize_t read(void* context, std::uint64_t position, char* out, std::size_t most) {
    const auto& body = *static_cast<const Body*>(context);
    if (position >= body.end) return MHD_CONTENT_READER_END_WITH_ERROR;
    most = std::min(most, body.end - position);
    const std::uint64_t filled = body.size - body.tail.size();
    if (position < body.head.size()) return body.head.copy(out, most, position);
    if (position >= filled) return body.tail.copy(out, most, position - filled);
    most = std::min(most, filled - position);
    std::memset(out, 'a', most);
    return static_cast<ssize_t>(most);
  }
};

Body bodyOf(const Faults& faults, std::string good) {
  switch (faults.body) {
    case Faults::Body::GOOD:
      break;
    case Faults::Body::TRUNCATED:
      return {good.substr(0, good.size() / 2), ""};
    case Faults::Body::INVALID_UTF8:
      return {"{\"message\":\"\xff\xfe\xc0\"}", ""};
    case Faults::Body::EMPTY:
      return {"", ""};
    case Faults::Body::HUGE_BODY: {
      Body body{R"({"message":")", R"("})"};
      body.size = body.end = std::max<std::uint64_t>(faults.bodySize, body.size);
      return body;
    }
  }
  return {std::move(good), ""};
}

/// An address of either family as the system wants it.
sockaddr_storage addressOf(const std::string& host, int port) {
  sockaddr_storage address{};
  auto& four = reinterpret_cast<sockaddr_in&>(address);
  auto& six = reinterpret_cast<sockaddr_in6&>(address);
  if (inet_pton(AF_INET, host.c_str(), &four.sin_addr) == 1) {
    four.sin_family = AF_INET;
    four.sin_port = htons(static_cast<std::uint16_t>(port));
  } else if (inet_pton(AF_INET6, host.c_str(), &six.sin6_addr) == 1) {
    six.sin6_family = AF_INET6;
    six.sin6_port = htons(static_cast<std::uint16_t>(port));
  }
  return address;
}

int remotePort(MHD_Connection* connection) {
  const auto* info = MHD_get_connection_info(connection, MHD_CONNECTION_INFO_CLIENT_ADDRESS);
  // The port is at the same place in both families' addresses.
  const auto* address = reinterpret_cast<const sockaddr_in*>(info->client_addr);
  return ntohs(address->sin_port);
}

}  // namespace

struct LocalServer::Hit {
  Faults faults;
  int status = 0;  // In place of the answer's own; 0: none.
};

struct LocalServer::Reply {
  Answer answer;       // Without its body.
  bool isSent = true;  // Otherwise the connection is closed without a byte.
  Body body = {"", ""};
};

/// What the HTTP library calls, each on the thread of the connection.
struct LocalServer::Callbacks {
  struct Exchange {
    ReceivedRequest request;
    bool isBegun = false;
  };

  /// Comes first, with the request's target as it was written.
  static void* target(void*, const char* target, MHD_Connection*) {
    auto* exchange = new Exchange;
    exchange->request.target = target;
    return exchange;
  }

  /// Comes with the headers, then with each piece of the body, and at last with none.
  static MHD_Result request(void* server, MHD_Connection* connection, const char* path,
                            const char* method, const char*, const char* piece, std::size_t* size,
                            void** context) {
    auto& exchange = *static_cast<Exchange*>(*context);
    if (!std::exchange(exchange.isBegun, true)) return MHD_YES;
    if (*size > 0) {
      exchange.request.body.append(piece, std::exchange(*size, 0));
      return MHD_YES;
    }
    auto& request = exchange.request;
    request.method = method;
    request.path = path;
    request.remotePort = remotePort(connection);
    MHD_get_connection_values(connection, MHD_HEADER_KIND, header, &request.headers);
    request.complete();
    return send(connection, static_cast<LocalServer*>(server)->handle(std::move(request)));
  }

  static MHD_Result header(void* headers, MHD_ValueKind, const char* name, const char* value) {
    static_cast<decltype(ReceivedRequest::headers)*>(headers)->emplace(name, value ? value : "");
    return MHD_YES;
  }

  static MHD_Result send(MHD_Connection* connection, Reply reply) {
    if (!reply.isSent) return MHD_NO;
    constexpr std::size_t block = 64u << 10;
    auto* body = new Body(std::move(reply.body));
    MHD_Response* response = MHD_create_response_from_callback(
        body->size, block, Body::read, body, [](void* sent) { delete static_cast<Body*>(sent); });
    MHD_add_response_header(response, "Content-Type", reply.answer.contentType.c_str());
    for (const auto& [name, value] : reply.answer.headers) {
      MHD_add_response_header(response, name.c_str(), value.c_str());
    }
    const auto result =
        MHD_queue_response(connection, static_cast<unsigned>(reply.answer.status), response);
    MHD_destroy_response(response);
    return result;
  }

  static void end(void*, MHD_Connection*, void** context, MHD_RequestTerminationCode) {
    delete static_cast<Exchange*>(*context);
    *context = nullptr;
  }
};

LocalServer::LocalServer() : LocalServer(Options()) {}

LocalServer::LocalServer(Options options) : options_(std::move(options)), port_(options_.port) {}

LocalServer::~LocalServer() {
  stop();
}

int LocalServer::start() {
  if (daemon_ != nullptr) return port_;
  {
    const std::lock_guard lock(mutex_);
    running_ = true;
  }
  const sockaddr_storage address = addressOf(options_.host, port_);
  unsigned flags = MHD_USE_THREAD_PER_CONNECTION | MHD_USE_POLL_INTERNAL_THREAD;
  if (address.ss_family == AF_INET6) flags |= MHD_USE_DUAL_STACK;
  std::vector<MHD_OptionItem> options;
  if (!options_.certificate.empty()) {
    flags |= MHD_USE_TLS;
    options.push_back(
        {MHD_OPTION_HTTPS_MEM_CERT, 0, const_cast<char*>(options_.certificate.c_str())});
    options.push_back(
        {MHD_OPTION_HTTPS_MEM_KEY, 0, const_cast<char*>(options_.privateKey.c_str())});
  }
  options.push_back({MHD_OPTION_END, 0, nullptr});
  daemon_ = MHD_start_daemon(flags, 0, nullptr, nullptr, Callbacks::request, this,
                             MHD_OPTION_SOCK_ADDR, &address, MHD_OPTION_URI_LOG_CALLBACK,
                             Callbacks::target, nullptr, MHD_OPTION_NOTIFY_COMPLETED,
                             Callbacks::end, nullptr, MHD_OPTION_CONNECTION_MEMORY_LIMIT,
                             memoryOfAConnection, MHD_OPTION_CONNECTION_LIMIT, mostConnections,
                             MHD_OPTION_ARRAY, options.data(), MHD_OPTION_END);
  if (daemon_ == nullptr) return 0;
  return port_ = MHD_get_daemon_info(daemon_, MHD_DAEMON_INFO_BIND_PORT)->port;
}

void LocalServer::stop() {
  {
    const std::lock_guard lock(mutex_);
    running_ = false;
  }
  stopped_.notify_all();
  if (daemon_ != nullptr) MHD_stop_daemon(std::exchange(daemon_, nullptr));
}

std::string LocalServer::uri() const {
  return (options_.certificate.empty() ? "http://" : "https://") + options_.host + ":" +
         std::to_string(port_);
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

LocalServer::Reply LocalServer::handle(ReceivedRequest request) {
  if (auto answer = control(request)) {
    Body body{std::move(answer->body), ""};
    return {*std::move(answer), true, std::move(body)};
  }
  const Hit hit = this->hit(request.path);
  Answer answer = answerTo(request);
  const bool isDropped = hit.faults.connection == Faults::Connection::DROP;
  if (hit.status != 0) answer.status = hit.status;
  request.status = isDropped ? 0 : answer.status;
  const auto kept = requests_.add(std::move(request));
  Observer observer;
  {
    const std::lock_guard lock(mutex_);
    observer = observer_;
  }
  if (observer) observer(*kept);
  if (!waitOut(hit.faults.latency) || isDropped) return {{}, false};
  if (hit.faults.body != Faults::Body::GOOD) answer.contentType = jsonType;
  Body body = bodyOf(hit.faults, std::move(answer.body));
  if (hit.faults.connection == Faults::Connection::DIE) {
    body.size = std::max<std::uint64_t>(body.size, 2);
    body.end = body.size / 2;
  }
  return {std::move(answer), true, std::move(body)};
}

std::optional<LocalServer::Answer> LocalServer::control(const ReceivedRequest& request) {
  if (request.path == "/faults") return controlFaults(request);
  if (request.path != "/requests") return std::nullopt;
  if (request.method == "DELETE") requests_.clear();
  Value::List list;
  for (const auto& each : requests_.all()) list.push_back(each->toValue());
  return Answer{200, jsonFromValue(Value(std::move(list)))};
}

LocalServer::Answer LocalServer::controlFaults(const ReceivedRequest& request) {
  if (request.method == "POST") {
    std::string problem;
    const auto wanted = Faults::fromValue(request.json.value_or(Value()), problem);
    if (!wanted) return {400, jsonFromValue(Value{{"code", 400}, {"message", problem}})};
    setFaults(*wanted);
  }
  return {200, jsonFromValue(faults().toValue())};
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
