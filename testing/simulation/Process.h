#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/TokenServiceProtocol.h"
#include "Kifo_iOS_Common_Kit/inapp/PopupRequest.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"
#include "testing/FakeReachability.h"
#include "testing/FakeSerialQueue.h"
#include "testing/simulation/Disk.h"
#include "testing/simulation/Network.h"

namespace kifo::testing::simulation {

/// User defaults that outlive the process. What is written after the power failed is lost.
class Defaults final : public UserDefaults {
 public:
  explicit Defaults(const Disk& disk) : disk_(disk) {}
  [[nodiscard]] std::optional<DefaultsValue> value(const std::string& key) const override;
  void setValue(const std::string& key, DefaultsValue value) override;
  bool removeAll() override;
  [[nodiscard]] bool isEmpty() const { return values_.empty(); }

 private:
  const Disk& disk_;
  std::map<std::string, DefaultsValue> values_;
};

/// Popups that wait for their turn, and those on the screen.
class Presenter final : public PopupPresenter {
 public:
  using Request = std::shared_ptr<const PopupRequest>;
  void present(Request request) override { waiting.push_back(std::move(request)); }

  std::deque<Request> waiting;
  std::deque<Request> shown;
};

/// A token service that answers when the world says so. It outlives the SDK's sessions, as a host's
/// own object may.
class TokenService final : public TokenServiceProtocol {
 public:
  struct Question {
    Completion completion;
    unsigned process;
  };
  TokenService() { kifoTimeout = 0.0; }
  void getToken(Completion completion) override {
    questions.push_back({std::move(completion), process});
    if (asked) asked();
  }

  std::vector<Question> questions;
  unsigned process = 0;
  std::function<void()> asked;  ///< Stands for the wait: runs on the thread that asked.
};

/// A queue whose poster may wait for what it has posted: the other threads work meanwhile.
class Queue final : public FakeSerialQueue {
 public:
  Queue(std::shared_ptr<ManualExecutor> executor, const std::function<void()>& posted)
      : FakeSerialQueue(std::move(executor)), posted_(posted) {}
  void post(Task task) override {
    FakeSerialQueue::post(std::move(task));
    if (posted_) posted_();
  }

 private:
  const std::function<void()>& posted_;
};

/// The services of one simulated process, from its start to its end.
struct Process {
  Process(const Platform& lasting, std::function<void(const HttpRequest&)> composed);
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  /// The queue, or the transport, of that number does its next piece of work, or the first after it
  /// that has any; false when none has.
  bool runOne(std::uint32_t number);
  /// From now on a thread waits inside the SDK: the one whose task runs, or that of the user
  /// interface. It goes on when what is returned is destroyed.
  [[nodiscard]] std::shared_ptr<void> block();
  [[nodiscard]] bool isBlocked() const { return !blocked_.empty(); }
  /// Nothing is left to do before time passes or the network answers.
  [[nodiscard]] bool isIdle() const;
  /// Nothing of the process runs any more.
  void die();

  std::function<void()> whenPosted;  ///< Runs after each `post` to a queue of the SDK.
  const std::shared_ptr<ManualExecutor> executor = std::make_shared<ManualExecutor>();
  const std::shared_ptr<FakeSerialQueue> main = std::make_shared<Queue>(executor, whenPosted);
  const std::shared_ptr<FakeSerialQueue> answers = std::make_shared<Queue>(executor, whenPosted);
  const std::shared_ptr<FakeSerialQueue> reaches = std::make_shared<FakeSerialQueue>(executor);
  /// Two threads of the host besides that of its user interface.
  const std::shared_ptr<FakeSerialQueue> hostA = std::make_shared<FakeSerialQueue>(executor);
  const std::shared_ptr<FakeSerialQueue> hostB = std::make_shared<FakeSerialQueue>(executor);
  const std::shared_ptr<FakeReachability> reachability = std::make_shared<FakeReachability>();
  const std::shared_ptr<Presenter> presenter = std::make_shared<Presenter>();
  const std::shared_ptr<Network> network;

 private:
  [[nodiscard]] std::array<FakeSerialQueue*, 5> queues() const {
    return {main.get(), answers.get(), reaches.get(), hostA.get(), hostB.get()};
  }

  std::vector<FakeSerialQueue*> blocked_;  ///< Null for the thread of the user interface.
};

}  // namespace kifo::testing::simulation
