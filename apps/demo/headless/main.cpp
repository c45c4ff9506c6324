// kifo-demo: a day of a kiosk, and the server's view of it.
#include <iostream>
#include <string_view>

#include "apps/demo/headless/Day.h"
#include "testing/TemporaryDirectory.h"

int main(int argc, char** argv) {
  const bool verbose = argc == 2 && std::string_view(argv[1]) == "--verbose";
  if (argc > 1 && !verbose) {
    std::cerr << "usage: kifo-demo [--verbose]\n  --verbose  shows the SDK's console lines too\n";
    return 2;
  }
  const kifo::testing::TemporaryDirectory home;
  kifo::demo::Day day(home.path(), verbose);
  const bool lived = day.live();
  if (!lived) std::cout << "  wrong: something that was waited for did not come" << std::endl;
  return day.judge() && lived ? 0 : 1;
}
