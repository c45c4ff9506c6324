#include "apps/demo/headless/Expectations.h"

#include <algorithm>
#include <cstdio>
#include <set>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/ValueJson.h"

namespace kifo::demo {

namespace {

std::string shortId(const std::string& requestId) {
  return requestId.substr(0, 8);
}

}  // namespace

void Expectations::expect(const std::string& name, EventParameters parameters, Sending sending) {
  expected_.push_back({name, std::move(parameters), sending == Sending::RESENT, false});
}

void Expectations::allow(const std::string& name, EventParameters parameters) {
  expected_.push_back({name, std::move(parameters), false, true});
}

std::size_t Expectations::count() const {
  return static_cast<std::size_t>(
      std::ranges::count_if(expected_, [](const Expected& each) { return !each.isOptional; }));
}

void Expectations::print(const testing::RequestLog::Requests& received, const HostLog& host) {
  std::printf("\n  #  time      event              request   sent     parameters of its own\n");
  int number = 0;
  for (const auto& request : received) {
    const auto id = request->text("requestId");
    std::printf("%3d  %s  %-17s  %s  %-7s  %s\n", ++number, request->clockTime().c_str(),
                request->text("name").c_str(), shortId(id).c_str(),
                host.wasResent(id) ? "again" : "fresh",
                request->json ? request->particulars().c_str() : "(no JSON)");
  }
  std::printf("\n");
}

std::vector<std::string> Expectations::faults(const testing::RequestLog::Requests& received,
                                              const HostLog& host) const {
  std::vector<std::string> faults;
  std::set<std::string> ids;
  auto open = expected_;
  for (const auto& request : received) {
    const auto id = request->text("requestId");
    const auto label = request->text("name") + " " + shortId(id);
    if (!ids.insert(id).second) faults.push_back("received twice: " + label);
    const auto found =
        std::ranges::find_if(open, [&](const Expected& each) { return matches(each, *request); });
    if (found == open.end()) {
      faults.push_back("not expected: " + label);
      continue;
    }
    // Stored requests are sent in the order in which they were stored.
    const bool overtaken =
        std::any_of(open.begin(), found, [](const Expected& each) { return each.isResent; });
    if (found->isResent && overtaken) faults.push_back("overtook an older one: " + label);
    if (!found->isOptional && found->isResent != host.wasResent(id)) {
      faults.push_back((found->isResent ? "not sent from the store: " : "not sent fresh: ") +
                       label);
    }
    open.erase(found);
  }
  for (const auto& each : open) {
    if (!each.isOptional)
      faults.push_back("missing: " + each.name + " " + jsonFromValue(each.parameters));
  }
  if (host.resendsAtOnce() > 1) faults.push_back("stored requests were sent several at a time");
  return faults;
}

bool Expectations::matches(const Expected& expected, const testing::ReceivedRequest& request) {
  if (request.text("name") != expected.name) return false;
  return std::ranges::all_of(expected.parameters, [&](const auto& parameter) {
    return (*request.json)[parameter.first] == parameter.second;
  });
}

}  // namespace kifo::demo
