#include "apps/kifo/serve/EventPrinter.h"

#include <unistd.h>

#include <iostream>
#include <stdexcept>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

namespace kifo::tool {
namespace {

constexpr int kOk = 200;

}  // namespace

EventPrinter::EventPrinter(const std::string& log) : terminal_(STDOUT_FILENO) {
  if (log.empty()) return;
  log_.open(log, std::ios::app);
  if (!log_) throw std::runtime_error(log + " cannot be written to");
}

void EventPrinter::received(const testing::ReceivedRequest& request) {
  const std::string printed = line(request);
  const std::lock_guard lock(mutex_);
  std::cout << printed << std::endl;
  if (!log_.is_open()) return;
  log_ << jsonFromValue(request.toValue()) << std::endl;
}

std::string EventPrinter::line(const testing::ReceivedRequest& request) const {
  using Color = Terminal::Color;
  const std::string status = request.status == 0 ? "cut" : std::to_string(request.status);
  const bool isGood = request.status == kOk;
  const bool isEvent = request.json && !(*request.json)["name"].isNull();
  const std::string what = isEvent ? request.text("name") : request.path;
  const std::string who = isEvent ? request.text("actorId") : request.text("actor-id");
  const std::string rest = isEvent ? request.particulars("  ") : "";
  return terminal_.paint(Color::grey, request.clockTime()) + "  " +
         terminal_.paint(isGood ? Color::green : Color::red, status) + "  " +
         Terminal::fitted(what, 26) + "  " + Terminal::plain(who) +
         (rest.empty() ? "" : "  " + Terminal::plain(rest));
}

}  // namespace kifo::tool
