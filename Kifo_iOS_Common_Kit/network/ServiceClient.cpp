#include "Kifo_iOS_Common_Kit/network/ServiceClient.h"

#include <algorithm>
#include <array>
#include <limits>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/Url.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Inspect.h"
#include "Kifo_iOS_Common_Kit/core/runtime/TokenFetch.h"
#include "Kifo_iOS_Common_Kit/inapp/model/RecordFields.h"
#include "Kifo_iOS_Common_Kit/network/InFlightRequests.h"
#include "Kifo_iOS_Common_Kit/network/ResendSchedule.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

using Origin = OutgoingRequest::Origin;

constexpr double kTimeoutUntilKnown = 60.0;  // seconds
/// How long after a foreign lock a pass looks once more.
constexpr auto kLockRetryDelay = SerialQueue::Duration(10.0);
constexpr int kOk = 200;
constexpr int kUnauthorized = 401;

void print(std::string_view message) {
  Console::print(ServiceClient::LOG_TAG, message);
}

/// The address gets the parameters as its query. An address that is no URL gets the name of the
/// query's endpoint behind it instead, for events too: kept for compatibility. If that is none
/// either, there is nothing to send to.
ServiceUrl serviceUrl(const std::string& base) {
  if (isUrl(base)) return {base, true};
  const std::string fallback = base + "getInAppCommunication";
  if (!isUrl(fallback)) fatalError("the server's address is no URL: " + base);
  return {fallback, false};
}

/// Header values end at their line: what a host puts into a token must not become another header.
std::string headerValue(std::string value) {
  std::erase_if(value, [](char c) { return c == '\r' || c == '\n' || c == '\0'; });
  return value;
}

/// How many rows may wait. The limit is the one in force when the event is sent: before the first
/// answer nothing is stored, however soon that answer comes.
std::int64_t queueLimit(const std::shared_ptr<const AppCommunication>& answer) {
  if (!answer || !answer->configuration) return 0;
  return answer->configuration->offlineQueueSize.value_or(0);
}

KifoLog copyOf(const OutgoingRequest& request, bool isOnline, std::int64_t date) {
  return {0,
          request.texts->json(),
          request.texts->url(),
          request.method,
          date,
          0,
          isOnline ? 0 : 1,
          request.id};
}

}  // namespace

ServiceClient::ServiceClient(std::shared_ptr<Runtime> runtime) : runtime_(std::move(runtime)) {}

std::shared_ptr<ServiceClient> ServiceClient::make(std::shared_ptr<Runtime> runtime) {
  return std::shared_ptr<ServiceClient>(new ServiceClient(std::move(runtime)));
}

// Requests ---------------------------------------------------------------------------------------

void ServiceClient::sendEvent(const Headers& headers, RequestParameters parameters,
                              const Sender& sender, const std::string& requestId,
                              bool isNotificationEvent, EventCompletion completion) {
  JSONRequest<BaseResponse>::CompletionHandler handler;
  if (completion) {
    handler = [completion = std::move(completion)](auto result, const auto&, auto flag) {
      completion(result, flag);
    };
  }
  JSONRequest<BaseResponse> request(HTTPMethod::post, serviceUrl(sender->listenerUri), headers,
                                    std::move(parameters), requestId, std::move(handler), false);
  send(outgoing(std::move(request), requestId, isNotificationEvent, sender));
}

void ServiceClient::getInAppCommunication(
    const std::optional<Headers>& headers,
    const std::optional<std::map<std::string, std::string>>& parameters,
    InAppCompletion completion) {
  const auto sender = runtime_->session.identity();
  RequestParameters dictionary;
  if (parameters) {
    dictionary.dictionary =
        std::make_shared<const EventParameters>(parameters->begin(), parameters->end());
  }
  JSONRequest<AppCommunication>::CompletionHandler handler;
  if (completion) {
    handler = [completion](auto result, const auto&, auto flag) { completion(result, flag); };
  }
  JSONRequest<AppCommunication> request(HTTPMethod::post, serviceUrl(sender->apiUri), headers,
                                        std::move(dictionary), "", std::move(handler), false);
  const auto query = outgoing(std::move(request), "", false, sender);
  if (completion) query->whenUnanswered = [completion] { completion(nullptr, std::nullopt); };
  send(query);
}

// Sending ----------------------------------------------------------------------------------------

