#include "Kifo_iOS_Common_Kit/notifications/PushImage.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

constexpr std::size_t MAXIMUM_SIZE = 10u << 20;

bool hasWebScheme(std::string_view url) {
  std::string scheme(url.substr(0, url.find(':')));
  std::ranges::transform(scheme, scheme.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return scheme == "http" || scheme == "https";
}

/// Where the answer is put. Shared with the transport, which may answer long after the wait.
struct Pending {
  std::mutex mutex;
  std::condition_variable arrived;
  std::optional<HttpAnswer> answer;  // guarded by mutex
};

std::optional<HttpAnswer> fetch(const std::string& url, double limit) {
  const auto pending = std::make_shared<Pending>();
  Platform::current()->http->send(
      [url, limit] {
        HttpRequest request;
        request.url = url;
        request.timeout = limit;
        request.maximumBodySize = MAXIMUM_SIZE;
        return request;
      },
      [pending](HttpAnswer answer) {
        const std::lock_guard lock(pending->mutex);
        pending->answer = std::move(answer);
        pending->arrived.notify_all();
      });
  std::unique_lock lock(pending->mutex);
  pending->arrived.wait_for(lock, std::chrono::duration<double>(limit),
                            [&] { return pending->answer.has_value(); });
  return std::exchange(pending->answer, std::nullopt);
}

}  // namespace

PushImage loadPushImage(const std::string& url, double limit) {
  if (!hasWebScheme(url)) return {std::nullopt, "only http and https are loaded"};
  auto answer = fetch(url, limit);
  if (!answer) return {std::nullopt, "timed out"};
  if (answer->error) return {std::nullopt, answer->error->message};
  if (answer->status < 200 || answer->status > 299) {
    return {std::nullopt, "HTTP status " + std::to_string(answer->status)};
  }
  return {std::move(answer->body), {}};
}

}  // namespace kifo
