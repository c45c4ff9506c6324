#include "platform/linux/CurlTransport.h"

#include <curl/curl.h>
#include <openssl/crypto.h>

#include <algorithm>
#include <atomic>
#include <climits>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "platform/linux/CurlErrors.h"
#include "platform/linux/CurlSockets.h"
#include "platform/linux/CurlTransfer.h"
#include "platform/linux/ExitGuard.h"
#include "platform/linux/Inbox.h"
#include "platform/linux/Rest.h"
#include "platform/linux/Wakeup.h"
#include "platform/linux/Worker.h"

namespace kifo {
namespace {

using Clock = CurlTransfer::Clock;

constexpr std::size_t kRoundSize = 32;  // requests taken in before the transfers have their turn
// Of one host, in libcurl's hands, and so the most connections to it. Whatever would have libcurl
// keep a transfer waiting for a connection (a limit of its own, CURLOPT_PIPEWAIT) is not used: now
// and then one is never taken up again (7.88).
constexpr int kLaneWidth = 6;
constexpr long kKeptConnections = 12;
constexpr std::size_t kKeptHandles = 8;
constexpr auto kLookWithoutWakeup = std::chrono::milliseconds(20);
const SerialQueue::Duration kStopBound(0.2);

void initialiseLibraries() {
  static const bool once = [] {
    // At exit the TLS library would clear itself away under a thread that still uses it.
    OPENSSL_init_crypto(OPENSSL_INIT_NO_ATEXIT, nullptr);
    const bool done = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    ExitGuard::comeFirst();  // whatever else was brought in may clear itself away as well
    return done;
  }();
  static_cast<void>(once);
}

template <class Call>
void guarded(const char* what, Call&& call) {
  try {
    call();
  } catch (const std::exception& error) {
    Console::print(logTag("HttpTransport"), std::string(what) + " threw: " + error.what());
  } catch (...) {
    Console::print(logTag("HttpTransport"), std::string(what) + " threw");
  }
}

}  // namespace

/// What the transport and its thread share.
class CurlTransport::Core : public std::enable_shared_from_this<Core> {
 public:
  explicit Core(CurlTransportOptions options) : options_(std::move(options)) {}

  void send(Make make, Done done, Wake wake);
  void networkChanged();
  void stop();

 private:
  using Id = std::uint64_t;
  using Transfer = std::unique_ptr<CurlTransfer>;
  struct Open {
    Make make;  ///< Empty once it has run.
    Done done;
  };
  /// The requests for one host.
  struct Lane {
    int active = 0;
    std::deque<Transfer> waiting;
  };

  bool start();
  void rouse(Wake wake);
  void answer(Id id, HttpAnswer answer);
  void shut();

  // The thread's.
  void run();
  bool takeIncoming();
  void accept(Id id, const Make& make);
  void enqueue(Transfer transfer);
  void start(Transfer transfer);
  void finish(Id id, CURLcode result, std::optional<HttpAnswer> instead = std::nullopt);
  void startNext(const std::string& authority);
  void collectFinished();
  void expireWaiting();
  void leaveOldNetwork();
  void sleep();
  int milliseconds(std::optional<Clock::duration> rest) const;
  CURL* takeHandle();
  void keepHandle(CURL* easy);
  void tearDown();

  static thread_local const Core* current;

  const CurlTransportOptions options_;
  const Wakeup wakeup_;
  Worker worker_;
  // No sender waits for a lock.
  Inbox<Open> inbox_;
  Rest rest_;
  std::atomic<bool> started_ = false;
  std::atomic<bool> stopping_ = false;  ///< Set with the mutex held: the thread does not miss it.
  std::atomic<bool> shut_ = false;      ///< Nobody looks into the inbox any more.

  // The thread's only.
  CURLM* multi_ = nullptr;
  CurlSockets sockets_;
  std::vector<CURL*> handles_;
  std::map<Id, Transfer> active_;
  std::map<std::string, Lane> lanes_;
  Clock::time_point firstExpiry_ = Clock::time_point::max();  ///< Of those that wait; may be early.

