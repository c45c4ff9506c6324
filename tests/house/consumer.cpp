// The least that a host does: it proves that the link and the load succeed.
#include <Kifo_iOS_Common_Kit/core/Vocabulary.h>
#include <Kifo_iOS_Common_Kit/ports/Platform.h>
#include <platform/linux/LinuxPlatform.h>

int main() {
  const auto platform = kifo::makeLinuxPlatform();
  return platform.mainQueue && rawValue(kifo::KifoEventType::LOGIN) == "login" ? 0 : 1;
}
