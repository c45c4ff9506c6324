#include "Kifo_iOS_Common_Kit/events/EventInjections.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/core/PayloadKeys.h"
#include "Kifo_iOS_Common_Kit/core/Version.h"
#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/device/DeviceStatusHelper.h"
#include "Kifo_iOS_Common_Kit/device/LocationManager.h"
#include "Kifo_iOS_Common_Kit/events/BaseEvent.h"
#include "Kifo_iOS_Common_Kit/network/NetworkManager.h"
#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

/// Raw strings as JSON text.
template <class Enumeration>
std::string text(Enumeration value) {
  return std::string(rawValue(value));
}

}  // namespace

void insertAll(EventParameters& parameters, EventParameters more) {
  for (auto& [key, value] : more) parameters.insert_or_assign(key, std::move(value));
}

void EventTokenInjected::inject(EventParameters& parameters, const EventSnapshot& snapshot) {
  parameters[Constants::PUSH_TOKEN] = snapshot.identity->pushToken;
  parameters[Constants::APNS_TOKEN] = snapshot.identity->apnsToken;
}

void EventSdkInjected::inject(EventParameters& parameters, const EventSnapshot& snapshot) {
  parameters[Constants::CHANNEL] = Constants::MOBILE;
  parameters[Constants::SYNC] = Constants::SYNC_MARK;
  parameters[Constants::SDK_VERSION] = KIFO_VERSION;
  parameters[Constants::APPLICATION_NAME] = snapshot.identity->applicationName;
}

void EventPrimaryInjected::inject(EventParameters& parameters, const BaseEvent& event) {
  EventTokenInjected::inject(parameters, event.snapshot);
  EventSdkInjected::inject(parameters, event.snapshot);
  parameters[Constants::ACTOR_ID] =
      event.actorId ? *event.actorId : Session::withoutCommas(event.snapshot.identity->actorId);
  parameters[Constants::DEVICE_ID] = deviceId();
  // Not the id of the request that carries this payload. Kept for compatibility.
  parameters[Constants::REQUEST_ID] = Platform::current()->identifiers->uuid();
  parameters[Constants::DEVICE_OS] = Constants::OPERATING_SYSTEM;
  parameters[Constants::PHONE_BRAND] = Constants::MAKER;
  parameters[Constants::PHONE_MODEL] = modelName();
  parameters[Constants::DEVICE_OS_VERSION] = osVersion();
  parameters[Constants::SCENARIO] = event.scenario;
  parameters[Constants::TIME_ZONE] = event.snapshot.timeZone;
  parameters[Constants::TIMESTAMP] = event.snapshot.timestamp;
  parameters[Constants::PUSH_NOTIFICATION_PERMISSION_STATUS] =
      text(event.snapshot.notificationPermissionStatus);
}

void EventDeviceInjected::inject(EventParameters& parameters, const Runtime& runtime) {
  const Session& session = runtime.session;
  if (session.isBatteryStatusRequired) {
    parameters[Constants::BATTERY] = DeviceStatusHelper::batteryLevel();
  }
  if (session.isWifiStatusRequired) {
    parameters[Constants::NETWORK_STATUS] = text(networkCapability(runtime.network->flags()));
  }
  if (session.isDiskCapacityRequired) {
    // The total is measured before what is free of it.
    auto total = DeviceStatusHelper::totalDiskCapacity();
    parameters[Constants::FREE_DISK] = DeviceStatusHelper::availableDiskCapacity();
    parameters[Constants::TOTAL_DISK] = std::move(total);
  }
}

std::optional<std::pair<std::string, std::string>> Locationable::location() {
  return LocationManager::currentLocation();
}

void EventLocationInjected::inject(EventParameters& parameters, const Session& session) {
  if (!session.isLocationRequired) return;
  auto location = Locationable::location();
  if (!location) return;
  parameters[Constants::LONGITUDE] = std::move(location->second);
  parameters[Constants::LATITUDE] = std::move(location->first);
}

PageContext::PageContext(const ViewController* controller, std::optional<std::string> pageName) {
  if (!controller) return;
  name = pageName ? std::move(*pageName) : controller->className();
}

PageContext PageContext::named(std::string name) {
  PageContext page;
  page.name = std::move(name);
  return page;
}

void EventPageInjected::inject(EventParameters& parameters, const PageContext& page) {
  if (page.name) parameters[Constants::PAGE_NAME] = *page.name;
}

void BaseInjected::inject(EventParameters& parameters, BaseEvent& event) {
  insertAll(parameters, std::move(event.snapshot.location));
  EventPrimaryInjected::inject(parameters, event);
  insertAll(parameters, std::move(event.snapshot.device));
}

}  // namespace kifo
