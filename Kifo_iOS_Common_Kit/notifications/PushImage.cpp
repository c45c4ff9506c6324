#include "Kifo_iOS_Common_Kit/notifications/PushImage.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <chrono>
#include <memory>
#include <string_view>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/notifications/AttachmentFile.h"
#include "Kifo_iOS_Common_Kit/notifications/NotificationManager.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
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

/// Whether the bytes begin as an image file does that a desktop shows. The kit has no decoder: an
/// image that is damaged further on is found by whoever paints it.
bool isImage(std::string_view bytes) {
  using namespace std::string_view_literals;
  constexpr std::array SIGNATURES{
      "\xff\xd8\xff"sv, "\x89PNG\r\n\x1a\n"sv, "GIF8"sv, "BM"sv, "II*\0"sv, "MM\0*"sv};
  if (std::ranges::any_of(SIGNATURES, [&](auto start) { return bytes.starts_with(start); })) {
    return true;
  }
  if (bytes.starts_with("RIFF") && bytes.size() > 12 && bytes.substr(8, 4) == "WEBP") return true;
  if (bytes.size() > 8 && bytes.substr(4, 4) == "ftyp") return true;  // AVIF and HEIC
  return bytes.starts_with('<') && bytes.substr(0, 1024).find("<svg") != std::string_view::npos;
}

/// Where the answer is put. Shared with the transport, which may answer long after the wait.
struct Pending {
  Mutex mutex;
  ConditionVariable arrived;
  std::optional<HttpAnswer> answer KIFO_GUARDED_BY(mutex);
};

std::optional<HttpAnswer> fetch(const std::string& url, double limit) {
  const auto pending = std::make_shared<Pending>();
  Platform::current()->http->send(
      [url, limit] {
        HttpRequest request;
        request.url = url;
        request.timeout = limit;
        request.maximumBodySize = MAXIMUM_SIZE;
        return withConsent(std::move(request));
      },
      [pending](HttpAnswer answer) {
        const MutexLock lock(pending->mutex);
        pending->answer = std::move(answer);
        pending->arrived.notifyAll();
      });
  const MutexLock lock(pending->mutex);
  pending->arrived.waitFor(
      pending->mutex, std::chrono::duration<double>(limit),
      [&]() KIFO_REQUIRES(pending->mutex) { return pending->answer.has_value(); });
  return std::exchange(pending->answer, std::nullopt);
}

std::vector<NotificationAttachment> attachmentsOf(std::string_view bytes) {
  try {
    std::shared_ptr<const AttachmentFile> file;
    Runtime::current()->consent.unlessWithheld([&] { file = AttachmentFile::write(bytes); });
    if (!file) return {};
    return {{AttachmentFile::NAME, file->path(), file}};
  } catch (const std::exception& error) {
    Console::print(NotificationManager::LOG_TAG, std::string("error ") + error.what());
    return {};
  }
}

}  // namespace

PushImage loadPushImage(const std::string& url, double limit) {
  if (!hasWebScheme(url)) return {std::nullopt, "only http and https are loaded"};
  if (Runtime::current()->consent.isWithheld()) return {std::nullopt, "no consent"};
  auto answer = fetch(url, limit);
  if (!answer) return {std::nullopt, "timed out"};
  if (answer->error) return {std::nullopt, answer->error->message};
  if (answer->status < 200 || answer->status > 299) {
    return {std::nullopt, "HTTP status " + std::to_string(answer->status)};
  }
  if (answer->body.empty()) return {std::nullopt, "the answer is empty"};
  if (!isImage(answer->body)) return {std::nullopt, "the answer is no image"};
  return {std::move(answer->body), {}};
}

void attachPushImage(
    const std::shared_ptr<const NotificationContent>& content, const std::string& url,
    const std::function<void(std::shared_ptr<const NotificationContent>)>& handler) {
  const PushImage image = loadPushImage(url);
  if (!image.bytes) {
    callHost(NotificationManager::LOG_TAG, handler, content);
    Console::printBare("Unable to load data: " + image.error);
    return;
  }
  auto illustrated = std::make_shared<NotificationContent>(*content);
  illustrated->attachments = attachmentsOf(*image.bytes);
  callHost(NotificationManager::LOG_TAG, handler, std::move(illustrated));
}

}  // namespace kifo
