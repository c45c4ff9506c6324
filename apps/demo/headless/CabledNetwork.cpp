#include "apps/demo/headless/CabledNetwork.h"

#include <stdexcept>

namespace kifo::demo {
namespace {

constexpr auto cable = "eth0";

void run(const testing::NetworkNamespace& where, const std::string& words) {
  if (!where.ip(words)) throw std::runtime_error("'ip " + words + "' failed");
}

}  // namespace

CabledNetwork::CabledNetwork() {
  kiosk_.connect(cable, server_, "port0");
  run(kiosk_, std::string("addr add 10.7.0.2/24 dev ") + cable);
  run(server_, "addr add 10.7.0.1/24 dev port0");
  run(server_, "addr add " + serverAddress() + "/32 dev lo");
  findRoute();
  inside_.emplace(kiosk_);
}

void CabledNetwork::unplug() {
  kiosk_.setLink(cable, false);
}

void CabledNetwork::plugIn() {
  kiosk_.setLink(cable, true);
  findRoute();  // the kernel dropped it with the link
}

std::vector<Network::Loss> CabledNetwork::losses() {
  const auto dropRoute = [this] { run(kiosk_, "route del default"); };
  return {{"link", "The cable comes off, and the link is down.", [this] { unplug(); },
           [this] { plugIn(); }},
          {"route", "The link stays up, but the default route goes.", dropRoute,
           [this] { findRoute(); }}};
}

void CabledNetwork::findRoute() const {
  run(kiosk_, "route add default via 10.7.0.1");
}

}  // namespace kifo::demo