  std::mutex mutex_;
  // Guarded by mutex_.
  std::map<Id, Open> open_;  ///< Everything taken in and not yet answered.
  std::deque<Id> incoming_;
  Id last_ = 0;
  bool networkChanged_ = false;
};

thread_local const CurlTransport::Core* CurlTransport::Core::current = nullptr;

void CurlTransport::Core::send(Make make, Done done, Wake wake) {
  if (stopping_ || !start()) {
    const auto given = stopping_ ? cancelledAnswer()
                                 : failedAnswer(CURLE_OUT_OF_MEMORY, "the system gives no thread");
    guarded("a completion", [&] { done(given); });
    return;
  }
  if (wake != Wake::now) rest_.noteSender();
  inbox_.put({std::move(make), std::move(done)});
  if (shut_) return shut();  // it came too late
  rouse(wake);
}

bool CurlTransport::Core::start() {
  if (started_) return true;
  const std::lock_guard lock(mutex_);
  if (!started_) {
    started_ = worker_.start("kifo.http", [self = shared_from_this()] { self->run(); });
  }
  return started_;
}

void CurlTransport::Core::networkChanged() {
  {
    const std::lock_guard lock(mutex_);
    networkChanged_ = true;
  }
  rouse(Wake::now);
}

void CurlTransport::Core::stop() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  rouse(Wake::now);
  if (current == this) return;
  worker_.join(kStopBound);
  shut();
}

/// Ends the thread's rest. While it is awake it costs nothing.
void CurlTransport::Core::rouse(Wake wake) {
  if (rest_.wakes(wake)) wakeup_.signal();
}

/// Whoever takes a request out of `open_` answers it: so each is answered once.
void CurlTransport::Core::answer(Id id, HttpAnswer answer) {
  std::unique_lock lock(mutex_);
  const auto node = open_.extract(id);
  lock.unlock();
  if (node && node.mapped().done) {
    guarded("a completion", [&] { node.mapped().done(std::move(answer)); });
  }
}

/// Takes nothing more and cancels what is open.
void CurlTransport::Core::shut() {
  const auto cancel = [](const Open& open) {
    if (open.done) guarded("a completion", [&open] { open.done(cancelledAnswer()); });
  };
  std::unique_lock lock(mutex_);
  stopping_ = true;
  const auto cancelled = std::exchange(open_, {});
  incoming_.clear();
  lock.unlock();
  for (const auto& entry : cancelled) cancel(entry.second);
  shut_ = true;
  inbox_.take(cancel);
}

void CurlTransport::Core::run() {
  current = this;
  initialiseLibraries();
  multi_ = curl_multi_init();
  curl_multi_setopt(multi_, CURLMOPT_MAXCONNECTS, kKeptConnections);
  while (multi_ && takeIncoming()) {
    int running = 0;
    curl_multi_perform(multi_, &running);
    collectFinished();
    expireWaiting();
    sleep();
  }
  shut();
  tearDown();
}

/// Takes in what came since; false once the transport stops.
bool CurlTransport::Core::takeIncoming() {
  std::vector<std::pair<Id, Make>> round;
  std::unique_lock lock(mutex_);
  if (stopping_) return false;
  const bool changed = std::exchange(networkChanged_, false);
  inbox_.take([this](Open&& open) {
    incoming_.push_back(++last_);
    open_.emplace_hint(open_.end(), last_, std::move(open));
  });
  while (!incoming_.empty() && round.size() < kRoundSize) {
    const Id id = incoming_.front();
    incoming_.pop_front();
    round.emplace_back(id, std::move(open_.at(id).make));
  }
  lock.unlock();
  if (changed) leaveOldNetwork();
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
  } else {
    enqueue(std::move(transfer));
  }
}

