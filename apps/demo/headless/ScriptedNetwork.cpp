#include "apps/demo/headless/ScriptedNetwork.h"

#include "Kifo_iOS_Common_Kit/ports/ReachabilityFlags.h"

namespace kifo::demo {

ScriptedNetwork::ScriptedNetwork() : reachability_(std::make_shared<testing::FakeReachability>()) {
  plugIn();
}

void ScriptedNetwork::unplug() {
  reachability_->change(0);
}

void ScriptedNetwork::plugIn() {
  reachability_->change(ReachabilityFlags::reachable);
}

}  // namespace kifo::demo
