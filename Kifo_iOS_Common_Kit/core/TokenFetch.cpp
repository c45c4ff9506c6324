#include "Kifo_iOS_Common_Kit/core/TokenFetch.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/Session.h"

namespace kifo {
namespace {

constexpr double kWaitWithoutService = 3.0;
constexpr double kLongestWait =
    86400.0;  // a day; keeps an infinite time-out within the clock's range

/// One condition for all waits: they are rare, and stopping has to reach each of them.
struct Waits {
  std::mutex mutex;
  std::condition_variable changed;
  bool ended = false;  // guarded by mutex
};

Waits& waits() {
  static Waits& only = *new Waits;
  return only;
}

void signal(const std::shared_ptr<bool>& answered) {
  const std::lock_guard lock(waits().mutex);
  *answered = true;
  waits().changed.notify_all();
}

void take(const std::optional<std::string>& token) {
  Session& session = Session::shared();
  if (token) {
    session.updateIdentity([&](Session::Identity& identity) { identity.authorization = *token; });
  } else {
    session.initializeStatus = InitializeStatusType::INITIALIZE_FAILED;
  }
}

}  // namespace

void fetchToken() {
  const auto answered = std::make_shared<bool>(false);
  const auto service = Session::shared().tokenService();
  double seconds = kWaitWithoutService;
  if (service) {
    callHost(logTag("Kifo"), [&] {
      service->getToken([answered](std::optional<std::string> token) {
        take(token);
        signal(answered);
      });
    });
    seconds = service->kifoTimeout;
    if (std::isnan(seconds)) seconds = 0.0;
  }
  seconds = std::clamp(seconds, 0.0, kLongestWait);
  std::unique_lock lock(waits().mutex);
  waits().changed.wait_for(lock, std::chrono::duration<double>(seconds),
                           [&] { return *answered || waits().ended; });
}

void TokenWaits::end() {
  const std::lock_guard lock(waits().mutex);
  waits().ended = true;
  waits().changed.notify_all();
}

void TokenWaits::allow() {
  const std::lock_guard lock(waits().mutex);
  waits().ended = false;
}

}  // namespace kifo
