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

#include "Kifo_iOS_Common_Kit/core/Record.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/inapp/model/AppCommunication.h"
#include "Kifo_iOS_Common_Kit/network/BaseResponse.h"
#include "Kifo_iOS_Common_Kit/network/JSONRequest.h"
#include "Kifo_iOS_Common_Kit/network/OutgoingRequest.h"
#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"
#include "Kifo_iOS_Common_Kit/storage/DataManager.h"

namespace kifo {

/// Asks the server for its in-app answer.
class ServiceClientProtocol {
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

/// The SDK's only HTTP client. It stores a copy of each event's request, decides whether the
/// request may go out now, sends it, and handles the answer: rows are marked and removed, refusals
/// counted, and after a re-sent row the next one follows. docs/event-path.md shows the sequence.
///
/// A new client is made for every event, every query and every re-send.
///
/// **Threading:** operations may be called from any thread and never wait; answers are handled on
/// the answer queue, statements and passes run on the main queue.
/// **Ownership:** made shared: what is under way keeps its client alive, and with it the runtime.
/// **Errors:** console lines; completions get a null result.
class ServiceClient final : public ServiceClientProtocol,
                            public std::enable_shared_from_this<ServiceClient> {
 public:
  static constexpr std::string_view LOG_TAG = "Kifo ServiceClient:";
  /// How many rows a pass might take; it always takes one. Kept for compatibility.
  static constexpr int NUMBER_OF_SYNC_ITEM_PER_REQUEST = 10;

  using EventCompletion =
      std::function<void(std::shared_ptr<BaseResponse> answer, std::optional<bool> flag)>;
  using Sender = std::shared_ptr<const Session::Identity>;

  static std::shared_ptr<ServiceClient> make(std::shared_ptr<Runtime> runtime = Runtime::current());

  /// Posts an event to the sender's listener address, with the sender's token and origin.
  /// `headers` are not sent. Kept for compatibility.
  void sendEvent(const Headers& headers, RequestParameters parameters, const Sender& sender,
                 const std::string& requestId, bool isNotificationEvent,
                 EventCompletion completion);

  void getInAppCommunication(const std::optional<Headers>& headers,
                             const std::optional<std::map<std::string, std::string>>& parameters,
                             InAppCompletion completion) override;

  template <class Response>
  void sendRequest(JSONRequest<Response> request, const std::string& requestId,
                   bool isNotificationEvent) {
    send(
        outgoing(std::move(request), requestId, isNotificationEvent, runtime_->session.identity()));
  }

  /// Begins a pass: sends the first stored row again; as long as the answers are 200, the next ones
  /// follow.
  void syncLogs();

  /// Begins, without a console line, the pass that found no in-app answer.
  void resumeSync();

 private:
  explicit ServiceClient(std::shared_ptr<Runtime> runtime);

  template <class Response>
  static std::shared_ptr<OutgoingRequest> outgoing(JSONRequest<Response> request,
                                                   const std::string& requestId,
                                                   bool isNotificationEvent, Sender sender);

  void send(const std::shared_ptr<OutgoingRequest>& request);
  bool mayGoOut(const OutgoingRequest& request) const;
  void storeCopy(const std::shared_ptr<OutgoingRequest>& request) const;
  void copied(OutgoingRequest& request, CopyOutcome outcome, bool hasCap) const;
  void countUndelivered(const OutgoingRequest& request) const;
  void handOver(const std::shared_ptr<OutgoingRequest>& request);
  HttpRequest httpRequest(const OutgoingRequest& request) const;

  void handleAnswer(const std::shared_ptr<OutgoingRequest>& request, const HttpAnswer& answer);
  void handleSuccess(const std::shared_ptr<OutgoingRequest>& request, const std::string& data);
  void handleRefusal(const OutgoingRequest& request, int status);
  void countRefusal();
  void countAnswer(const OutgoingRequest& request, bool isOk) const;
  void settle(OutgoingRequest& request);

  bool canSync() const;
  bool mayBeginPass();
  void takeNextRow(const std::shared_ptr<OutgoingRequest>& delivered);
  bool chooses(const std::optional<KifoLog>& row);
  void tookNextRow(const DataManager::Taken& taken);
  void resend(const KifoLog& log);
  void retryWhenLocked();

  [[nodiscard]] DataManager db() const { return DataManager(runtime_->store()); }

  const std::shared_ptr<Runtime> runtime_;
  // Main queue only.
  std::vector<std::string> lastSyncRequestIds_;
  std::optional<std::string> deliveredRow_;  ///< A row that this pass found delivered already.
  bool isQuiet_ = false;      ///< This pass prints no line of its own. Constant once it begins.
  bool isLockRetry_ = false;  ///< This pass follows one that found the file locked. Likewise.
};

template <class Response>
std::shared_ptr<OutgoingRequest> ServiceClient::outgoing(JSONRequest<Response> request,
                                                         const std::string& requestId,
                                                         bool isNotificationEvent, Sender sender) {
  using Origin = OutgoingRequest::Origin;
  auto made = std::make_shared<OutgoingRequest>();
  const bool isFresh = !request.isCached.value_or(false);
  made->origin = !isFresh ? Origin::stored : requestId.empty() ? Origin::query : Origin::event;
  made->id = requestId;
  made->method = std::move(request.httpMethod);
  made->texts = std::make_shared<const RequestTexts>(std::move(request.serviceUrl),
                                                     std::move(request.parameters));
  if (isFresh) made->sender = std::move(sender);
  made->isNotificationEvent = isNotificationEvent;
  made->hasRow = !isFresh;
  made->complete =
      [handler = std::move(request.completionHandler)](std::optional<std::string_view> data) {
        if (handler) handler(data ? decode<Response>(*data) : nullptr, std::nullopt, true);
      };
  return made;
}

}  // namespace kifo
