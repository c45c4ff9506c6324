#pragma once

#include <functional>
#include <string>

namespace kifo::testing {

/// A network of its own, with real interfaces, that goes when the object does, or with the process
/// however that ends: nothing stands for it in any file system.
///
/// **Threading:** externally synchronised; threads started inside stay inside.
class NetworkNamespace {
 public:
  /// Why this process cannot make namespaces; empty when it can. Tests skip with this reason.
  static std::string whyNot();

  NetworkNamespace();
  ~NetworkNamespace();
  NetworkNamespace(const NetworkNamespace&) = delete;
  NetworkNamespace& operator=(const NetworkNamespace&) = delete;

  /// Runs `body` on a thread inside and waits for it.
  void run(const std::function<void()>& body) const;
  /// Runs the `ip` command with these words inside; false when it fails.
  bool ip(const std::string& words) const;
  /// Runs many of them at once, one a line, as `ip -batch` does.
  bool ipBatch(const std::string& lines) const;

  /// Sets an interface up or down, without a process of its own for it.
  void setLink(const std::string& interface, bool up) const;

  /// Makes a cable from here to `other`: interface `here` on this side, `there` on the other, up.
  void connect(const std::string& here, const NetworkNamespace& other,
               const std::string& there) const;

  /// The file that stands for this namespace, as long as the object exists.
  [[nodiscard]] std::string path() const;
  [[nodiscard]] int descriptor() const { return descriptor_; }

 private:
  int descriptor_ = -1;
};

/// Puts the calling thread into a namespace, and back when it goes; where it may not go back, as in
/// a user namespace, it stays inside.
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
