#include "Kifo_iOS_Common_Kit/network/KifoNotificationCenter.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Console.h"

namespace kifo {

struct KifoNotificationCenter::Entry {
  Token token;
  std::string name;
  Observer observer;
  std::atomic<bool> isRemoved = false;
};

KifoNotificationCenter& KifoNotificationCenter::defaultCenter() {
  static auto& only = *new KifoNotificationCenter;
  return only;
}

KifoNotificationCenter::Token KifoNotificationCenter::addObserver(std::string name,
                                                                  Observer observer) {
  auto entry = std::make_shared<Entry>();
  entry->name = std::move(name);
  entry->observer = std::move(observer);
  const std::lock_guard lock(mutex_);
  entry->token = ++last_;
  entries_.push_back(std::move(entry));
  return last_;
}

void KifoNotificationCenter::removeObserver(Token token) {
  // What the observer captured is destroyed after the lock is released.
  std::shared_ptr<Entry> found;
  const std::lock_guard lock(mutex_);
  const auto place = std::ranges::find(entries_, token, [](const auto& e) { return e->token; });
  if (place == entries_.end()) return;
  found = std::move(*place);
  found->isRemoved = true;
  entries_.erase(place);
}

void KifoNotificationCenter::post(const KifoNotification& note) {
  std::vector<std::shared_ptr<Entry>> concerned;
  {
    const std::lock_guard lock(mutex_);
    std::ranges::copy_if(entries_, std::back_inserter(concerned),
                         [&](const auto& entry) { return entry->name == note.name; });
  }
  for (const auto& entry : concerned) {
    // An observer before this one may have removed it.
    if (!entry->isRemoved) callHost(KifoNotificationCenter::LOG_TAG, entry->observer, note);
  }
}

}  // namespace kifo
