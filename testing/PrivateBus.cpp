#include "testing/PrivateBus.h"

#include <fstream>

namespace kifo::testing {

PrivateBus::PrivateBus() {
  const std::string configuration = directory_.file("bus.conf");
  std::ofstream(configuration) << "<busconfig><type>session</type><listen>unix:dir="
                               << directory_.path()
                               << "</listen><policy context=\"default\">"
                                  "<allow send_destination=\"*\" eavesdrop=\"true\"/>"
                                  "<allow eavesdrop=\"true\"/><allow own=\"*\"/>"
                                  "</policy></busconfig>\n";
  daemon_.start({"dbus-daemon", "--nofork", "--print-address", "--config-file=" + configuration});
  address_ = daemon_.readLine();
  if (address_.empty()) problem_ = "no message bus can be had here";
}

}  // namespace kifo::testing
