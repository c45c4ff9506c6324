#include "apps/demo/shop/tour/Visit.h"

#include <QDir>
#include <algorithm>
#include <utility>

namespace kifo::shop {
namespace {

constexpr auto kEvents = "/sdkListenerEvent";

bool agrees(const nlohmann::json& received, const nlohmann::json& expected) {
  return std::ranges::all_of(expected.items(), [&](const auto& item) {
    const auto found = received.find(item.key());
    if (item.value().is_null()) return found == received.end();
    return found != received.end() && *found == item.value();
  });
}

}  // namespace

Visit::Visit(QWidget& window, testing::LocalServer& server, QString folder)
    : User(window), server_(server), folder_(std::move(folder)) {
  QDir().mkpath(folder_);
}

void Visit::save(const QString& name) {
  const QString path = folder_ + "/" + name + ".png";
  if (!picture().save(path)) throw NotUsable(path + " cannot be written");
}

void Visit::keep(const QString& name) {
  waitForStillness();
  save(name);
}

void Visit::expectEvent(const nlohmann::json& event) {
  const auto count = [&] {
    return std::ranges::count_if(server_.requests().on(kEvents), [&](const auto& request) {
      return request->json && agrees(*request->json, event);
    });
  };
  const QString words = QString::fromStdString(event.dump());
  waitUntil([&] { return count() > 0; }, "the server did not receive " + words);
  if (count() > 1) throw NotUsable("the server received more than once: " + words);
}

std::size_t Visit::eventCount() const {
  return server_.requests().on(kEvents).size();
}

}  // namespace kifo::shop
