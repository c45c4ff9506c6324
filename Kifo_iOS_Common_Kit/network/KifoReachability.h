#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/network/KifoNotificationCenter.h"
#include "Kifo_iOS_Common_Kit/network/KifoReachabilityError.h"
#include "Kifo_iOS_Common_Kit/ports/Export.h"
#include "Kifo_iOS_Common_Kit/ports/ReachabilityFlags.h"
#include "Kifo_iOS_Common_Kit/ports/ReachabilitySource.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"

namespace kifo {

/// The name under which a watcher posts its changes, itself as the object: a
/// `std::shared_ptr<KifoReachability>`.
inline constexpr auto KifoReachabilityChangedNotification = "kifoReachabilityChanged";

/// Watches whether the network can be reached.
///
///     auto [watcher, error] = kifo::KifoReachability::create({.notificationQueue = queue});
///     if (watcher) watcher->startNotifier();   // the first reading always notifies
///
/// A reading that equals the one before notifies nobody.
///
/// **Threading:** thread-safe. Flags are read on `reachabilitySerialQueue`; callbacks and
/// notifications run on the notification queue, or on the serial queue when none was given.
/// Starting and refreshing wait for one reading of the flags.
/// **Ownership:** whoever created it; neither the system's callback nor a change under way keeps it
/// alive. Destroying the watcher stops it.
/// **Errors:** values; a reading that fails stops the watcher.
class KIFO_EXPORT KifoReachability : public std::enable_shared_from_this<KifoReachability> {
 public:
  static constexpr std::string_view LOG_TAG =
      "Kifo KifoReachability:";  ///< Starts its console lines.

  using Flags = ReachabilityFlags;
  using Callback = std::function<void(KifoReachability&)>;

  /// What the flags say about using the network now.
  enum class Connection { unavailable, wifi, cellular };

  /// Of the serial queue. Not consulted: a queue has its thread's policy. Kept for compatibility.
  enum class QoS { standard, userInteractive, userInitiated, utility, background };

  struct Options {
    QoS queueQoS = QoS::standard;
    std::shared_ptr<SerialQueue> targetQueue;        ///< Null: the platform's reachability queue.
    std::shared_ptr<SerialQueue> notificationQueue;  ///< Null: changes are handled at once.
  };
  struct Creation;

  /// Makes a watcher of the network as a whole, stopped.
  static Creation create(Options options);
  ~KifoReachability();
  KifoReachability(const KifoReachability&) = delete;
  KifoReachability& operator=(const KifoReachability&) = delete;

  /// Starts watching, with one reading at once. Already running, it does nothing.
  std::optional<KifoReachabilityError> startNotifier();
  /// Once it returns no callback of a change from before begins, even if that was already queued.
  void stopNotifier();
  [[nodiscard]] bool notifierRunning() const { return notifierRunning_; }

  /// Reads the flags now, on the serial queue, and waits for the reading.
  std::optional<KifoReachabilityError> refreshFlags();
  /// The last flags seen, without waiting; none before the first reading.
  [[nodiscard]] std::optional<std::uint32_t> flags() const;

  /// The connection test, on the last flags seen.
  [[nodiscard]] Connection connection() const;
  /// The last flags seen, as `describe` writes them.
  [[nodiscard]] std::string description() const { return describe(flags()); }
  /// Ten characters such as "-R --i--l-", "unavailable flags" for none.
  static std::string describe(std::optional<std::uint32_t> flags);

  /// Called after a change that left the connection available, or unavailable.
  void setWhenReachable(Callback callback);
  void setWhenUnreachable(Callback callback);
  /// Called on the serial queue with every reading, before a change is handed to the notification
  /// queue: for what may not wait until that has done its work.
  void setWhenRead(Callback callback);

  std::atomic<bool> allowsCellularConnection = true;  ///< Whether a modem's connection counts.
  static constexpr bool reachableOnWWAN = true;       ///< Kept for compatibility; not consulted.
  static constexpr bool isRunningOnDevice = true;

  /// Where changes are posted; the default center unless set before the start. Must outlive this.
  std::atomic<KifoNotificationCenter*> notificationCenter =
      &KifoNotificationCenter::defaultCenter();

 private:
  KifoReachability(Options options, std::unique_ptr<ReachabilitySource> source);

  std::optional<KifoReachabilityError> install();
  std::optional<KifoReachabilityError> read();
  void flagsChanged();
  void handleChange();
  void call(const Callback& callback);
  void remove();

  // Constant after construction.
  const std::unique_ptr<ReachabilitySource> reachabilityRef_;
  const std::shared_ptr<SerialQueue> reachabilitySerialQueue_;
  const std::shared_ptr<SerialQueue> notificationQueue_;

  std::atomic<std::uint64_t> flags_ = 0;  // none is 0, a reading carries kRead
  std::atomic<bool> notifierRunning_ = false;
  std::atomic<std::uint64_t> stops_ = 0;  // a change from before a stop is dropped

  std::mutex mutex_;
  // Guarded by mutex_, as are the changes to the source and to notifierRunning_.
  bool installed_ = false;
  Callback whenReachable_;
  Callback whenUnreachable_;
  Callback whenRead_;
};

/// A watcher, or the reason why there is none.
struct KifoReachability::Creation {
  std::shared_ptr<KifoReachability> reachability;
  std::optional<KifoReachabilityError> error;
};

}  // namespace kifo
