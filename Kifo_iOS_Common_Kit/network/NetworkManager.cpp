#include "Kifo_iOS_Common_Kit/network/NetworkManager.h"

#include <any>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Inspect.h"
#include "Kifo_iOS_Common_Kit/network/KifoReachability.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

bool isOnline(const KifoReachability& watcher) {
  return watcher.connection() != KifoReachability::Connection::unavailable;
}

void tell(const NetworkManager::NetworkStatusCallback& callback, bool online) {
  callHost(NetworkManager::LOG_TAG, callback, online);
}

/// Nothing is told of it any more, once a reading that is under way has ended.
void retire(const std::shared_ptr<KifoReachability>& watcher) {
  if (!watcher) return;
  watcher->setWhenRead({});
  watcher->stopNotifier();
}

}  // namespace

NetworkManager::~NetworkManager() {
  stopMonitoring();
}

void NetworkManager::startMonitoring(NetworkStatusCallback callback, NetworkStatusCallback read) {
  auto [watcher, error] = KifoReachability::create(
      {.targetQueue = nullptr, .notificationQueue = Platform::current()->mainQueue});
  if (watcher) watcher->setWhenRead([read](const auto& self) { tell(read, isOnline(self)); });
  std::shared_ptr<KifoReachability> previous;
  {
    const MutexLock lock(mutex_);
    networkStatusCallback_.swap(callback);
    read_.swap(read);
    if (!watcher) return;
    previous = std::exchange(reachability_, watcher);
    if (observer_ == 0) {
      observer_ = KifoNotificationCenter::defaultCenter().addObserver(
          KifoReachabilityChangedNotification, [weak = weak_from_this()](const auto& note) {
            if (const auto manager = weak.lock()) manager->reachabilityChanged(note);
          });
    }
  }
  retire(previous);
  watcher->startNotifier();
}

void NetworkManager::stopMonitoring() {
  std::shared_ptr<KifoReachability> previous;
  NetworkStatusCallback callback;
  NetworkStatusCallback read;
  KifoNotificationCenter::Token observer = 0;
  {
    const MutexLock lock(mutex_);
    previous = std::exchange(reachability_, nullptr);
    callback = std::exchange(networkStatusCallback_, nullptr);
    read = std::exchange(read_, nullptr);
    observer = std::exchange(observer_, 0);
  }
  KifoNotificationCenter::defaultCenter().removeObserver(observer);
  retire(previous);
}

void NetworkManager::reachabilityChanged(const KifoNotification& note) {
  const auto* object = std::any_cast<std::shared_ptr<KifoReachability>>(&note.object);
  if (object == nullptr || *object == nullptr) {
    fatalError("kifoReachabilityChanged was posted for something that is no KifoReachability");
  }
  KifoReachability& watcher = **object;
  watcher.refreshFlags();
  const bool online = isOnline(watcher);
  NetworkStatusCallback callback;
  NetworkStatusCallback read;
  {
    const MutexLock lock(mutex_);
    callback = networkStatusCallback_;
    // Our own watcher has just told it on its queue, where no newer reading can come in between.
    if (*object != reachability_) read = read_;
  }
  KIFO_INSPECT("network",
               {{"flags", watcher.description()}, {"online", online ? "true" : "false"}});
  tell(read, online);
  tell(callback, online);
}

std::optional<std::uint32_t> NetworkManager::flags() const {
  const MutexLock lock(mutex_);
  return reachability_ ? reachability_->flags() : std::nullopt;
}

KifoNetworkCapability networkCapability(std::optional<std::uint32_t> flags) {
  using Flags = KifoReachability::Flags;
  const std::uint32_t now = flags.value_or(0);
  // There is no word for no network. Kept for compatibility.
  if (!(now & Flags::reachable) || (now & Flags::isWWAN)) return KifoNetworkCapability::CELLULAR;
  const bool connected = !(now & Flags::connectionRequired);
  const bool connectsByItself = (now & (Flags::connectionOnTraffic | Flags::connectionOnDemand)) &&
                                !(now & Flags::interventionRequired);
  return connected || connectsByItself ? KifoNetworkCapability::WIFI
                                       : KifoNetworkCapability::CELLULAR;
}

}  // namespace kifo
