#include "Kifo_iOS_Common_Kit/network/ServiceClient.h"

#include <algorithm>
#include <atomic>
#include <limits>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/Inspect.h"
#include "Kifo_iOS_Common_Kit/core/Session.h"
#include "Kifo_iOS_Common_Kit/core/TokenFetch.h"
#include "Kifo_iOS_Common_Kit/core/Url.h"
#include "Kifo_iOS_Common_Kit/network/HTTPMethod.h"
#include "Kifo_iOS_Common_Kit/network/RequestLedger.h"

namespace kifo {
namespace {

constexpr double kTimeoutUntilKnown = 60.0;
constexpr int kOk = 200;
constexpr int kUnauthorized = 401;

/// 401 answers since the last 200. Touched on the answer queue only, but for a reset.
std::atomic<std::int8_t> unauthorizedCount = 0;
std::atomic<bool> isStopping = false;
/// A pass stopped for want of an in-app answer: what an earlier run stored is still to be sent.
std::atomic<bool> syncAwaitsAnswer = false;

void print(std::string_view message) {
  static const std::string& tag = *new std::string(logTag("ServiceClient"));
  Console::print(tag, message);
}

/// The address with its parameters as the query; an address that is no URL gets the query's
/// endpoint name behind it instead, and if that is none either, there is nothing that could be sent
/// anywhere.
std::shared_ptr<const RequestTexts> textsFor(const std::string& base,
                                             RequestTexts::Composition composition) {
  if (isUrl(base)) return std::make_shared<RequestTexts>(base, true, std::move(composition));
  const std::string fallback = base + "getInAppCommunication";
  if (!isUrl(fallback)) fatalError("the server's address is no URL: " + base);
  return std::make_shared<RequestTexts>(fallback, false, std::move(composition));
}

/// Header values end at their line: what a host puts into a token must not become another header.
std::string headerValue(std::string value) {
  std::erase_if(value, [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
  return value;
}

std::int64_t queueLimit() {
  const auto answer = Session::shared().appCommunication();
  if (!answer || !answer->configuration) return 0;
  return answer->configuration->offlineQueueSize.value_or(0);
}

}  // namespace

std::shared_ptr<ServiceClient> ServiceClient::make() {
  return std::shared_ptr<ServiceClient>(new ServiceClient);
}

void ServiceClient::setStopping(bool stopping) {
  isStopping = stopping;
}

void ServiceClient::reset() {
  unauthorizedCount = 0;
  syncAwaitsAnswer = false;
}

// Requests ---------------------------------------------------------------------------------------

void ServiceClient::sendEvent(const Headers& headers, Composition composition,
                              const std::string& requestId, bool isNotificationEvent,
                              EventCompletion completion) {
  JSONRequest<BaseResponse> request;
  request.httpMethod = rawValue(HTTPMethod::post);
  request.headers = headers;
  request.isCached = false;
  request.serviceUrl =
      textsFor(Session::shared().identity()->listenerUri, [composition = std::move(composition)] {
        return std::make_shared<const EventParameters>(composition());
      });
  if (completion) {
    request.completionHandler = [completion = std::move(completion)](auto result, const auto&,
                                                                     auto flag) {
      completion(result, flag);
    };
  }
  make()->sendRequest(std::move(request), requestId, isNotificationEvent);
}

void ServiceClient::getInAppCommunication(
    const std::optional<Headers>& headers,
    const std::optional<std::map<std::string, std::string>>& parameters,
    InAppCompletion completion) {
  JSONRequest<AppCommunication> request;
  request.httpMethod = rawValue(HTTPMethod::post);
  request.headers = headers.value_or(Headers());
  request.isCached = false;
  request.serviceUrl = textsFor(Session::shared().identity()->apiUri, [parameters] {
    return parameters
               ? std::make_shared<const EventParameters>(parameters->begin(), parameters->end())
               : nullptr;
  });
  if (completion) {
    request.whenUnanswered = [completion] { completion(nullptr, std::nullopt); };
    request.completionHandler = [completion](auto result, const auto&, auto flag) {
      completion(result, flag);
    };
  }
  make()->sendRequest(std::move(request), "", false);
}

// Sending ----------------------------------------------------------------------------------------

void ServiceClient::send(std::shared_ptr<Outgoing> request, bool isNotificationEvent) {
  // Under way before its copy can be seen in the store, so that no pass takes the copy for a
  // request that nobody is sending.
  RequestLedger::shared().begin(request->requestId);
  const bool goesOut = isDue_ || mayGoOut(*request, isNotificationEvent);
  cache(request, goesOut ? Wake::later : Wake::soon);
  if (!goesOut) {
    RequestLedger::shared().settle(request->requestId, false);
    if (request->whenUnanswered) request->whenUnanswered();
    return;
  }
  KIFO_INSPECT(request->isCached.value_or(false) ? "resent" : "sent",
               {{"requestId", request->requestId}, {"url", request->texts->url()}});
  const auto platform = Platform::current();
  // The transport's thread wakes the one that stores: the caller wakes one thread and not two, and
  // none while the transport looks by itself. A row's re-sending has no caller, and loses no time.
  platform->http->enqueue(
      [request, storing = platform->mainQueue] {
        storing->wake();
        return httpRequest(*request);
      },
      [self = shared_from_this(), request, storing = platform->mainQueue,
       answers = platform->answerQueue](HttpAnswer answer) {
        storing->wake();  // the transport may have stopped before it made the request
        answers->post(
            [self, request, answer = std::move(answer)] { self->handleAnswer(request, answer); });
      },
      isDue_ ? Wake::now : Wake::soon);
}

void ServiceClient::cache(const std::shared_ptr<Outgoing>& request, Wake wake) {
  const bool isKept = request->isCached == false && !request->requestId.empty() &&
                      request->method == rawValue(HTTPMethod::post);
  if (!isKept) return;
  const bool isOnline = Session::shared().networkStatus == KifoNetworkStatus::ONLINE;
  const std::int64_t date = Platform::current()->clock->millisecondsSince1970() / 1000;
  // The limit is the one in force when the event is sent: before the first answer nothing is
  // stored, however soon that answer comes.
  DataManager().cacheLog(
      queueLimit(), request->requestId,
      [request, isOnline, date] {
        return KifoLog(0, request->texts->json(), request->texts->url(), request->method, date, 0,
                       isOnline ? 0 : 1, request->requestId);
      },
      [request](bool stored) {
        request->isStored = stored;
        if (stored) KIFO_INSPECT("stored", {{"requestId", request->requestId}});
      },
      wake);
}

bool ServiceClient::mayGoOut(const Outgoing& request, bool isNotificationEvent) {
  Session& session = Session::shared();
  if (session.networkStatus != KifoNetworkStatus::ONLINE) {
    print("Kifo online status is not ONLINE");
    KIFO_INSPECT("gated", {{"requestId", request.requestId}, {"gate", "network"}});
    return false;
  }
  if (session.appCommunication() || isNotificationEvent) return true;
  const auto identity = session.identity();
  const bool isQuery =
      !identity->apiUri.empty() && request.texts->url().find(identity->apiUri) != std::string::npos;
  if (isQuery) return true;
  print(
      "App communication is nil or is app communication itemLog is false or Notification event is "
      "false");
  KIFO_INSPECT("gated", {{"requestId", request.requestId}, {"gate", "communication"}});
  return false;
}

HttpRequest ServiceClient::httpRequest(const Outgoing& request) {
  Session& session = Session::shared();
  const auto identity = session.identity();
  HttpRequest http;
  http.method = request.method;
  http.url = request.texts->url();
  http.headers = {{"Authorization", headerValue("BearerMOBILE " + identity->authorization)},
                  {"Content-Type", "application/json"},
                  {"LocalOrigin", headerValue(identity->localOrigin)},
                  {"cache-control", "no-cache"}};
  if (request.method != rawValue(HTTPMethod::get)) http.body = request.texts->body();
  const double timeout = session.requestTimeout;
  http.timeout = timeout > 0.0 ? timeout : kTimeoutUntilKnown;
  return http;
}

// Answers ----------------------------------------------------------------------------------------

void ServiceClient::handleAnswer(const std::shared_ptr<Outgoing>& request,
                                 const HttpAnswer& answer) {
  KIFO_INSPECT("answered", {{"requestId", request->requestId},
                            {"status", std::to_string(answer.status)},
                            {"error", answer.error ? answer.error->message : ""}});
  if (answer.error) {
    db_.updateSyncStatus(request->requestId, 0);
    request->complete(std::nullopt);
    print(answer.error->message);
  } else {
    const bool isCached = request->isCached.value_or(false);
    print(std::string("kifo_requestId:  is cached: ") + (isCached ? "true" : "false") +
          " request id: " + request->requestId);
    if (answer.status == kOk) {
      handleSuccess(request, answer.body);
    } else {
      handleRefusal(*request, answer.status);
    }
  }
  // A row is tried once.
  if (request->isCached.value_or(false) && (answer.error || answer.status != kOk)) {
    KIFO_INSPECT("givenUp", {{"requestId", request->requestId}, {"reason", "not answered 200"}});
  }
  // Behind the statements of above, so that whoever waits for this request finds them done.
  const bool delivered = !answer.error && answer.status == kOk;
  Platform::current()->mainQueue->post([request, delivered] {
    RequestLedger& ledger = RequestLedger::shared();
    if (!request->isStored) ledger.forgetDelivered(request->requestId);
    ledger.settle(request->requestId, delivered);
  });
}

void ServiceClient::handleSuccess(const std::shared_ptr<Outgoing>& request,
                                  const std::string& data) {
  const std::string& requestId = request->requestId;
  const bool isResent = request->isCached.value_or(false);
  const auto forget = [requestId] { RequestLedger::shared().forgetDelivered(requestId); };
  // A locked file may keep the row; it must not be sent again all the same.
  if (!requestId.empty()) RequestLedger::shared().noteDelivered(requestId);
  // An answer without a body leaves its row, marked. Any other removes it: before the mark, which
  // then finds nothing to write and costs no commit, and before the row that follows is marked as
  // tried, since the deletion takes every tried row.
  if (!data.empty() && isResent) passOn(requestId);
  if (!data.empty() && !isResent) db_.deleteLog(requestId, forget);
  db_.updateSyncStatus(requestId, 1, forget);
  unauthorizedCount = 0;
  if (data.empty()) {
    print("no data");
    if (request->whenUnanswered) request->whenUnanswered();
    return;
  }
  request->complete(data);
  if (!isResent) print("apiRequest is not cached");
}

/// One commit removes the delivered row and marks the next: it is all that keeps the server
/// waiting.
void ServiceClient::passOn(const std::string& delivered) {
  if (mayStartPass()) return startPass(/*isQuiet=*/false, delivered);
  db_.deleteLog(delivered, [delivered] { RequestLedger::shared().forgetDelivered(delivered); });
}

void ServiceClient::handleRefusal(const Outgoing& request, int status) {
  print("response code is not 200");
  request.complete(std::nullopt);
  if (status == kUnauthorized) {
    fetchToken();
    const std::int8_t count = unauthorizedCount;
    if (count == std::numeric_limits<std::int8_t>::max()) {
      fatalError("too many unauthorized answers to count");
    }
    unauthorizedCount = static_cast<std::int8_t>(count + 1);
    if (unauthorizedCount > 1) {
      Session::shared().initializeStatus = InitializeStatusType::TOKEN_FAILED;
    }
  }
  db_.updateSyncStatus(request.requestId, 0);
}

// Stored rows ------------------------------------------------------------------------------------

void ServiceClient::syncLogs() {
  if (mayStartPass()) startPass(/*isQuiet=*/false, "");
}

bool ServiceClient::mayStartPass() {
  Session& session = Session::shared();
  if (session.offlineCachingDisabled) {
    print("offlineCachingDisabled");
    return false;
  }
  const KifoNetworkStatus status = session.networkStatus;
  print("sync is online " + std::string(rawValue(status)));
  if (status != KifoNetworkStatus::ONLINE) return false;
  if (!session.appCommunication()) {
    syncAwaitsAnswer = true;
    return false;
  }
  return !isStopping;
}

void ServiceClient::resumeSync() {
  Session& session = Session::shared();
  const bool isDue = syncAwaitsAnswer.exchange(false) && !session.offlineCachingDisabled &&
                     session.networkStatus == KifoNetworkStatus::ONLINE && !isStopping;
  if (isDue) make()->startPass(/*isQuiet=*/true, "");
}

void ServiceClient::startPass(bool isQuiet, const std::string& delivered) {
  if (!isQuiet) print("sync log started");
  db_.takeNext(
      delivered,
      [self = shared_from_this(), isQuiet](const std::optional<KifoLog>& log) {
        return (log || !isQuiet) && self->mayTake(log);
      },
      [delivered](const DataManager::Taken& taken) {
        if (taken.isDeleted) RequestLedger::shared().forgetDelivered(delivered);
        if (taken.row) resend(*taken.row);
      });
}

/// Whether the row is to be marked and sent. A row that cannot be marked could go out twice: it is
/// sent only with the mark in the file.
bool ServiceClient::mayTake(const std::optional<KifoLog>& log) {
  if (!log) {
    print("log is nil");
    return false;
  }
  const std::string& requestId = log->_requestId;
  if (std::ranges::find(lastSyncRequestIds_, requestId) != lastSyncRequestIds_.end()) {
    print("lastSyncRequestIds contains log requestId");
    return false;
  }
  lastSyncRequestIds_.push_back(requestId);
  RequestLedger& ledger = RequestLedger::shared();
  // The request itself still waits for its answer: the pass goes on once that is a 200. A failure
  // ends it, as it ends every chain; a try at once would be spent on the server that has just
  // failed.
  const auto goOn = [](bool delivered) {
    if (delivered) make()->syncLogs();
  };
  if (ledger.whenSettled(requestId, goOn)) return false;
  if (ledger.isDelivered(requestId)) {
    removeDelivered(requestId);
    return false;
  }
  // The network may have gone since the pass began: the row stays for the next one.
  return !isStopping && Session::shared().networkStatus == KifoNetworkStatus::ONLINE;
}

void ServiceClient::removeDelivered(const std::string& requestId) {
  db_.deleteLog(requestId, [requestId] {
    RequestLedger::shared().forgetDelivered(requestId);
    make()->syncLogs();
  });
}

void ServiceClient::resend(const KifoLog& log) {
  if (!isUtf8(log._paramaters)) return print("data is nil");
  const auto parameters = parametersFromText(log._paramaters);
  if (!parameters || !isUrl(log._url)) {
    KIFO_INSPECT("givenUp", {{"requestId", log._requestId}, {"reason", "unreadable"}});
    return;
  }
  const bool isPost = log._httpMethod == rawValue(HTTPMethod::post);
  JSONRequest<AppCommunication> request;
  request.httpMethod = rawValue(isPost ? HTTPMethod::post : HTTPMethod::get);
  request.serviceUrl = std::make_shared<RequestTexts>(log._url, false, parameters);
  request.isCached = true;
  const auto client = make();
  client->isDue_ = true;
  client->sendRequest(std::move(request), log._requestId, false);
}

}  // namespace kifo
