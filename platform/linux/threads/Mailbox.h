#pragma once

#include <algorithm>
#include <atomic>
#include <chrono>
#include <optional>
#include <utility>
#include <vector>

namespace kifo {

/// Decides when a consumer thread is woken, and wakes it through an eventfd.
///
/// The consumer waits in a poll of its own, with `descriptor` among what it polls. After an item of
/// a host's thread it does not park at once: for 10 ms it looks for more every millisecond, and
/// host threads do not wake it meanwhile. So only the first of a stream of events pays for a
/// wake-up, and a thread without work never wakes up. Threads of the SDK always wake it: what they
/// post continues a chain that is waited for.
///
/// **Threading:** `beginWait` and `endWait` belong to the consumer; the others are thread-safe.
/// **Errors:** without a free descriptor the eventfd is -1, which poll ignores; the consumer then
/// waits 20 ms at most.
class Wakeups {
 public:
  using Duration = std::chrono::steady_clock::duration;
  static constexpr Duration kForever = Duration::max();

  Wakeups();
  ~Wakeups();
  Wakeups(const Wakeups&) = delete;
  Wakeups& operator=(const Wakeups&) = delete;

  [[nodiscard]] int descriptor() const { return descriptor_; }

  /// To be called once an item is visible to the consumer. Wakes it as described above.
  void itemPosted();
  /// Ends the consumer's wait, or its next one if it is busy.
  void wake();

  /// The consumer is about to poll. Gives for how long at most: zero after a `wake`.
  Duration beginWait(Duration longest);
  /// The poll returned; `signalled`: the descriptor was readable.
  void endWait(bool signalled);

 private:
  enum class State {
    busy,
    polling,  ///< Looks for items every millisecond.
    parked,   ///< Waits until it is woken.
    woken     ///< Must not wait: the descriptor was written, or `wake` came while it was busy.
  };

  bool isPolling();
  void signal() const;

  const int descriptor_;
  std::atomic<State> state_ = State::busy;
  std::atomic<bool> hostPosted_ = false;
  std::optional<std::chrono::steady_clock::time_point> pollsUntil_;  // the consumer's only
};

/// A queue that any thread fills and one thread empties, together with that thread's wake-ups.
/// Posting takes no lock: a thread that loses its processor in the middle of it delays no other.
///
/// **Threading:** `post`, `take`, `close` and `wake` are thread-safe; `beginWait` and `endWait`
/// belong to the consumer.
template <class Item>
class Mailbox {
 public:
  using Duration = Wakeups::Duration;

  Mailbox() = default;
  ~Mailbox() { take(); }
  Mailbox(const Mailbox&) = delete;
  Mailbox& operator=(const Mailbox&) = delete;

  /// Appends `item`. False once the mailbox is closed: the caller then has to `take` it out itself.
  bool post(Item item) {
    auto* const node = new Node{std::move(item), newest_.load(std::memory_order_relaxed)};
    while (!newest_.compare_exchange_weak(node->older, node)) {
    }
    if (closed_) return false;
    wakeups_.itemPosted();
    return true;
  }

  /// Empties the mailbox; gives the items in the order of posting.
  std::vector<Item> take() {
    std::vector<Item> items;
    for (Node* node = newest_.exchange(nullptr); node != nullptr;) {
      items.push_back(std::move(node->item));
      delete std::exchange(node, node->older);
    }
    std::ranges::reverse(items);
    return items;
  }

  /// From now on `post` returns false.
  void close() { closed_ = true; }

  void wake() { wakeups_.wake(); }

  /// The consumer polls `descriptor` besides its own; it is readable after a wake-up.
  [[nodiscard]] int descriptor() const { return wakeups_.descriptor(); }
  /// The consumer is about to poll. Gives for how long: `longest` at most, zero if there is an
  /// item.
  [[nodiscard]] Duration beginWait(Duration longest) {
    const Duration bound = wakeups_.beginWait(longest);
    // Looked at once the consumer counts as waiting: a post either is seen here or sees that.
    return newest_.load() ? Duration::zero() : bound;
  }
  void endWait(bool signalled) { wakeups_.endWait(signalled); }

 private:
  struct Node {
    Item item;
    Node* older;
  };

  std::atomic<Node*> newest_ = nullptr;
  std::atomic<bool> closed_ = false;
  Wakeups wakeups_;
};

}  // namespace kifo
