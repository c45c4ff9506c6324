#pragma once

#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "testing/server/CampaignSource.h"
#include "testing/server/Faults.h"
#include "testing/server/RequestLog.h"

struct MHD_Connection;
struct MHD_Daemon;

namespace kifo::testing {

/// A server on this machine for the SDK: it answers the in-app query with campaigns and takes
/// events, keeps every request, and answers with faults when they are set.
///
///     kifo::testing::LocalServer server;
///     server.start();                                    // a free port of the loopback
///     configuration.apiUri = server.apiUri();
///     configuration.listenerUri = server.listenerUri();
///     …
///     server.requests().waitFor(1, 10s);
///
/// By HTTP it also answers, without keeping these in its log:
/// `GET /faults`, `POST /faults` (see `Faults`; a POST replaces all of them), `GET /requests` (all
/// that it received, a JSON array) and `DELETE /requests`.
///
/// **Threading:** thread-safe, but for `start` and `stop`, which are externally synchronised.
/// Responders and the observer run on the thread of the connection that the request came on.
/// **Errors:** `start` returns 0 when the port cannot be had. A request whose target and headers
/// take more than a megabyte is refused, its connection is closed.
class LocalServer {
 public:
  struct Options {
    std::string host = "127.0.0.1";
    int port = 0;  ///< 0: any free one.
    std::string apiPath = "/getInAppCommunication";
    std::string listenerPath = "/sdkListenerEvent";
    /// Both as PEM: the server then speaks TLS and `uri` begins with "https".
    std::string certificate = {};
    std::string privateKey = {};
  };

  /// What a host's own address answers.
  struct Answer {
    int status = 200;
    std::string body = {};
    std::string contentType = "application/json";
    std::map<std::string, std::string> headers = {};
  };
  using Responder = std::function<Answer(const ReceivedRequest&)>;
  using Observer = std::function<void(const ReceivedRequest&)>;

  LocalServer();
  explicit LocalServer(Options options);
  ~LocalServer();

  /// Returns the port once connections are accepted. After a `stop`, the same port is taken again.
  int start();
  /// Cuts every connection and closes the port. What was received stays in the log.
  void stop();

  [[nodiscard]] int port() const { return port_; }
  /// "http://127.0.0.1:40123", without a slash at the end.
  [[nodiscard]] std::string uri() const;
  [[nodiscard]] std::string apiUri() const { return uri() + options_.apiPath; }
  [[nodiscard]] std::string listenerUri() const { return uri() + options_.listenerPath; }

  [[nodiscard]] CampaignSource& campaigns() { return campaigns_; }
  [[nodiscard]] RequestLog& requests() { return requests_; }

  [[nodiscard]] Faults faults() const;
  void setFaults(const Faults& faults);

  /// Sets the responder for `path`, for images, redirects and the like. It takes precedence over
  /// the server's own paths.
  void respond(const std::string& path, Responder responder);

  /// Sets what is called with each request before it is answered, on the thread that answers.
  void observe(Observer observer);

 private:
  struct Hit;    // The faults that apply to one request.
  struct Reply;  // What goes back for one request.
  struct Callbacks;

  Reply handle(ReceivedRequest request);
  std::optional<Answer> control(const ReceivedRequest& request);
  Answer controlFaults(const ReceivedRequest& request);
  Answer answerTo(const ReceivedRequest& request);
  Hit hit(const std::string& path);
  /// False when the server was stopped meanwhile.
  bool waitOut(double seconds);

  const Options options_;
  int port_;
  MHD_Daemon* daemon_ = nullptr;  // A thread for each connection.
  CampaignSource campaigns_;
  RequestLog requests_;

  mutable std::mutex mutex_;
  std::condition_variable stopped_;
  // Guarded by mutex_.
  bool running_ = false;
  Faults faults_;
  std::uint64_t hits_ = 0;  // Requests that faults_ has met.
  std::map<std::string, Responder> responders_;
  Observer observer_;
};

}  // namespace kifo::testing
