#pragma once

#include "apps/demo/headless/Network.h"
#include "testing/FakeReachability.h"

namespace kifo::demo {

/// The loopback with a scripted reachability service, for the loopback never loses its route.
class ScriptedNetwork final : public Network {
 public:
  ScriptedNetwork();

  [[nodiscard]] std::string serverAddress() const override { return "127.0.0.1"; }
  void atTheServer(const std::function<void()>& body) const override { body(); }
  void equip(Platform& platform) const override { platform.reachability = reachability_; }
  void unplug() override;
  void plugIn() override;
  /// None: the loopback cannot be lost.
  std::vector<Loss> losses() override { return {}; }

 private:
  const std::shared_ptr<testing::FakeReachability> reachability_;
};

}  // namespace kifo::demo
