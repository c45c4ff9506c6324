#pragma once

#include <atomic>
#include <utility>

namespace kifo {

/// Where any thread leaves things for another one, which takes all of them in the order in which
/// they came. Leaving something never waits: a sender that loses its processor right here, or a
/// thread that does while it takes, keeps nobody else from going on.
///
/// **Threading:** thread-safe.
template <class Item>
class Inbox {
 public:
  Inbox() = default;
  ~Inbox() {
    take([](Item&&) {});
  }
  Inbox(const Inbox&) = delete;
  Inbox& operator=(const Inbox&) = delete;

  void put(Item item) {
    auto* const letter = new Letter{std::move(item), newest_.load(std::memory_order_relaxed)};
    while (!newest_.compare_exchange_weak(letter->older, letter)) {
    }
  }

  [[nodiscard]] bool empty() const { return newest_.load() == nullptr; }

  /// Empties the inbox; `sink` gets each item, oldest first.
  template <class Sink>
  void take(Sink&& sink) {
    Letter* oldest = nullptr;
    for (Letter* letter = newest_.exchange(nullptr); letter != nullptr;) {
      Letter* const older = std::exchange(letter->older, oldest);
      oldest = std::exchange(letter, older);
    }
    while (oldest != nullptr) {
      sink(std::move(oldest->item));
      delete std::exchange(oldest, oldest->older);
    }
  }

 private:
  struct Letter {
    Item item;
    Letter* older;  ///< While it is being taken: the next newer one.
  };

  std::atomic<Letter*> newest_ = nullptr;
};

}  // namespace kifo
