#include "Kifo_iOS_Common_Kit/events/EventInjections.h"

#include <utility>

#include "Kifo_iOS_Common_Kit/core/PayloadKeys.h"
#include "Kifo_iOS_Common_Kit/core/Session.h"
#include "Kifo_iOS_Common_Kit/core/Version.h"
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

void EventTokenInjected::inject(EventParameters& parameters, const EventMoment& moment) {
  parameters[Constants::PUSH_TOKEN] = moment.identity->pushToken;
  parameters[Constants::APNS_TOKEN] = moment.identity->apnsToken;
}

void EventSdkInjected::inject(EventParameters& parameters, const EventMoment& moment) {
  parameters[Constants::CHANNEL] = Constants::MOBILE;
  parameters[Constants::SYNC] = Constants::SYNC_MARK;
  parameters[Constants::SDK_VERSION] = KIFO_VERSION;
  parameters[Constants::APPLICATION_NAME] = moment.identity->applicationName;
}

void EventPrimaryInjected::inject(EventParameters& parameters, const BaseEvent& event) {
  const auto platform = Platform::current();
  EventTokenInjected::inject(parameters, event.moment);
  EventSdkInjected::inject(parameters, event.moment);
  parameters[Constants::ACTOR_ID] = event.actorId;
  parameters[Constants::DEVICE_ID] = deviceId();
  parameters[Constants::REQUEST_ID] = platform->identifiers->uuid();
  parameters[Constants::DEVICE_OS] = Constants::OPERATING_SYSTEM;
  parameters[Constants::PHONE_BRAND] = Constants::MAKER;
  parameters[Constants::PHONE_MODEL] = modelName();
  parameters[Constants::DEVICE_OS_VERSION] = osVersion();
  parameters[Constants::SCENARIO] = event.scenario;
  parameters[Constants::TIME_ZONE] = platform->clock->timeZone();
  parameters[Constants::TIMESTAMP] = event.moment.timestamp;
  parameters[Constants::PUSH_NOTIFICATION_PERMISSION_STATUS] =
      text(event.moment.notificationPermissionStatus);
}

void EventDeviceInjected::inject(EventParameters& parameters) {
  Session& session = Session::shared();
  if (session.isBatteryStatusRequired) {
    parameters[Constants::BATTERY] = DeviceStatusHelper::batteryLevel();
  }
  if (session.isWifiStatusRequired) {
    parameters[Constants::NETWORK_STATUS] =
        text(networkCapability(NetworkManager::shared().flags()));
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

void EventLocationInjected::inject(EventParameters& parameters) {
  if (!Session::shared().isLocationRequired) return;
  auto location = Locationable::location();
  if (!location) return;
  parameters[Constants::LONGITUDE] = std::move(location->second);
  parameters[Constants::LATITUDE] = std::move(location->first);
}

PageContext::PageContext(const ViewController* controller, std::optional<std::string> pageName) {
  if (!controller) return;
  name = pageName ? std::move(*pageName) : controller->className();
}

void EventPageInjected::inject(EventParameters& parameters, const PageContext& page) {
  if (page.name) parameters[Constants::PAGE_NAME] = *page.name;
}

void BaseInjected::inject(EventParameters& parameters, BaseEvent& event) {
  insertAll(parameters, std::move(event.moment.location));
  EventPrimaryInjected::inject(parameters, event);
  insertAll(parameters, std::move(event.moment.device));
}

}  // namespace kifo
