#include "Kifo_iOS_Common_Kit/core/PermissionStatus.h"

#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

KifoNotificationPermissionStatusType statusOf(int authorizationStatus) {
  using Status = KifoNotificationPermissionStatusType;
  switch (authorizationStatus) {
    case 0:
      return Status::NOT_DETERMINED;
    case 1:
      return Status::DENIED;
    case 2:
      return Status::AUTHORIZED;
    case 3:
      return Status::PROVISIONAL;
    case 4:
      return Status::EPHEMERAL;
    default:
      return Status::UNKNOWN;
  }
}

}  // namespace

void refreshNotificationPermissionStatus(const std::shared_ptr<Runtime>& runtime) {
  Platform::current()->notifications->getNotificationSettings(
      [weak = std::weak_ptr(runtime)](int status) {
        const auto asked = weak.lock();
        if (asked) asked->session.notificationPermissionStatus = statusOf(status);
      });
}

}  // namespace kifo
