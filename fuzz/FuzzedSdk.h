#pragma once

#include <cstdlib>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/Url.h"
#include "Kifo_iOS_Common_Kit/core/ValueJson.h"
#include "testing/FakePlatform.h"

namespace kifo::fuzz {

inline void require(bool holds) {
  if (!holds) std::abort();
}

/// The whole SDK on fakes, initialised, for one input. The server takes every event.
struct FuzzedSdk {
  static constexpr std::string_view kApi = "http://api.test/inapp";

  FuzzedSdk() {
    sdk.reachability->setFlags(kReachable);
    sdk.http->setHandler([](const HttpRequest& request) {
      const bool isQuery = request.url.starts_with(kApi);
      return HttpAnswer{
          {},
          200,
          isQuery ? R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":9}})" : ""};
    });
    KifoInitConfig configuration;
    configuration.bundle = {"com.example.fuzz"};
    configuration.apiUri = kApi;
    configuration.listenerUri = "http://listener.test/events";
    configuration.authorization = "token";
    Kifo::initialize(configuration);
    sdk.runUntilIdle();
  }

  void loseTheNetworkForAMoment() const {
    for (const std::uint32_t flags : {0U, kReachable}) {
      sdk.reachability->change(flags);
      sdk.runUntilIdle();
    }
  }

  /// What went out after the first `known` requests: each to an address, with a body that is JSON.
  void requireReadableRequests(std::size_t known) const {
    const auto requests = sdk.http->requests();
    for (std::size_t index = known; index < requests.size(); ++index) {
      const HttpRequest& request = requests[index];
      require(isUrl(request.url));
      require(!request.body || valueFromJson(*request.body).has_value());
    }
  }

  static constexpr std::uint32_t kReachable = 2;
  testing::InstalledFakePlatform sdk;
};

}  // namespace kifo::fuzz
