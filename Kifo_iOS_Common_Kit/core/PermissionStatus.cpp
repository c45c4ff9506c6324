#include "Kifo_iOS_Common_Kit/core/PermissionStatus.h"

#include "Kifo_iOS_Common_Kit/core/Session.h"
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

void refreshNotificationPermissionStatus() {
  Platform::current()->notifications->getNotificationSettings([](int authorizationStatus) {
    Session::shared().notificationPermissionStatus = statusOf(authorizationStatus);
  });
}

}  // namespace kifo
