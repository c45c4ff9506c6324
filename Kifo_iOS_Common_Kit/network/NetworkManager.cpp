#include "Kifo_iOS_Common_Kit/network/NetworkManager.h"

#include <any>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/Inspect.h"
#include "Kifo_iOS_Common_Kit/network/KifoReachability.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {

NetworkManager& NetworkManager::shared() {
  static auto& only = *new std::shared_ptr<NetworkManager>(std::make_shared<NetworkManager>());
  return *only;
}

NetworkManager::~NetworkManager() {
  stopMonitoring();
}

void NetworkManager::startMonitoring(NetworkStatusCallback callback) {
  auto [watcher, error] = KifoReachability::create(
      {.targetQueue = nullptr, .notificationQueue = Platform::current()->mainQueue});
  std::shared_ptr<KifoReachability> previous;
  {
    const std::lock_guard lock(mutex_);
    networkStatusCallback_.swap(callback);
    if (!watcher) return;
    previous = std::exchange(reachability_, watcher);
    if (observer_ == 0) {
      observer_ = KifoNotificationCenter::defaultCenter().addObserver(
          KifoReachabilityChangedNotification, [weak = weak_from_this()](const auto& note) {
            if (const auto manager = weak.lock()) manager->reachabilityChanged(note);
          });
    }
  }
  if (previous) previous->stopNotifier();
  watcher->startNotifier();
}

void NetworkManager::stopMonitoring() {
  std::shared_ptr<KifoReachability> previous;
  NetworkStatusCallback callback;
  KifoNotificationCenter::Token observer = 0;
  {
    const std::lock_guard lock(mutex_);
    previous = std::exchange(reachability_, nullptr);
    callback = std::exchange(networkStatusCallback_, nullptr);
    observer = std::exchange(observer_, 0);
  }
  KifoNotificationCenter::defaultCenter().removeObserver(observer);
  if (previous) previous->stopNotifier();
}

void NetworkManager::reachabilityChanged(const KifoNotification& note) {
  const auto* object = std::any_cast<std::shared_ptr<KifoReachability>>(&note.object);
  if (object == nullptr || *object == nullptr) {
    fatalError("kifoReachabilityChanged was posted for something that is no KifoReachability");
  }
  KifoReachability& watcher = **object;
  watcher.refreshFlags();
  const bool online = watcher.connection() != KifoReachability::Connection::unavailable;
  NetworkStatusCallback callback;
  {
    const std::lock_guard lock(mutex_);
    callback = networkStatusCallback_;
  }
  KIFO_INSPECT("network",
               {{"flags", watcher.description()}, {"online", online ? "true" : "false"}});
  callHost(logTag("NetworkManager"), callback, online);
}

std::optional<std::uint32_t> NetworkManager::flags() const {
  const std::lock_guard lock(mutex_);
  return reachability_ ? reachability_->flags() : std::nullopt;
}

KifoNetworkCapability networkCapability(std::optional<std::uint32_t> flags) {
  using Flags = KifoReachability::Flags;
  const std::uint32_t now = flags.value_or(0);
  if (!(now & Flags::reachable) || (now & Flags::isWWAN)) return KifoNetworkCapability::CELLULAR;
  const bool connected = !(now & Flags::connectionRequired);
  const bool connectsByItself = (now & (Flags::connectionOnTraffic | Flags::connectionOnDemand)) &&
                                !(now & Flags::interventionRequired);
  return connected || connectsByItself ? KifoNetworkCapability::WIFI
                                       : KifoNetworkCapability::CELLULAR;
}

}  // namespace kifo
