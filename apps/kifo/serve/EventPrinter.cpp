#include "apps/kifo/serve/EventPrinter.h"

#include <unistd.h>

#include <ctime>
#include <iostream>
#include <set>
#include <stdexcept>

namespace kifo::tool {
namespace {

constexpr int kOk = 200;

/// What every event carries; a line shows the rest.
const std::set<std::string>& commonKeys() {
  static const auto& keys = *new std::set<std::string>{
      "push_token",        "apns_token",   "device_id",   "requestId",  "channel",
      "sync",              "device_os",    "phone_brand", "scenario",   "phone_model",
      "device_os_version", "sdk_version",  "time_zone",   "timestamp",  "application_name",
      "free_disk",         "total_disk",   "battery",     "network_status",
      "name",              "actorId",      "push_notification_permission_status"};
  return keys;
}

std::string clockTime(std::int64_t milliseconds) {
  const auto seconds = static_cast<std::time_t>(milliseconds / 1000);
  std::tm local{};
  localtime_r(&seconds, &local);
  char text[16];
  std::strftime(text, sizeof text, "%H:%M:%S", &local);
  return text;
}

std::string particulars(const nlohmann::json& body) {
  std::string text;
  for (const auto& [key, value] : body.items()) {
    if (commonKeys().contains(key)) continue;
    text += "  " + key + "=" + (value.is_string() ? value.get<std::string>() : value.dump());
  }
  return text;
}

}  // namespace

EventPrinter::EventPrinter(const std::string& log) : terminal_(STDOUT_FILENO) {
  if (log.empty()) return;
  log_.open(log, std::ios::app);
  if (!log_) throw std::runtime_error(log + " cannot be written to");
}

void EventPrinter::received(const server::ReceivedRequest& request) {
  const std::string printed = line(request);
  const std::lock_guard lock(mutex_);
  std::cout << printed << std::endl;
  if (!log_.is_open()) return;
  log_ << request.toJson().dump(-1, ' ', false, nlohmann::json::error_handler_t::replace)
       << std::endl;
}

std::string EventPrinter::line(const server::ReceivedRequest& request) const {
  using Color = Terminal::Color;
  const std::string status = request.status == 0 ? "cut" : std::to_string(request.status);
  const bool isGood = request.status == kOk;
  const bool isEvent = request.json && request.json->is_object() && request.json->contains("name");
  const std::string what = isEvent ? request.text("name") : request.path;
  const std::string who =
      isEvent ? request.text("actorId") : request.text("actor-id");
  const std::string rest = isEvent ? particulars(*request.json) : "";
  return terminal_.paint(Color::grey, clockTime(request.time)) + "  " +
         terminal_.paint(isGood ? Color::green : Color::red, status) + "  " +
         Terminal::fitted(what, 26) + "  " + Terminal::plain(who) + Terminal::plain(rest);
}

}  // namespace kifo::tool
