#include "apps/demo/shop/tour/Ear.h"

#include <QTest>
#include <algorithm>
#include <cstdio>

namespace kifo::shop {
namespace {

constexpr int kPatience = 20000;  // milliseconds

bool agrees(const nlohmann::json& received, const nlohmann::json& expected) {
  return std::ranges::all_of(expected.items(), [&](const auto& item) {
    const auto found = received.find(item.key());
    if (item.value().is_null()) return found == received.end();
    return found != received.end() && *found == item.value();
  });
}

}  // namespace

std::size_t Ear::count() const {
  return server_.requests().on("/sdkListenerEvent").size();
}

std::size_t Ear::matches(const nlohmann::json& event) const {
  const auto requests = server_.requests().on("/sdkListenerEvent");
  return static_cast<std::size_t>(std::ranges::count_if(requests, [&](const auto& request) {
    return request->json && agrees(*request->json, event);
  }));
}

bool Ear::hears(const nlohmann::json& event) {
  const bool came = QTest::qWaitFor([&] { return matches(event) > 0; }, kPatience);
  if (came && matches(event) == 1) return true;
  std::printf("  wrong: the server heard this %zu times: %s\n", matches(event),
              event.dump().c_str());
  return false;
}

}  // namespace kifo::shop
