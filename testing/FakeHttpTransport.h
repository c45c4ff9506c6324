#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"
#include "Kifo_iOS_Common_Kit/ports/SerialQueue.h"
#include "Kifo_iOS_Common_Kit/ports/Value.h"

namespace kifo::testing {

/// A transport without a network. It keeps every request; the test answers by hand, or lets a
/// handler do it:
///
///     transport.answer(0, 200, "{}");                 // the first request, on this thread
///     transport.setHandler([](const HttpRequest&) { return HttpAnswer{{}, 200, "{}"}; });
///
/// What a handler answers is delivered on the queue given at construction, so that no answer comes
/// from within `send`.
///
/// **Threading:** thread-safe. `make` runs on the thread that sends.
class FakeHttpTransport final : public HttpTransport {
 public:
  /// None leaves the request open, to be answered by hand.
  using Handler = std::function<std::optional<HttpAnswer>(const HttpRequest&)>;

  explicit FakeHttpTransport(std::shared_ptr<SerialQueue> queue);
  ~FakeHttpTransport() override;

  void send(Make make, Done done) override;
  void networkChanged() override;
  void cancelOpen() override;
  void stop() override;

  void setHandler(Handler handler);

  /// All requests so far, in order.
  [[nodiscard]] std::vector<HttpRequest> requests() const;
  /// The bodies of the events that were sent under `name`.
  [[nodiscard]] std::vector<Value> events(const std::string& name) const;
  [[nodiscard]] std::size_t count() const;
  /// The places, in `requests`, of those that wait for an answer.
  [[nodiscard]] std::vector<std::size_t> open() const;

  /// Answers a request; false when it does not exist or has been answered.
  bool answer(std::size_t index, HttpAnswer answer);
  bool answer(std::size_t index, int status, std::string body = {});
  bool fail(std::size_t index, int code = 7, std::string message = "Couldn't connect to server");
  /// Answers the oldest open request; false when there is none.
  bool answerNext(int status, std::string body = {});
  bool failNext();

  [[nodiscard]] int networkChanges() const;

 private:
  struct Entry {
    HttpRequest request;
    Done done;  ///< Empty once answered.
  };

  const std::shared_ptr<SerialQueue> queue_;
  const std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);

  mutable std::mutex mutex_;
  // Guarded by mutex_.
  std::vector<Entry> entries_;
  Handler handler_;
  int networkChanges_ = 0;
  bool stopped_ = false;
};

}  // namespace kifo::testing
