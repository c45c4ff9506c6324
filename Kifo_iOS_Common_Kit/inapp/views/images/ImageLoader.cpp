#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageLoader.h"

#include <list>
#include <unordered_map>
#include <utility>
#include <vector>

#include <QPointer>
#include <QUrl>

#include "Kifo_iOS_Common_Kit/core/runtime/Consent.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoder.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoders.h"
#include "Kifo_iOS_Common_Kit/ports/Mutex.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

constexpr std::size_t kMaximumBytes = 10u << 20;
constexpr int kNoContent = 204;
constexpr double kTimeout = 30.0;                    // seconds
constexpr qsizetype kMaximumKeptBytes = 48ll << 20;  // of decoded pictures

bool isWeb(const std::string& url) {
  const QString scheme = QUrl(QString::fromStdString(url)).scheme().toLower();
  return scheme == QLatin1String("http") || scheme == QLatin1String("https");
}

}  // namespace

/// What the UI thread knows: who waits for which URL, and the pictures that have come, the one used
/// longest ago first.
struct ImageLoader::Memory {
  struct Waiter {
    QPointer<QObject> context;
    Done done;
  };

  std::unordered_map<std::string, std::vector<Waiter>> waiting;
  std::list<std::pair<std::string, QImage>> kept;
  qsizetype keptBytes = 0;

  const QImage* find(const std::string& url) {
    for (auto entry = kept.begin(); entry != kept.end(); ++entry) {
      if (entry->first != url) continue;
      kept.splice(kept.end(), kept, entry);
      return &kept.back().second;
    }
    return nullptr;
  }

  void keep(const std::string& url, const QImage& image) {
    kept.emplace_back(url, image);
    keptBytes += image.sizeInBytes();
    while (keptBytes > kMaximumKeptBytes && kept.size() > 1) {
      keptBytes -= kept.front().second.sizeInBytes();
      kept.pop_front();
    }
  }
};

/// Where other threads leave a picture for the loader, as long as there is one.
struct ImageLoader::Inbox {
  Mutex mutex;
  ImageLoader* loader KIFO_GUARDED_BY(mutex) = nullptr;

  bool isOpen() {
    const MutexLock lock(mutex);
    return loader != nullptr;
  }

  void deliver(const std::string& url, QImage image) {
    const MutexLock lock(mutex);
    if (!loader) return;
    QMetaObject::invokeMethod(
        loader, [to = loader, url, image = std::move(image)] { to->arrived(url, image); },
        Qt::QueuedConnection);
  }
};

ImageLoader::ImageLoader(QSize bounds)
    : bounds_(bounds.expandedTo({1, 1})),
      memory_(std::make_unique<Memory>()),
      inbox_(std::make_shared<Inbox>()) {
  const MutexLock lock(inbox_->mutex);
  inbox_->loader = this;
}

ImageLoader::~ImageLoader() {
  const MutexLock lock(inbox_->mutex);
  inbox_->loader = nullptr;
}

bool ImageLoader::isUrl(const std::string& text) {
  return !text.empty() && QUrl(QString::fromStdString(text), QUrl::StrictMode).isValid();
}

void ImageLoader::load(const std::string& url, QObject* context, Done done) {
  auto& waiters = memory_->waiting[url];
  waiters.push_back({context, std::move(done)});
  if (waiters.size() > 1) return;
  if (const QImage* kept = memory_->find(url)) {
    inbox_->deliver(url, *kept);
  } else if (isWeb(url)) {
    fetch(url);
  } else {
    inbox_->deliver(url, {});
  }
}

QImage ImageLoader::kept(const std::string& url) const {
  const QImage* image = memory_->find(url);
  return image ? *image : QImage();
}

void ImageLoader::fetch(const std::string& url) {
  const auto make = [url] {
    HttpRequest request;
    request.url = url;
    request.timeout = kTimeout;
    request.maximumBodySize = kMaximumBytes;
    return withConsent(std::move(request));
  };
  // Not on the transport's thread: decoding may take a while.
  const auto done = [url, inbox = inbox_, bounds = bounds_](HttpAnswer answer) {
    if (!inbox->isOpen()) return;
    const bool isEmpty = answer.status == kNoContent || answer.body.empty();
    if (answer.error || isEmpty || answer.body.size() > kMaximumBytes) {
      return inbox->deliver(url, {});
    }
    ImageDecoders::start([url, inbox, bounds, body = std::move(answer.body)] {
      if (inbox->isOpen()) inbox->deliver(url, decodeImage(body, bounds));
    });
  };
  Platform::current()->http->send(make, done);
}

void ImageLoader::arrived(const std::string& url, const QImage& image) {
  auto waiters = memory_->waiting.extract(url);
  if (!image.isNull() && !memory_->find(url)) memory_->keep(url, image);
  if (waiters.empty()) return;
  const QPointer<ImageLoader> self(this);
  for (auto& waiter : waiters.mapped()) {
    if (waiter.context && waiter.done) waiter.done(image);
    if (!self) return;
  }
}

}  // namespace kifo
