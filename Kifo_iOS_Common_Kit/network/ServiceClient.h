#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/inapp/AppCommunication.h"
#include "Kifo_iOS_Common_Kit/network/BaseResponse.h"
#include "Kifo_iOS_Common_Kit/network/JSONRequest.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"
#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"
#include "Kifo_iOS_Common_Kit/storage/DataManager.h"

namespace kifo {

/// Asks the server for its in-app answer.
class KIFO_EXPORT ServiceClientProtocol {
 public:
  using Headers = std::map<std::string, std::string>;
  using InAppCompletion =
      std::function<void(std::shared_ptr<AppCommunication> answer, std::optional<bool> flag)>;

  virtual ~ServiceClientProtocol() = default;

  /// The completion runs once, with null and no flag when no answer will come.
  virtual void getInAppCommunication(
      const std::optional<Headers>& headers,
      const std::optional<std::map<std::string, std::string>>& parameters,
      InAppCompletion completion) = 0;
};

/// The SDK's only HTTP client. It keeps a copy of each event's request in the store, decides
/// whether the request may go out now, sends it, and deals with the answer: rows are marked and
/// removed, refusals counted, and after a re-sent row the next one follows.
///
/// A new client is made for every event, every query and every re-send.
///
/// **Threading:** operations may be called from any thread and never wait; answers are dealt with
/// on the answer queue, statements on the main queue.
/// **Ownership:** made shared, because what is under way keeps its client alive.
/// **Errors:** console lines; completions get a null result.
class KIFO_EXPORT ServiceClient final : public ServiceClientProtocol,
                                        public std::enable_shared_from_this<ServiceClient> {
 public:
  using EventCompletion =
      std::function<void(std::shared_ptr<BaseResponse> answer, std::optional<bool> flag)>;

  /// Puts an event's parameters together; runs once at most, on any thread.
  using Composition = std::function<EventParameters()>;

  /// How many rows a pass might take; it always takes one.
  static constexpr int NUMBER_OF_SYNC_ITEM_PER_REQUEST = 10;

  static std::shared_ptr<ServiceClient> make();

  /// Posts an event to the listener's address. `headers` are carried but not sent. The
  /// composition runs when the parameters are first needed.
  void sendEvent(const Headers& headers, Composition composition, const std::string& requestId,
                 bool isNotificationEvent, EventCompletion completion);

  void getInAppCommunication(const std::optional<Headers>& headers,
                             const std::optional<std::map<std::string, std::string>>& parameters,
                             InAppCompletion completion) override;

  template <class Response>
  void sendRequest(JSONRequest<Response> request, const std::string& requestId,
                   bool isNotificationEvent);

  /// Sends the first stored row again; as long as the answers are 200, the next ones follow.
  void syncLogs();

  /// Takes up a pass that found no in-app answer yet, now that there is one.
  static void resumeSync();

  /// While true no stored row is taken up; for the SDK's stopping.
  static void setStopping(bool stopping);
  /// Forgets what is kept for the whole process: the count of refusals. For shutdown and tests.
  static void reset();

 private:
  /// A request whose answer type is no longer of interest.
  struct Outgoing {
    std::string method;
    std::shared_ptr<const RequestTexts> texts;
    std::optional<bool> isCached;
    std::function<void(std::optional<std::string_view> data)>
        complete;  ///< None: no answer to decode.
    std::function<void()> whenUnanswered;
    std::string requestId;
    bool isStored = false;  ///< Main queue only.
  };

  ServiceClient() = default;

  void send(std::shared_ptr<Outgoing> request, bool isNotificationEvent);
  static bool mayGoOut(const Outgoing& request, bool isNotificationEvent);
  static void cache(const std::shared_ptr<Outgoing>& request, Wake wake);
  static HttpRequest httpRequest(const Outgoing& request);

  void handleAnswer(const std::shared_ptr<Outgoing>& request, const HttpAnswer& answer);
  void handleSuccess(const std::shared_ptr<Outgoing>& request, const std::string& data);
  void handleRefusal(const Outgoing& request, int status);

  void passOn(const std::string& delivered);
  static bool mayStartPass();
  /// `delivered`, unless empty, is a row that was answered 200 and is removed with the same commit.
  void startPass(bool isQuiet, const std::string& delivered);
  bool mayTake(const std::optional<KifoLog>& log);
  void removeDelivered(const std::string& requestId);
  static void resend(const KifoLog& log);

  DataManager db_;
  std::vector<std::string> lastSyncRequestIds_;  ///< Main queue only.
  /// The pass that took the row has asked the gates, before it marked the row: once marked, a row
  /// that is not sent is lost.
  bool isDue_ = false;
};

template <class Response>
void ServiceClient::sendRequest(JSONRequest<Response> request, const std::string& requestId,
                                bool isNotificationEvent) {
  auto outgoing = std::make_shared<Outgoing>();
  outgoing->method = std::move(request.httpMethod);
  outgoing->texts = std::move(request.serviceUrl);
  outgoing->isCached = request.isCached;
  outgoing->requestId = requestId;
  outgoing->isStored = request.isCached.value_or(false);
  outgoing->whenUnanswered = std::move(request.whenUnanswered);
  outgoing->complete =
      [handler = std::move(request.completionHandler)](std::optional<std::string_view> data) {
        if (handler) handler(data ? decode<Response>(*data) : nullptr, std::nullopt, true);
      };
  send(std::move(outgoing), isNotificationEvent);
}

}  // namespace kifo