void ServiceClient::send(const std::shared_ptr<OutgoingRequest>& request) {
  if (request->origin == Origin::event) runtime_->counters->add(Counter::composed);
  // Under way before its copy can be seen in the store, so that no pass takes the copy for a
  // request that nobody is sending.
  runtime_->inFlight->begin(request);
  request->isGated = !request->isStored() && !mayGoOut(*request);
  if (request->origin == Origin::event) storeCopy(request);
  if (!request->isGated) return handOver(request);
  settle(*request);
  if (request->whenUnanswered) request->whenUnanswered();
}

bool ServiceClient::mayGoOut(const OutgoingRequest& request) const {
  const Session& session = runtime_->session;
  if (session.networkStatus != KifoNetworkStatus::ONLINE) {
    print("Kifo online status is not ONLINE");
    KIFO_INSPECT("gated", {{"requestId", request.id}, {"gate", "network"}});
    return false;
  }
  if (session.appCommunication() || request.isNotificationEvent) return true;
  const auto& apiUri = request.sender->apiUri;
  if (!apiUri.empty() && request.texts->url().find(apiUri) != std::string::npos) return true;
  // One text for three reasons. Kept for compatibility.
  print(
      "App communication is nil or is app communication itemLog is false or Notification event is "
      "false");
  KIFO_INSPECT("gated", {{"requestId", request.id}, {"gate", "communication"}});
  return false;
}

void ServiceClient::storeCopy(const std::shared_ptr<OutgoingRequest>& request) const {
  const bool isOnline = runtime_->session.networkStatus == KifoNetworkStatus::ONLINE;
  const std::int64_t date = Platform::current()->clock->millisecondsSince1970() / 1000;
  const auto answer = runtime_->session.appCommunication();
  const bool hasCap = answer != nullptr;
  const bool isQueued = db().cacheLog(
      queueLimit(answer), request->id,
      [request, isOnline, date] { return copyOf(*request, isOnline, date); },
      [self = shared_from_this(), request, hasCap](CopyOutcome outcome) {
        self->copied(*request, outcome, hasCap);
      });
  if (!isQueued) copied(*request, CopyOutcome::cap, hasCap);
}

void ServiceClient::copied(OutgoingRequest& request, CopyOutcome outcome, bool hasCap) const {
  constexpr std::array drops = {Counter::droppedByStore, Counter::droppedByCap,
                                Counter::droppedUnquotable, Counter::droppedByLock,
                                Counter::droppedByStore};
  const bool isRefusedByCap = outcome == CopyOutcome::cap && hasCap;
  request.hasRow = outcome == CopyOutcome::stored;
  request.whenNotDelivered = outcome == CopyOutcome::cap && !hasCap
                                 ? Counter::droppedWithoutAnswer
                                 : drops[static_cast<std::size_t>(outcome)];
  if (isRefusedByCap) runtime_->counters->add(Counter::refusedByCap);
  if (request.isGated) countUndelivered(request);
  if (!request.hasRow) return;
  runtime_->counters->add(Counter::stored);
  KIFO_INSPECT("stored", {{"requestId", request.id}});
}

void ServiceClient::countUndelivered(const OutgoingRequest& request) const {
  if (request.hasRow) return runtime_->counters->toWaiting();
  runtime_->counters->add(request.whenNotDelivered);
}

void ServiceClient::handOver(const std::shared_ptr<OutgoingRequest>& request) {
  // Tools alone must not have the address written here: that would compose the event.
  KIFO_INSPECT(request->isStored() ? "resent" : "sent",
               {{"requestId", request->id}, {"url", hasInspector() ? request->texts->url() : ""}});
  if (!request->isStored()) runtime_->resend->requestSent();
  if (request->origin != Origin::query) {
    runtime_->counters->add(request->isStored() ? Counter::resent : Counter::sent);
  }
  const auto platform = Platform::current();
  platform->http->send(
      [self = shared_from_this(), request] { return self->httpRequest(*request); },
      [self = shared_from_this(), request, answers = platform->answerQueue](HttpAnswer answer) {
        answers->post(
            [self, request, answer = std::move(answer)] { self->handleAnswer(request, answer); });
      });
}

