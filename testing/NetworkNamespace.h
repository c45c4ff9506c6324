#pragma once

#include <functional>
#include <string>

namespace kifo::testing {

/// A network namespace with real interfaces. The kernel removes it with the object, or with the
/// process, however that ends; no file refers to it.
///
/// **Threading:** externally synchronised; threads started in the namespace stay there.
class NetworkNamespace {
 public:
  /// Why this process cannot make namespaces; empty when it can. Tests skip with this reason.
  static std::string whyNot();

  NetworkNamespace();
  ~NetworkNamespace();
  NetworkNamespace(const NetworkNamespace&) = delete;
  NetworkNamespace& operator=(const NetworkNamespace&) = delete;

  /// Runs `body` on a thread in the namespace and waits for it.
  void run(const std::function<void()>& body) const;
  /// Runs the `ip` command with these words in the namespace; false when it fails.
  bool ip(const std::string& words) const;
  /// Runs several `ip` commands, one a line.
  bool ipBatch(const std::string& lines) const;

  /// Sets an interface up or down, without a process of its own for it.
  void setLink(const std::string& interface, bool up) const;

  /// Connects this namespace with `other` by a pair of interfaces, both up: `here` in this one,
  /// `there` in the other.
  void connect(const std::string& here, const NetworkNamespace& other,
               const std::string& there) const;

  /// The file under /proc by which other processes can enter, as long as the object exists.
  [[nodiscard]] std::string path() const;
  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_ = -1;
};

/// Moves the calling thread into a namespace, and back at the end; where it may not move back, as
/// in a user namespace, it stays.
class InNamespace {
 public:
  explicit InNamespace(const NetworkNamespace& inside);
  ~InNamespace();
  InNamespace(const InNamespace&) = delete;
  InNamespace& operator=(const InNamespace&) = delete;

 private:
  const int before_;
};

/// A network interface whose other end is this program: a TUN device, made in the namespace of the
/// calling thread, down. It has a carrier as long as the object exists.
class TunDevice {
 public:
  /// `hardwareType`: an ARPHRD value; what the kernel then takes the device for.
  TunDevice(const std::string& name, int hardwareType);
  ~TunDevice();
  TunDevice(const TunDevice&) = delete;
  TunDevice& operator=(const TunDevice&) = delete;

  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_ = -1;
};

}  // namespace kifo::testing
