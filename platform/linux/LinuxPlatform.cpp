#include "platform/linux/LinuxPlatform.h"

#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"

namespace kifo {

Platform makeLinuxPlatform(const LinuxPlatformOptions&) {
  return nullPlatform();
}

Platform Platform::makeDefault() {
  return makeLinuxPlatform();
}

}  // namespace kifo