void CurlTransport::Core::enqueue(Transfer transfer) {
  Lane& lane = lanes_[transfer->authority()];
  if (lane.active < kLaneWidth) {
    ++lane.active;
    start(std::move(transfer));
  } else {
    firstExpiry_ = std::min(firstExpiry_, transfer->deadline());
    lane.waiting.push_back(std::move(transfer));
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
  const Transfer transfer = std::move(active_.extract(id).mapped());
  CURL* easy = transfer->easy();
  curl_multi_remove_handle(multi_, easy);
  HttpAnswer given = easy ? transfer->end(result) : HttpAnswer{};
  sockets_.forget(id);
  keepHandle(easy);
  answer(id, instead ? std::move(*instead) : std::move(given));
  startNext(transfer->authority());
}

void CurlTransport::Core::startNext(const std::string& authority) {
  const auto lane = lanes_.find(authority);
  --lane->second.active;
  auto& waiting = lane->second.waiting;
  if (!waiting.empty()) {
    Transfer next = std::move(waiting.front());
    waiting.pop_front();
    ++lane->second.active;
    start(std::move(next));
  } else if (lane->second.active == 0) {
    lanes_.erase(lane);
  }
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

/// Those that libcurl has in hand it times by itself.
void CurlTransport::Core::expireWaiting() {
  const auto now = Clock::now();
  if (firstExpiry_ > now) return;
  firstExpiry_ = Clock::time_point::max();
  std::vector<Id> expired;
  for (auto& [authority, lane] : lanes_) {
    std::erase_if(lane.waiting, [&](const Transfer& transfer) {
      const bool late = transfer->deadline() <= now;
      if (late) expired.push_back(transfer->id());
      if (!late) firstExpiry_ = std::min(firstExpiry_, transfer->deadline());
      return late;
    });
  }
  for (const Id id : expired) answer(id, failedAnswer(CURLE_OPERATION_TIMEDOUT));
}

void CurlTransport::Core::leaveOldNetwork() {
  const auto addresses = options_.localAddresses ? options_.localAddresses() : interfaceAddresses();
  sockets_.networkChanged();
  for (const Id id : sockets_.stranded(addresses)) {
    finish(id, CURLE_RECV_ERROR,
           failedAnswer(CURLE_RECV_ERROR, "the network that it was sent over is gone"));
  }
}

void CurlTransport::Core::sleep() {
  curl_waitfd extra{wakeup_.descriptor(), CURL_WAIT_POLLIN, 0};
  std::unique_lock lock(mutex_);
  const auto rest = rest_.begin(
      [this] { return !inbox_.empty() || !incoming_.empty() || networkChanged_ || stopping_; });
  lock.unlock();
  curl_multi_poll(multi_, &extra, 1, milliseconds(rest), nullptr);
  if (extra.revents != 0) wakeup_.clear();
  rest_.end();
}

/// How long to poll; as good as for ever when nothing waits. Those that wait for a lane may expire.
int CurlTransport::Core::milliseconds(std::optional<Clock::duration> rest) const {
  auto wait = rest.value_or(Clock::duration::max());
  if (firstExpiry_ != Clock::time_point::max()) wait = std::min(wait, firstExpiry_ - Clock::now());
  if (wakeup_.descriptor() < 0) wait = std::min<Clock::duration>(wait, kLookWithoutWakeup);
  if (wait == Clock::duration::max()) return INT_MAX;
  const auto whole = std::chrono::ceil<std::chrono::milliseconds>(wait);
  return static_cast<int>(std::clamp<long long>(whole.count(), 0, INT_MAX));
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
  lanes_.clear();
}

CurlTransport::CurlTransport(CurlTransportOptions options)
    : core_(std::make_shared<Core>(std::move(options))) {}

CurlTransport::~CurlTransport() {
  core_->stop();
}

void CurlTransport::send(Make make, Done done) {
  core_->send(std::move(make), std::move(done), Wake::now);
}

void CurlTransport::enqueue(Make make, Done done, Wake wake) {
  core_->send(std::move(make), std::move(done), wake);
}

void CurlTransport::networkChanged() {
  core_->networkChanged();
}

void CurlTransport::stop() {
  core_->stop();
}

}  // namespace kifo
