#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/ReachabilitySource.h"

namespace kifo::testing {

/// A reachability service whose answers the test sets:
///
///     reachability.setFlags(2);   // reachable
///     reachability.change(0);     // and now it is not: every started watcher is called on its
///     queue
///
/// **Threading:** thread-safe.
class FakeReachability final : public ReachabilityService {
 public:
  FakeReachability();

  std::unique_ptr<ReachabilitySource> createWithAddress(const Address& address,
                                                        int& error) override;

  /// What reading the flags gives from now on; no change is reported.
  void setFlags(std::uint32_t flags);
  /// Sets the flags and has every source with a callback and a queue call it there.
  void change(std::uint32_t flags);

  /// Codes that the operations return; 0 succeeds. A source is null when `create` fails.
  void failCreate(int code);
  void failFlags(int code);
  void failSetCallback(int code);
  void failSetQueue(int code);

  /// The addresses for which sources were asked, in order.
  [[nodiscard]] std::vector<Address> addresses() const;
  /// Sources that exist.
  [[nodiscard]] std::size_t sources() const;
  /// Sources that would call back upon a change.
  [[nodiscard]] std::size_t listening() const;
  /// What the listening watchers say of themselves.
  [[nodiscard]] std::vector<std::string> descriptions() const;

 private:
  class Source;
  struct State;
  const std::shared_ptr<State> state_;
};

}  // namespace kifo::testing
