#include "Kifo_iOS_Common_Kit/core/runtime/TokenFetch.h"

#include <algorithm>
#include <chrono>
#include <cmath>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"

namespace kifo {
namespace {

constexpr double kWaitWithoutService = 3.0;
/// A day: keeps an infinite time-out within the clock's range.
constexpr double kLongestWait = 86400.0;

void take(Session& session, const std::optional<std::string>& token) {
  if (token) {
    session.updateIdentity([&](Session::Identity& identity) { identity.authorization = *token; });
  } else {
    session.initializeStatus = InitializeStatusType::INITIALIZE_FAILED;
  }
}

}  // namespace

void TokenFetch::run(const std::shared_ptr<Runtime>& runtime) {
  // The service may go to its own server, which it must not do without the user's consent.
  if (runtime->consent.isWithheld()) return;
  TokenFetch& fetch = runtime->tokenFetch;
  const auto answered = std::make_shared<bool>(false);  // guarded by fetch.mutex_
  const auto service = runtime->session.tokenService();
  double seconds = kWaitWithoutService;
  if (service) {
    callHost("Kifo Kifo:", [&] {
      // Held weakly: a service may keep its completion for ever.
      service->getToken([weak = std::weak_ptr(runtime), answered](auto token) {
        const auto asked = weak.lock();
        if (!asked) return;
        take(asked->session, token);
        const MutexLock lock(asked->tokenFetch.mutex_);
        *answered = true;
        asked->tokenFetch.changed_.notifyAll();
      });
    });
    seconds = service->kifoTimeout;
    if (std::isnan(seconds)) seconds = 0.0;
  }
  seconds = std::clamp(seconds, 0.0, kLongestWait);
  const MutexLock lock(fetch.mutex_);
  fetch.changed_.waitFor(fetch.mutex_, std::chrono::duration<double>(seconds),
                         [&]() KIFO_REQUIRES(fetch.mutex_) { return *answered || fetch.ended_; });
}

void TokenFetch::end() {
  const MutexLock lock(mutex_);
  ended_ = true;
  changed_.notifyAll();
}

}  // namespace kifo
