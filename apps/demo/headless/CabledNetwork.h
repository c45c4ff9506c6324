#pragma once

#include <optional>

#include "apps/demo/headless/Network.h"
#include "testing/NetworkNamespace.h"

namespace kifo::demo {

/// Real interfaces in network namespaces of this process's own; the kernel removes them with the
/// process:
///
///     kiosk   eth0   10.7.0.2, the default route by 10.7.0.1
///     ────────┴──────┬──────────────
///     server  port0  10.7.0.1 · it listens at 10.99.0.1, on its loopback
///
/// The thread that makes it stays in the kiosk's namespace, and so do the threads that it starts.
/// **Errors:** throws `std::runtime_error` where such a network cannot be had.
class CabledNetwork final : public Network {
 public:
  CabledNetwork();

  [[nodiscard]] std::string serverAddress() const override { return "10.99.0.1"; }
  void atTheServer(const std::function<void()>& body) const override { server_.run(body); }
  /// The system's own source, which asks the kernel.
  void equip(Platform&) const override {}
  void unplug() override;
  void plugIn() override;
  std::vector<Loss> losses() override;

 private:
  void findRoute() const;

  const testing::NetworkNamespace kiosk_;
  const testing::NetworkNamespace server_;
  std::optional<testing::InNamespace> inside_;
};

}  // namespace kifo::demo
