#include "apps/kifo/host/Properties.h"

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/core/Version.h"

namespace kifo::tool {
namespace {

using Line = Output::Line;

template <class Value>
Property readable(Value (*get)()) {
  if constexpr (std::is_enum_v<Value>) {
    return {[get] { return Line(std::string(rawValue(get()))); }};
  } else {
    return {[get] { return Line(get()); }};
  }
}

template <class Enumeration>
Property writable(Enumeration (*get)(), void (*set)(Enumeration)) {
  Property property = readable(get);
  property.set = [set](Arguments& arguments) {
    const auto value = arguments.enumeration<Enumeration>("value");
    arguments.finish();
    set(value);
  };
  return property;
}

Property timeout() {
  return {[] {
    const auto seconds = Kifo::requestTimeout();
    return seconds ? Line(*seconds) : Line();
  }};
}

}  // namespace

const std::map<std::string, Property>& properties() {
  static const auto& all = *new std::map<std::string, Property>{
      {"Kifo.sendEventStatus", writable(&Kifo::sendEventStatus, &Kifo::setSendEventStatus)},
      {"Kifo.sendApplicationLifeCycleEventStatus",
       writable(&Kifo::sendApplicationLifeCycleEventStatus,
                &Kifo::setSendApplicationLifeCycleEventStatus)},
      {"Kifo.sendActivityLifeCycleEventStatus",
       writable(&Kifo::sendActivityLifeCycleEventStatus,
                &Kifo::setSendActivityLifeCycleEventStatus)},
      {"Kifo.apiUri", readable(&Kifo::apiUri)},
      {"Kifo.listenerUri", readable(&Kifo::listenerUri)},
      {"Kifo.authorization", readable(&Kifo::authorization)},
      {"Kifo.localOrigin", readable(&Kifo::localOrigin)},
      {"Kifo.actorId", readable(&Kifo::actorId)},
      {"Kifo.applicationName", readable(&Kifo::applicationName)},
      {"Kifo.offlineCachingDisabled", readable(&Kifo::offlineCachingDisabled)},
      {"Kifo.pushToken", readable(&Kifo::pushToken)},
      {"Kifo.apnsToken", readable(&Kifo::apnsToken)},
      {"Kifo.initializeStatus", readable(&Kifo::getInitializeStatusType)},
      {"Kifo.networkStatus", readable(&Kifo::networkStatus)},
      {"Kifo.notificationPermissionStatus", readable(&Kifo::notificationPermissionStatus)},
      {"NotificationManager.notificationPermissionStatus",
       readable(&Kifo::notificationPermissionStatus)},
      {"Kifo.isInstall", readable(&Kifo::isInstall)},
      {"Kifo.isStarted", readable(&Kifo::isStarted)},
      {"Kifo.requestTimeout", timeout()},
      {"Kifo.isWifiStatusRequired", readable(&Kifo::isWifiStatusRequired)},
      {"Kifo.isDiskCapacityRequired", readable(&Kifo::isDiskCapacityRequired)},
      {"Kifo.isBatteryStatusRequired", readable(&Kifo::isBatteryStatusRequired)},
      {"Kifo.isLocationRequired", readable(&Kifo::isLocationRequired)},
      {"Kifo.version", {[] { return Line(KIFO_VERSION); }}},
  };
  return all;
}

}  // namespace kifo::tool
