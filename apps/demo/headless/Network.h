#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo::demo {

/// The network between the kiosk and its server.
///
/// **Threading:** externally synchronised.
class Network {
 public:
  /// One way to lose the network and to get it back.
  struct Loss {
    std::string what;
    std::string announcement;  ///< Printed before it is lost.
    std::function<void()> lose;
    std::function<void()> find;
  };

  /// Real interfaces where this process may make them; else a scripted network, and a line is
  /// printed that says why.
  static std::unique_ptr<Network> make();
  virtual ~Network() = default;

  /// The address at which the server listens.
  [[nodiscard]] virtual std::string serverAddress() const = 0;
  /// Runs `body` in the server's network.
  virtual void atTheServer(const std::function<void()>& body) const = 0;
  /// Sets the reachability service that belongs to this network.
  virtual void equip(Platform& platform) const = 0;

  virtual void unplug() = 0;
  virtual void plugIn() = 0;
  /// The losses to show while the server keeps running.
  virtual std::vector<Loss> losses() = 0;
};

}  // namespace kifo::demo
