#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo::demo {

/// What lies between the kiosk and its server.
///
/// **Threading:** externally synchronised.
class Network {
 public:
  /// A way in which the network is lost and found again.
  struct Loss {
    std::string what;
    std::string told;
    std::function<void()> lose;
    std::function<void()> find;
  };

  /// Real interfaces where this process may make them, else a scripted network, and a line that
  /// says why.
  static std::unique_ptr<Network> make();
  virtual ~Network() = default;

  /// The address at which the server listens.
  [[nodiscard]] virtual std::string serverAddress() const = 0;
  /// Runs `body` where the server lives.
  virtual void atTheServer(const std::function<void()>& body) const = 0;
  /// Gives the SDK what it learns of this network from.
  virtual void equip(Platform& platform) const = 0;

  virtual void unplug() = 0;
  virtual void plugIn() = 0;
  /// What can befall it while the server stays where it is.
  virtual std::vector<Loss> losses() = 0;
};

}  // namespace kifo::demo
