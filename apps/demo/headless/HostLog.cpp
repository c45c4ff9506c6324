#include "apps/demo/headless/HostLog.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

namespace kifo::demo {

namespace {

std::string particular(const Decision& decision, std::string_view name) {
  for (const auto& [key, value] : decision.particulars) {
    if (key == name) return value;
  }
  return "";
}

}  // namespace

void HostLog::write(std::string line) {
  const std::lock_guard lock(mutex_);
  if (printsConsole_) std::cout << "    " << line << std::endl;
  lines_.push_back(std::move(line));
  changed_.notify_all();
}

void HostLog::decided(const Decision& decision) {
  const std::lock_guard lock(mutex_);
  ++decisions_[decision.kind];
  follow(decision);
  changed_.notify_all();
}

bool HostLog::waitForLine(const std::string& line, Bound bound) {
  return waitFor(bound, [&] { return std::ranges::find(lines_, line) != lines_.end(); });
}

bool HostLog::waitForDecisions(const std::string& kind, std::size_t count, Bound bound) {
  return waitFor(bound, [&] { return decisions_[kind] >= count; });
}

void HostLog::mark() {
  const std::lock_guard lock(mutex_);
  lines_.clear();
  decisions_.clear();
}

bool HostLog::wasResent(const std::string& payloadRequestId) const {
  const std::lock_guard lock(mutex_);
  const auto request = requestOf_.find(payloadRequestId);
  return request != requestOf_.end() && resent_.contains(request->second);
}

int HostLog::resendsAtOnce() const {
  const std::lock_guard lock(mutex_);
  return resendsAtOnce_;
}

bool HostLog::waitFor(Bound bound, const std::function<bool()>& condition) {
  std::unique_lock lock(mutex_);
  return changed_.wait_for(lock, bound, condition);
}

void HostLog::follow(const Decision& decision) {
  const auto request = particular(decision, "requestId");
  if (decision.kind == "composed") {
    const auto payload = valueFromJson(particular(decision, "parameters")).value_or(Value());
    if (const auto* id = payload["requestId"].asText()) requestOf_[*id] = request;
  } else if (decision.kind == "resent") {
    resent_[request] = true;
    resendsAtOnce_ = std::max(resendsAtOnce_, ++resending_);
  } else if (decision.kind == "answered") {
    const auto found = resent_.find(request);
    if (found != resent_.end() && std::exchange(found->second, false)) --resending_;
  }
}

}  // namespace kifo::demo
