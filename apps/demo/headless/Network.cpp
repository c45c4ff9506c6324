#include "apps/demo/headless/Network.h"

#include <exception>
#include <iostream>

#include "apps/demo/headless/CabledNetwork.h"
#include "apps/demo/headless/ScriptedNetwork.h"
#include "testing/NetworkNamespace.h"

namespace kifo::demo {

std::unique_ptr<Network> Network::make() {
  std::string why = testing::NetworkNamespace::whyNot();
  try {
    if (why.empty()) return std::make_unique<CabledNetwork>();
  } catch (const std::exception& error) {
    why = error.what();
  }
  std::cout << "A scripted network stands in for real interfaces: " << why << "." << std::endl;
  return std::make_unique<ScriptedNetwork>();
}

}  // namespace kifo::demo
