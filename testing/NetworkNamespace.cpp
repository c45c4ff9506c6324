#include "testing/NetworkNamespace.h"

#include <fcntl.h>
#include <linux/if.h>
#include <linux/if_tun.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "testing/TemporaryDirectory.h"

namespace kifo::testing {
namespace {

constexpr auto kOwnNamespace = "/proc/thread-self/ns/net";

int openOwnNamespace() {
  return open(kOwnNamespace, O_RDONLY | O_CLOEXEC);
}

void enter(int descriptor) {
  if (setns(descriptor, CLONE_NEWNET) != 0) throw std::runtime_error("cannot enter a namespace");
}

/// A descriptor of a fresh namespace, or -1 with the reason in `error`.
int makeNamespace(int& error) {
  int descriptor = -1;
  error = 0;
  std::thread([&] {
    if (unshare(CLONE_NEWNET) != 0) {
      error = errno;
    } else {
      descriptor = openOwnNamespace();
    }
  }).join();
  return descriptor;
}

ifreq requestFor(const std::string& interface) {
  ifreq request{};
  std::strncpy(request.ifr_name, interface.c_str(), IFNAMSIZ - 1);
  return request;
}

bool succeeds(const std::string& command) {
  return std::system(command.c_str()) == 0;
}

}  // namespace

std::string NetworkNamespace::whyNot() {
  static const std::string reason = []() -> std::string {
    int error = 0;
    const int descriptor = makeNamespace(error);
    if (descriptor < 0) return std::string("cannot make network namespaces: ") + strerror(error);
    close(descriptor);
    if (!succeeds("ip -V >/dev/null 2>&1")) return "the program 'ip' (iproute2) is not installed";
    return {};
  }();
  return reason;
}

NetworkNamespace::NetworkNamespace() {
  int error = 0;
  descriptor_ = makeNamespace(error);
  if (descriptor_ < 0) throw std::runtime_error(std::string("no namespace: ") + strerror(error));
  ip("link set lo up");
  // Addresses are good at once, so that nothing changes but what the test changes.
  run([] { std::ofstream("/proc/sys/net/ipv6/conf/default/accept_dad") << 0; });
}

NetworkNamespace::~NetworkNamespace() {
  close(descriptor_);
}

std::string NetworkNamespace::path() const {
  return "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(descriptor_);
}

void NetworkNamespace::run(const std::function<void()>& body) const {
  std::thread([&] {
    enter(descriptor_);
    body();
  }).join();
}

bool NetworkNamespace::ip(const std::string& words) const {
  bool done = false;
  run([&] { done = succeeds("ip " + words); });
  return done;
}

bool NetworkNamespace::ipBatch(const std::string& lines) const {
  const TemporaryDirectory directory;
  const std::string file = directory.path() + "/batch";
  std::ofstream(file) << lines;
  return ip("-batch " + file);
}

void NetworkNamespace::setLink(const std::string& interface, bool up) const {
  run([&] {
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request = requestFor(interface);
    ioctl(socket, SIOCGIFFLAGS, &request);
    request.ifr_flags =
        static_cast<short>(up ? request.ifr_flags | IFF_UP : request.ifr_flags & ~IFF_UP);
    const bool done = ioctl(socket, SIOCSIFFLAGS, &request) == 0;
    close(socket);
    if (!done) throw std::runtime_error("cannot set " + interface + " up or down");
  });
}

void NetworkNamespace::connect(const std::string& here, const NetworkNamespace& other,
                               const std::string& there) const {
  if (!ip("link add " + here + " type veth peer name " + there + " netns " + other.path()) ||
      !ip("link set " + here + " up") || !other.ip("link set " + there + " up")) {
    throw std::runtime_error("no cable from " + here + " to " + there);
  }
}

InNamespace::InNamespace(const NetworkNamespace& inside) : before_(openOwnNamespace()) {
  enter(inside.descriptor());
}

InNamespace::~InNamespace() {
  [[maybe_unused]] const int refused = setns(before_, CLONE_NEWNET);
  close(before_);
}

TunDevice::TunDevice(const std::string& name, int hardwareType)
    : descriptor_(open("/dev/net/tun", O_RDWR | O_CLOEXEC)) {
  ifreq request = requestFor(name);
  request.ifr_flags = IFF_TUN | IFF_NO_PI;
  if (descriptor_ < 0 || ioctl(descriptor_, TUNSETIFF, &request) != 0 ||
      ioctl(descriptor_, TUNSETLINK, hardwareType) != 0) {
    throw std::runtime_error("no TUN device " + name + ": " + strerror(errno));
  }
}

TunDevice::~TunDevice() {
  close(descriptor_);
}

}  // namespace kifo::testing
