#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/HttpTransport.h"

namespace kifo::testing::simulation {

/// The transport of one simulated process. A request that was handed over is composed when the
/// transport's thread gets to it, and stays open until the world answers it.
///
/// **Threading:** one thread.
class Network final : public HttpTransport {
 public:
  struct Exchange {
    HttpRequest request;
    Done done;
  };

  /// `composed` sees each request as it goes out.
  explicit Network(std::function<void(const HttpRequest&)> composed)
      : composed_(std::move(composed)) {}

  void send(Make make, Done done) override;
  void networkChanged() override {}
  void cancelOpen() override;
  void stop() override;

  /// The transport's thread composes the next request; false when there is none.
  bool composeNext();
  /// Requests that were handed over and not composed yet.
  [[nodiscard]] std::size_t waiting() const { return waiting_.size(); }
  [[nodiscard]] const std::vector<Exchange>& open() const { return open_; }
  void answer(std::size_t index, HttpAnswer answer);
  [[nodiscard]] bool isStopped() const { return isStopped_; }
  /// The process is gone: nothing is answered any more.
  void die();

 private:
  const std::function<void(const HttpRequest&)> composed_;
  std::deque<std::pair<Make, Done>> waiting_;
  std::vector<Exchange> open_;
  bool isStopped_ = false;
  bool isDead_ = false;
};

}  // namespace kifo::testing::simulation
