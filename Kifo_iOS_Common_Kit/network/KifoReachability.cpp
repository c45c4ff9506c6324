#include "Kifo_iOS_Common_Kit/network/KifoReachability.h"

#include <cerrno>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/network/KifoReachabilityWeakifier.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

using Kind = KifoReachabilityError::Kind;

/// Set beside the 32 bits of every reading, so that a reading of 0 differs from none.
constexpr std::uint64_t kRead = std::uint64_t{1} << 32;

/// The address 0.0.0.0: its length, its family, and zeros.
constexpr ReachabilityService::Address kZeroAddress = {16, 2};

struct FlagLetter {
  std::uint32_t bit;  // 0 stands for the gap
  char letter;
};

constexpr FlagLetter kLetters[] = {
    {ReachabilityFlags::isWWAN, 'W'},
    {ReachabilityFlags::reachable, 'R'},
    {0, ' '},
    {ReachabilityFlags::connectionRequired, 'c'},
    {ReachabilityFlags::transientConnection, 't'},
    {ReachabilityFlags::interventionRequired, 'i'},
    {ReachabilityFlags::connectionOnTraffic, 'C'},
    {ReachabilityFlags::connectionOnDemand, 'D'},
    {ReachabilityFlags::isLocalAddress, 'l'},
    {ReachabilityFlags::isDirect, 'd'},
};

}  // namespace

KifoReachability::Creation KifoReachability::create(Options options) {
  const auto platform = Platform::current();
  int code = 0;
  auto source = platform->reachability->createWithAddress(kZeroAddress, code);
  if (!source) {
    return {nullptr,
            KifoReachabilityError{Kind::failedToCreateWithAddress, code, kZeroAddress, {}}};
  }
  if (!options.targetQueue) options.targetQueue = platform->reachabilityQueue;
  return {std::shared_ptr<KifoReachability>(
              new KifoReachability(std::move(options), std::move(source))),
          std::nullopt};
}

KifoReachability::KifoReachability(Options options, std::unique_ptr<ReachabilitySource> source)
    : reachabilityRef_(std::move(source)),
      reachabilitySerialQueue_(std::move(options.targetQueue)),
      notificationQueue_(std::move(options.notificationQueue)) {}

KifoReachability::~KifoReachability() {
  stopNotifier();
}

std::optional<KifoReachabilityError> KifoReachability::startNotifier() {
  if (notifierRunning_) return std::nullopt;
  if (auto error = install()) {
    remove();
    return error;
  }
  // What a stopped queue drops counts as a reading that failed.
  std::optional<KifoReachabilityError> error{{Kind::unableToGetFlags, ECANCELED, {}, {}}};
  reachabilitySerialQueue_->sync([&] {
    error = read();
    const std::lock_guard lock(mutex_);
    if (!error && installed_) notifierRunning_ = true;  // unless it was stopped meanwhile
  });
  if (error) remove();
  return error;
}

std::optional<KifoReachabilityError> KifoReachability::install() {
  auto weakifier = std::make_shared<KifoReachabilityWeakifier>();
  weakifier->reachability = weak_from_this();
  const std::lock_guard lock(mutex_);
  const int callbackCode = reachabilityRef_->setCallback(
      [weakifier] {
        if (const auto watcher = weakifier->reachability.lock()) watcher->refreshFlags();
      },
      [weakifier] { return weakifier->description(); });
  if (callbackCode != 0) {
    return KifoReachabilityError{Kind::unableToSetCallback, callbackCode, {}, {}};
  }
  if (const int code = reachabilityRef_->setDispatchQueue(reachabilitySerialQueue_)) {
    return KifoReachabilityError{Kind::unableToSetDispatchQueue, code, {}, {}};
  }
  installed_ = true;
  return std::nullopt;
}

void KifoReachability::stopNotifier() {
  ++stops_;
  remove();
}

void KifoReachability::remove() {
  const std::lock_guard lock(mutex_);
  reachabilityRef_->setCallback({}, {});
  reachabilityRef_->setDispatchQueue(nullptr);
  installed_ = false;
  notifierRunning_ = false;
}

std::optional<KifoReachabilityError> KifoReachability::refreshFlags() {
  std::optional<KifoReachabilityError> error;
  reachabilitySerialQueue_->sync([&] { error = read(); });
  return error;
}

std::optional<KifoReachabilityError> KifoReachability::read() {
  std::uint32_t now = 0;
  if (const int code = reachabilityRef_->flags(now)) {
    remove();
    return KifoReachabilityError{Kind::unableToGetFlags, code, {}, {}};
  }
  const std::uint64_t reading = kRead | now;
  const bool changed = flags_.exchange(reading) != reading;
  call(whenRead_);
  if (changed) flagsChanged();
  return std::nullopt;
}

void KifoReachability::flagsChanged() {
  if (!notificationQueue_) {
    handleChange();
    return;
  }
  notificationQueue_->post([weak = weak_from_this(), stops = stops_.load()] {
    const auto watcher = weak.lock();
    if (watcher && watcher->stops_ == stops) watcher->handleChange();
  });
}

void KifoReachability::handleChange() {
  refreshFlags();  // several changes may have gathered by now; what counts is how it stands
  call(connection() != Connection::unavailable ? whenReachable_ : whenUnreachable_);
  notificationCenter.load()->post({KifoReachabilityChangedNotification, shared_from_this()});
}

void KifoReachability::call(const Callback& callback) {
  Callback copy;
  {
    const std::lock_guard lock(mutex_);
    copy = callback;
  }
  callHost(KifoReachability::LOG_TAG, copy, *this);
}

std::optional<std::uint32_t> KifoReachability::flags() const {
  const std::uint64_t reading = flags_;
  if (reading == 0) return std::nullopt;
  return static_cast<std::uint32_t>(reading);
}

KifoReachability::Connection KifoReachability::connection() const {
  const std::uint32_t now = flags().value_or(0);
  if ((now & Flags::reachable) == 0) return Connection::unavailable;
  if ((now & Flags::isWWAN) != 0) {
    return allowsCellularConnection ? Connection::cellular : Connection::unavailable;
  }
  const bool connectsByItself = (now & (Flags::connectionOnTraffic | Flags::connectionOnDemand)) &&
                                !(now & Flags::interventionRequired);
  const bool connected = !(now & Flags::connectionRequired);
  return connected || connectsByItself ? Connection::wifi : Connection::unavailable;
}

std::string KifoReachability::describe(std::optional<std::uint32_t> flags) {
  if (!flags) return "unavailable flags";
  std::string text;
  for (const auto& [bit, letter] : kLetters) {
    text.push_back(bit == 0 || (*flags & bit) != 0 ? letter : '-');
  }
  return text;
}

void KifoReachability::setWhenReachable(Callback callback) {
  const std::lock_guard lock(mutex_);
  whenReachable_.swap(callback);  // the earlier one is destroyed after the lock is released
}

void KifoReachability::setWhenUnreachable(Callback callback) {
  const std::lock_guard lock(mutex_);
  whenUnreachable_.swap(callback);
}

void KifoReachability::setWhenRead(Callback callback) {
  const std::lock_guard lock(mutex_);
  whenRead_.swap(callback);
}

}  // namespace kifo
