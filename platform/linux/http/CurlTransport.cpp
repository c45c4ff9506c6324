#include "platform/linux/http/CurlTransport.h"

#include <curl/curl.h>
#include <openssl/crypto.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <deque>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "platform/linux/http/CurlSockets.h"
#include "platform/linux/http/CurlTransfer.h"
#include "platform/linux/http/HostQueues.h"
#include "platform/linux/threads/ExitGuard.h"
#include "platform/linux/threads/Mailbox.h"
#include "platform/linux/threads/Worker.h"

namespace kifo {
namespace {

constexpr std::string_view LOG_TAG = "Kifo HttpTransport:";

using Clock = CurlTransfer::Clock;

constexpr std::size_t kRoundSize = 32;  // requests begun before the running transfers are served
constexpr long kKeptConnections = 12;
constexpr std::size_t kKeptHandles = 8;
const SerialQueue::Duration kStopBound(0.2);

void initialiseLibraries() {
  static const bool once = [] {
    // At exit the TLS library would free itself while a thread still uses it.
    OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
    const bool done = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    ExitGuard::comeFirst();  // before the exit handlers of whatever libraries were loaded
    return done;
  }();
  static_cast<void>(once);
}

template <class Call>
void guarded(const char* what, Call&& call) {
  try {
    call();
  } catch (const std::exception& error) {
    Console::print(LOG_TAG, std::string(what) + " threw: " + error.what());
  } catch (...) {
    Console::print(LOG_TAG, std::string(what) + " threw");
  }
}

}  // namespace

/// What the transport and its thread share.
class CurlTransport::Core : public std::enable_shared_from_this<Core> {
 public:
  explicit Core(CurlTransportOptions options) : options_(std::move(options)) {}

  void send(Make make, Done done);
  void networkChanged();
  void cancelOpen();
  void stop();

 private:
  using Id = std::uint64_t;
  using Transfer = HostQueues::Transfer;
  struct Sent {
    Make make;  ///< Empty once it has run.
    Done done;
    bool cancelsEarlier = false;  ///< No request: those before it are to be cancelled.
  };

  void answer(Id id, HttpAnswer answer);
  void cancelAll();

  // The thread's.
  void run();
  bool takePosted();
  void accept(Id id, const Make& make);
  void start(Transfer transfer);
  void finish(Id id, CURLcode result, std::optional<HttpAnswer> instead = std::nullopt);
  void collectFinished();
  void leaveOldNetwork();
  void cancelUpTo(Id last);
  void wait();
  CURL* takeHandle();
  void keepHandle(CURL* easy);
  void tearDown();

  static thread_local const Core* current;

  const CurlTransportOptions options_;
  Worker worker_;
  Mailbox<Sent> mailbox_;
  std::atomic<bool> stopping_ = false;
  std::atomic<bool> networkChanged_ = false;

  // The thread's only.
  CURLM* multi_ = nullptr;
  CurlSockets sockets_;
  std::vector<CURL*> handles_;
  std::map<Id, Transfer> active_;
  HostQueues hosts_;
  std::deque<Id> incoming_;  ///< Taken in and not yet made.
  Id last_ = 0;

