#include "apps/demo/shop/tour/Visit.h"

#include <QDir>
#include <algorithm>
#include <cstdio>
#include <exception>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

namespace kifo::shop {
namespace {

constexpr auto kEvents = "/sdkListenerEvent";

bool agrees(const Value& received, const Value::Map& expected) {
  return std::ranges::all_of(expected,
                             [&](const auto& item) { return received[item.first] == item.second; });
}

}  // namespace

Visit::Visit(QWidget& window, testing::LocalServer& server, QString folder)
    : User(window), server_(server), folder_(std::move(folder)) {
  QDir().mkpath(folder_);
}

Visit::Visit(QWindow& window, std::function<QImage()> picture, testing::LocalServer& server,
             QString folder)
    : User(window, std::move(picture)), server_(server), folder_(std::move(folder)) {
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

void Visit::expectEvent(const Value::Map& event) {
  const auto count = [&] {
    return std::ranges::count_if(server_.requests().on(kEvents), [&](const auto& request) {
      return request->json && agrees(*request->json, event);
    });
  };
  const QString words = QString::fromStdString(jsonFromValue(event));
  waitUntil([&] { return count() > 0; }, "the server did not receive " + words);
  if (count() > 1) throw NotUsable("the server received more than once: " + words);
}

std::size_t Visit::eventCount() const {
  return server_.requests().on(kEvents).size();
}

bool visitStop(const char* name, const std::function<void()>& visit) {
  bool isGood = true;
  try {
    visit();
  } catch (const std::exception& problem) {
    isGood = false;
    std::printf("  wrong: %s\n", problem.what());
  }
  std::printf("%s  %s\n", isGood ? "ok   " : "WRONG", name);
  std::fflush(stdout);
  return isGood;
}

}  // namespace kifo::shop
