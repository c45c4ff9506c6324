#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstdint>
#include <string>

namespace kifo::bench {

/// A server in a process of its own that answers every request with 200, after a delay.
class BenchServer {
 public:
  enum class Manner { instant, fiftyMilliseconds, mute };

  explicit BenchServer(Manner manner);
  ~BenchServer();
  BenchServer(const BenchServer&) = delete;
  BenchServer& operator=(const BenchServer&) = delete;

  [[nodiscard]] std::string apiUri() const { return uri("/api"); }
  [[nodiscard]] std::string listenerUri() const { return uri("/listener"); }
  /// Events that have come in so far.
  [[nodiscard]] std::uint64_t received() const { return *received_; }

 private:
  [[nodiscard]] std::string uri(const std::string& path) const;

  int port_ = 0;
  pid_t process_ = 0;
  std::atomic<std::uint64_t>* received_ = nullptr;  ///< In memory that both processes see.
};

}  // namespace kifo::bench