HttpRequest ServiceClient::httpRequest(const OutgoingRequest& request) const {
  if (runtime_->consent.isWithheld()) return {};
  const Session& session = runtime_->session;
  const auto sender = request.sender ? request.sender : session.identity();
  HttpRequest http;
  // "BearerMOBILE" and the token, not "Bearer": kept for compatibility.
  http.method = request.method;
  http.url = request.texts->url();
  http.headers = {{"Authorization", headerValue("BearerMOBILE " + sender->authorization)},
                  {"Content-Type", "application/json"},
                  {"LocalOrigin", headerValue(sender->localOrigin)},
                  {"cache-control", "no-cache"}};
  if (request.method != rawValue(HTTPMethod::get)) http.body = request.texts->body();
  http.mayRepeat = request.origin != Origin::event;  // an event has a copy that is sent again
  const double timeout = session.requestTimeout;
  http.timeout = timeout > 0.0 ? timeout : kTimeoutUntilKnown;
  return http;
}

// Answers ----------------------------------------------------------------------------------------

void ServiceClient::handleAnswer(const std::shared_ptr<OutgoingRequest>& request,
                                 const HttpAnswer& answer) {
  KIFO_INSPECT("answered", {{"requestId", request->id},
                            {"status", std::to_string(answer.status)},
                            {"error", answer.error ? answer.error->message : ""}});
  const bool isOk = !answer.error && answer.status == kOk;
  countAnswer(*request, isOk);
  if (answer.error) {
    db().updateSyncStatus(request->id, 0);
    request->complete(std::nullopt);
    print(answer.error->message);
  } else {
    // Two blanks. Kept for compatibility.
    print(std::string("kifo_requestId:  is cached: ") + (request->isStored() ? "true" : "false") +
          " request id: " + request->id);
    if (isOk) {
      handleSuccess(request, answer.body);
    } else {
      handleRefusal(*request, answer.status);
    }
  }
  // A row is tried once.
  if (request->isStored() && !isOk) {
    KIFO_INSPECT("givenUp", {{"requestId", request->id}, {"reason", "not answered 200"}});
  }
  // Behind the statements of above: a pass that waits for this request finds them done.
  Platform::current()->mainQueue->post([self = shared_from_this(), request, isOk] {
    if (!isOk && request->origin == Origin::event) self->countUndelivered(*request);
    self->settle(*request);
  });
}

void ServiceClient::handleSuccess(const std::shared_ptr<OutgoingRequest>& request,
                                  const std::string& data) {
  // A locked file may keep the row; it must not be sent again all the same.
  runtime_->inFlight->setAnswered(*request);
  const auto rowGone = [request] { request->hasRow = false; };
  // An answer without a body leaves its row, marked. Any other removes it, before the mark: the
  // mark then finds nothing to write and costs no commit.
  if (!data.empty() && request->isStored() && mayBeginPass()) {
    takeNextRow(request);
  } else if (!data.empty()) {
    db().deleteLog(request->id, rowGone);
  }
  db().updateSyncStatus(request->id, 1, rowGone);
  runtime_->session.unauthorizedCount = 0;
  if (data.empty()) {
    print("no data");
    if (request->whenUnanswered) request->whenUnanswered();
    return;
  }
  request->complete(data);
  if (!request->isStored()) print("apiRequest is not cached");
}

void ServiceClient::handleRefusal(const OutgoingRequest& request, int status) {
  print("response code is not 200");
  request.complete(std::nullopt);
  if (status == kUnauthorized) countRefusal();
  db().updateSyncStatus(request.id, 0);
}

void ServiceClient::countRefusal() {
  TokenFetch::run(runtime_);
  auto& count = runtime_->session.unauthorizedCount;
  if (count == std::numeric_limits<std::int8_t>::max()) {
    fatalError("too many unauthorized answers to count");
  }
  // Any answer of 200 resets the count. Kept for compatibility.
  if (++count > 1) runtime_->session.initializeStatus = InitializeStatusType::TOKEN_FAILED;
}

/// Before the statements that the answer leads to, so that their transaction keeps it.
void ServiceClient::countAnswer(const OutgoingRequest& request, bool isOk) const {
  if (request.origin == Origin::query) return;
  Counters& counters = *runtime_->counters;
  if (isOk) return counters.add(Counter::delivered);
  counters.add(Counter::failed);
  if (request.isStored()) counters.add(Counter::givenUpNotAnswered);
}

void ServiceClient::settle(OutgoingRequest& request) {
  // A failed request's own row is then the first to be sent again, and those behind it follow or
  // stay with that answer.
  const bool passWaits = runtime_->inFlight->settle(request);
  if (request.isStored()) runtime_->resend->passEnded();
  if (passWaits) return make(runtime_)->syncLogs();
  runtime_->resend->settled(runtime_, request);
}

// Stored rows ------------------------------------------------------------------------------------