  Mutex mutex_;
  std::map<Id, Sent> unanswered_ KIFO_GUARDED_BY(mutex_);
};

thread_local const CurlTransport::Core* CurlTransport::Core::current = nullptr;

void CurlTransport::Core::send(Make make, Done done) {
  if (stopping_) return guarded("a completion", [&] { done(cancelledAnswer()); });
  const bool runs = worker_.isStarted() ||
                    worker_.start("kifo.http", [self = shared_from_this()] { self->run(); });
  if (!runs) {
    const auto failed = failedAnswer(CURLE_OUT_OF_MEMORY, "the system gives no thread");
    return guarded("a completion", [&] { done(failed); });
  }
  if (!mailbox_.post({std::move(make), std::move(done)})) cancelAll();
}

void CurlTransport::Core::networkChanged() {
  networkChanged_ = true;
  mailbox_.wake();
}

/// By the mailbox, so that what is sent next is not cancelled.
void CurlTransport::Core::cancelOpen() {
  if (!worker_.isStarted() || stopping_) return;
  if (!mailbox_.post({.make = {}, .done = {}, .cancelsEarlier = true})) cancelAll();
}

void CurlTransport::Core::stop() {
  stopping_ = true;
  mailbox_.wake();
  if (current == this) return;
  worker_.join(kStopBound);
  cancelAll();
}

/// Whoever takes a request out of `unanswered_` answers it: so each is answered once.
void CurlTransport::Core::answer(Id id, HttpAnswer answer) {
  MutexLock lock(mutex_);
  const auto node = unanswered_.extract(id);
  lock.unlock();
  if (node && node.mapped().done) {
    guarded("a completion", [&] { node.mapped().done(std::move(answer)); });
  }
}

/// Takes nothing more and cancels what has no answer.
void CurlTransport::Core::cancelAll() {
  const auto cancel = [](const Sent& sent) {
    if (sent.done) guarded("a completion", [&sent] { sent.done(cancelledAnswer()); });
  };
  mailbox_.close();
  MutexLock lock(mutex_);
  const auto cancelled = std::exchange(unanswered_, {});
  lock.unlock();
  for (const auto& entry : cancelled) cancel(entry.second);
  for (const Sent& sent : mailbox_.take()) cancel(sent);
}

void CurlTransport::Core::run() {
  current = this;
  initialiseLibraries();
  multi_ = curl_multi_init();
  curl_multi_setopt(multi_, CURLMOPT_MAXCONNECTS, kKeptConnections);
  while (multi_ && takePosted()) {
    int running = 0;
    curl_multi_perform(multi_, &running);
    collectFinished();
    // Those that wait; libcurl times the others.
    for (const Id id : hosts_.takeExpired()) answer(id, failedAnswer(CURLE_OPERATION_TIMEDOUT));
    wait();
  }
  cancelAll();
  tearDown();
}

/// Takes in what was posted and begins up to kRoundSize requests; false once the transport stops.
bool CurlTransport::Core::takePosted() {
  if (stopping_) return false;
  if (networkChanged_.exchange(false)) leaveOldNetwork();
  std::vector<std::pair<Id, Make>> round;
  Id cancelled = 0;
  MutexLock lock(mutex_);
  for (Sent& sent : mailbox_.take()) {
    if (sent.cancelsEarlier) {
      cancelled = last_;
      continue;
    }
    incoming_.push_back(++last_);
    unanswered_.emplace_hint(unanswered_.end(), last_, std::move(sent));
  }
  lock.unlock();
  if (cancelled != 0) cancelUpTo(cancelled);
  lock.lock();
  for (; !incoming_.empty() && round.size() < kRoundSize; incoming_.pop_front()) {
    const auto sent = unanswered_.find(incoming_.front());
    // A stop that did not wait for this thread has cancelled the others.
    if (sent != unanswered_.end()) round.emplace_back(sent->first, std::move(sent->second.make));
  }
  lock.unlock();
  for (const auto& [id, make] : round) accept(id, make);
  return true;
}

void CurlTransport::Core::accept(Id id, const Make& make) {
  Transfer transfer;
  guarded("making a request", [&] {
    transfer = std::make_unique<CurlTransfer>(id, make(), options_.maximumAnswerSize);
  });
  if (!transfer) {
    answer(id, failedAnswer(CURLE_ABORTED_BY_CALLBACK, "the request could not be made"));
  } else if (transfer->fault() != CURLE_OK) {
    answer(id, failedAnswer(transfer->fault()));
  } else if (transfer->deadline() <= Clock::now()) {
    answer(id, failedAnswer(CURLE_OPERATION_TIMEDOUT));
  } else if (Transfer first = hosts_.enqueue(std::move(transfer))) {
    start(std::move(first));
  }
}

void CurlTransport::Core::start(Transfer transfer) {
  const Id id = transfer->id();
  CURL* easy = takeHandle();
  CurlTransfer& started = *active_.emplace(id, std::move(transfer)).first->second;
  if (easy) {
    started.begin(easy, sockets_);
    const std::string& authorities = options_.certificateAuthorities;
    if (!authorities.empty()) curl_easy_setopt(easy, CURLOPT_CAINFO, authorities.c_str());
  }
  if (!easy || curl_multi_add_handle(multi_, easy) != CURLM_OK) {
    finish(id, CURLE_OUT_OF_MEMORY, failedAnswer(CURLE_OUT_OF_MEMORY));
  }
}

void CurlTransport::Core::finish(Id id, CURLcode result, std::optional<HttpAnswer> instead) {
  Transfer transfer = std::move(active_.extract(id).mapped());
  CURL* easy = transfer->easy();
  curl_multi_remove_handle(multi_, easy);
  if (easy && transfer->repeats(result)) {
    sockets_.forget(id);
    keepHandle(easy);
    return start(std::move(transfer));
  }
  HttpAnswer given = easy ? transfer->end(result) : HttpAnswer{};
  sockets_.forget(id);
  keepHandle(easy);
  answer(id, instead ? std::move(*instead) : std::move(given));
  if (Transfer next = hosts_.next(transfer->authority())) start(std::move(next));
}

void CurlTransport::Core::collectFinished() {
  int left = 0;
  while (const CURLMsg* message = curl_multi_info_read(multi_, &left)) {
    if (message->msg != CURLMSG_DONE) continue;
    const CURLcode result = message->data.result;
    CurlTransfer* transfer = nullptr;
    curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
    finish(transfer->id(), result);
  }
}

void CurlTransport::Core::leaveOldNetwork() {
  const auto addresses = options_.localAddresses ? options_.localAddresses() : interfaceAddresses();
  sockets_.networkChanged();
  for (const Id id : sockets_.stranded(addresses)) {
    finish(id, CURLE_RECV_ERROR,
           failedAnswer(CURLE_RECV_ERROR, "the network that it was sent over is gone"));
  }
}

void CurlTransport::Core::cancelUpTo(Id last) {
  std::erase_if(incoming_, [&](Id id) { return id <= last; });
  hosts_.dropUpTo(last);
  std::vector<Id> ids;
  for (const auto& [id, transfer] : active_) ids.push_back(id);
  std::erase_if(ids, [&](Id id) { return id > last; });
  for (const Id id : ids) finish(id, CURLE_ABORTED_BY_CALLBACK, cancelledAnswer());
  // Those that waited.
  ids.clear();
  MutexLock lock(mutex_);
  for (const auto& [id, sent] : unanswered_) ids.push_back(id);
  lock.unlock();
  std::erase_if(ids, [&](Id id) { return id > last; });
  for (const Id id : ids) answer(id, cancelledAnswer());
}

/// Polls the transfers and the mailbox until there is something to do.
void CurlTransport::Core::wait() {
  auto longest = Wakeups::kForever;
  const auto firstExpiry = hosts_.firstExpiry();
  if (firstExpiry != Clock::time_point::max()) longest = firstExpiry - Clock::now();
  if (!incoming_.empty()) longest = Clock::duration::zero();
  const auto bound = std::chrono::ceil<std::chrono::milliseconds>(mailbox_.beginWait(longest));
  curl_waitfd extra{mailbox_.descriptor(), CURL_WAIT_POLLIN, 0};
  curl_multi_poll(multi_, &extra, 1,
                  static_cast<int>(std::clamp<long long>(bound.count(), 0, INT_MAX)), nullptr);
  mailbox_.endWait(extra.revents != 0);
}

CURL* CurlTransport::Core::takeHandle() {
  if (handles_.empty()) return curl_easy_init();
  CURL* easy = handles_.back();
  handles_.pop_back();
  return easy;
}

void CurlTransport::Core::keepHandle(CURL* easy) {
  if (!easy) return;
  if (handles_.size() >= kKeptHandles) {
    curl_easy_cleanup(easy);
    return;
  }
  curl_easy_reset(easy);
  handles_.push_back(easy);
}

void CurlTransport::Core::tearDown() {
  for (const auto& [id, transfer] : active_) {
    curl_multi_remove_handle(multi_, transfer->easy());
    curl_easy_cleanup(transfer->easy());
  }
  for (CURL* easy : handles_) curl_easy_cleanup(easy);
  curl_multi_cleanup(multi_);
  active_.clear();
  hosts_.clear();
}

CurlTransport::CurlTransport(CurlTransportOptions options)
    : core_(std::make_shared<Core>(std::move(options))) {}

CurlTransport::~CurlTransport() {
  core_->stop();
}

void CurlTransport::send(Make make, Done done) {
  core_->send(std::move(make), std::move(done));
}

void CurlTransport::networkChanged() {
  core_->networkChanged();
}

void CurlTransport::cancelOpen() {
  core_->cancelOpen();
}

void CurlTransport::stop() {
  core_->stop();
}

}  // namespace kifo
