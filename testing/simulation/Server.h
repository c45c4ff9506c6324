#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"

namespace kifo::testing::simulation {

inline constexpr auto kApi = "http://api.test/inapp";
inline constexpr auto kListener = "http://listener.test/events";

/// The campaigns of the in-app answers.
inline constexpr std::array kCampaignIds{"P-NEVER-ENDS", "P-IN-SECONDS", "S-IN-MILLISECONDS",
                                         "C-SCORE",      "P-EXPIRED",    "P-SPENT"};
inline constexpr std::uint32_t kReachable = 2;  ///< The network's flag.

/// The next of a row of numbers that look random.
constexpr std::uint32_t mixed(std::uint32_t number) {
  return number * 1664525U + 1013904223U;
}

/// Whether it asks for campaigns.
inline bool isQuery(const HttpRequest& request) {
  return request.url.starts_with(kApi);
}

/// What becomes of a request: what the host's side hears, and whether the server took it.
struct Fate {
  HttpAnswer answer;
  bool isAccepted = false;
};

/// The server's in-app answer number `which`: caps of 0 to 50 rows, "noise" blocked or not,
/// campaigns of several kinds and expiry dates.
std::string inAppAnswer(std::uint32_t which);

/// A fate chosen by `number`: a 200 with, without or with a broken body, refusals, and failures
/// before and after the server took it. `body` is what a good answer carries.
Fate fate(std::uint32_t number, const std::string& body);

}  // namespace kifo::testing::simulation