bool ServiceClient::canSync() const {
  const Session& session = runtime_->session;
  return !runtime_->isStopping && !session.offlineCachingDisabled &&
         session.networkStatus == KifoNetworkStatus::ONLINE && session.appCommunication();
}

bool ServiceClient::mayBeginPass() {
  const Session& session = runtime_->session;
  if (session.offlineCachingDisabled) {
    print("offlineCachingDisabled");
    return false;
  }
  const KifoNetworkStatus status = session.networkStatus;
  // May read "sync is online offline". Kept for compatibility.
  print("sync is online " + std::string(rawValue(status)));
  if (status != KifoNetworkStatus::ONLINE || !session.appCommunication()) return false;
  if (runtime_->isStopping) return false;
  print("sync log started");
  return true;
}

void ServiceClient::syncLogs() {
  if (mayBeginPass()) return takeNextRow(nullptr);
  if (runtime_->session.appCommunication()) return;
  runtime_->resend->awaitsAnswer = true;
  // The answer may have come before the flag was set.
  if (runtime_->session.appCommunication()) resumeSync();
}

void ServiceClient::resumeSync() {
  if (!runtime_->resend->awaitsAnswer.exchange(false) || !canSync()) return;
  isQuiet_ = true;
  takeNextRow(nullptr);
}

void ServiceClient::takeNextRow(const std::shared_ptr<OutgoingRequest>& delivered) {
  runtime_->resend->passBegan();
  db().takeNext(
      delivered ? delivered->id : "",
      [self = shared_from_this()](const auto& row) { return self->chooses(row); },
      [self = shared_from_this(), delivered](const DataManager::Taken& taken) {
        if (delivered && taken.isDeleted) delivered->hasRow = false;
        self->tookNextRow(taken);
      });
}

bool ServiceClient::chooses(const std::optional<KifoLog>& row) {
  if (!row) {
    runtime_->resend->drained();
    if (!isQuiet_) print("log is nil");
    return false;
  }
  const std::string& requestId = row->_requestId;
  if (std::ranges::find(lastSyncRequestIds_, requestId) != lastSyncRequestIds_.end()) {
    // The store gives each row twice. Kept for compatibility.
    print("lastSyncRequestIds contains log requestId");
    return false;
  }
  lastSyncRequestIds_.push_back(requestId);
  if (runtime_->inFlight->makePassWait(requestId)) return false;
  if (runtime_->inFlight->isDelivered(requestId)) {
    deliveredRow_ = requestId;
    return false;
  }
  // The network may have gone since the pass began: the row stays for the next one.
  return canSync();
}

void ServiceClient::tookNextRow(const DataManager::Taken& taken) {
  // Sent only with the mark in the file: a row that cannot be marked could go out twice.
  if (taken.row) return resend(*taken.row);
  runtime_->resend->passEnded();
  if (taken.isLocked) return retryWhenLocked();
  if (!deliveredRow_) return;
  db().deleteLog(*deliveredRow_, [runtime = runtime_, requestId = *deliveredRow_] {
    runtime->inFlight->forgetDelivered(requestId);
    make(runtime)->syncLogs();
  });
}

void ServiceClient::retryWhenLocked() {
  if (isLockRetry_ || runtime_->isStopping) return;
  Platform::current()->mainQueue->schedule(kLockRetryDelay, [runtime = std::weak_ptr(runtime_)] {
    const auto held = runtime.lock();
    if (!held || held->isStopping) return;
    const auto client = make(held);
    client->isLockRetry_ = true;
    client->syncLogs();
  });
}

void ServiceClient::resend(const KifoLog& log) {
  runtime_->counters->takeWaiting();
  const bool isText = isUtf8(log._paramaters);
  if (!isText) print("data is nil");
  const auto parameters = isText ? parametersFromText(log._paramaters) : nullptr;
  if (!parameters || !isUrl(log._url)) {
    runtime_->resend->passEnded();
    runtime_->counters->add(Counter::givenUpUnreadable);
    KIFO_INSPECT("givenUp", {{"requestId", log._requestId}, {"reason", "unreadable"}});
    return;
  }
  const bool isPost = log._httpMethod == rawValue(HTTPMethod::post);
  JSONRequest<AppCommunication> request(isPost ? HTTPMethod::post : HTTPMethod::get,
                                        {log._url, false}, std::nullopt, {parameters},
                                        log._requestId, {}, true);
  make(runtime_)->sendRequest(std::move(request), log._requestId, false);
}

}  // namespace kifo
