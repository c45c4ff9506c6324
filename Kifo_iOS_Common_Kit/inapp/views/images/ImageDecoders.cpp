#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoders.h"

#include <QCoreApplication>
#include <utility>

namespace kifo {

ImageDecoders& ImageDecoders::shared() {
  static ImageDecoders& only = *new ImageDecoders;
  return only;
}

ImageDecoders::Closer::Closer() : process_(QCoreApplication::applicationPid()) {}

ImageDecoders::Closer::~Closer() {
  if (QCoreApplication::applicationPid() != process_) return;
  ImageDecoders& decoders = shared();
  MutexLock lock(decoders.mutex_);
  decoders.closed_ = true;
  const auto dropped = std::exchange(decoders.tasks_, {});
  lock.unlock();
  decoders.threads_.waitForDone();
}

void ImageDecoders::start(std::function<void()> task) {
  static const Closer closer;
  ImageDecoders& decoders = shared();
  const MutexLock lock(decoders.mutex_);
  if (decoders.closed_) return;
  decoders.tasks_.push_back(std::move(task));
  decoders.threads_.start([&decoders] { decoders.runNext(); });
}

void ImageDecoders::runNext() {
  MutexLock lock(mutex_);
  if (tasks_.empty()) return;
  const auto task = std::move(tasks_.front());
  tasks_.pop_front();
  lock.unlock();
  task();
}

void ImageDecoders::waitForDone() {
  shared().threads_.waitForDone();
}

}  // namespace kifo
