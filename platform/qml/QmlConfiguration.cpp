#include "platform/qml/QmlConfiguration.h"

#include <QJSValueIterator>
#include <algorithm>
#include <string>
#include <string_view>
#include <variant>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "Kifo_iOS_Common_Kit/core/Kifo.h"

namespace kifo {
namespace {

using Member = std::variant<std::string KifoInitConfig::*,
                            std::optional<std::string> KifoInitConfig::*, bool KifoInitConfig::*,
                            SendLifeCycleEventStatus KifoInitConfig::*, Bundle KifoInitConfig::*>;

struct Field {
  std::string_view name;
  Member member;
};

const Field kFields[] = {
    {"bundle", &KifoInitConfig::bundle},
    {"apiUri", &KifoInitConfig::apiUri},
    {"listenerUri", &KifoInitConfig::listenerUri},
    {"authorization", &KifoInitConfig::authorization},
    {"actorId", &KifoInitConfig::actorId},
    {"applicationName", &KifoInitConfig::applicationName},
    {"offlineCachingDisabled", &KifoInitConfig::offlineCachingDisabled},
    {"sendApplicationLifeCycleEventEnabled", &KifoInitConfig::sendApplicationLifeCycleEventEnabled},
    {"sendActivityLifeCycleEventStatus", &KifoInitConfig::sendActivityLifeCycleEventStatus},
    {"isWifiStatusRequired", &KifoInitConfig::isWifiStatusRequired},
    {"isDiskCapacityRequired", &KifoInitConfig::isDiskCapacityRequired},
    {"isBatteryStatusRequired", &KifoInitConfig::isBatteryStatusRequired},
    {"isLocationRequired", &KifoInitConfig::isLocationRequired},
    {"forceInitialize", &KifoInitConfig::forceInitialize},
    {"resendsWhenServerReturns", &KifoInitConfig::resendsWhenServerReturns},
    {"requiresConsent", &KifoInitConfig::requiresConsent},
};

/// Writes a value of JavaScript into a member; false when its type is wrong.
struct Writer {
  bool operator()(bool KifoInitConfig::*member) const {
    if (value.isBool()) configuration.*member = value.toBool();
    return value.isBool();
  }
  bool operator()(SendLifeCycleEventStatus KifoInitConfig::*member) const {
    if (!value.isBool()) return false;
    configuration.*member =
        value.toBool() ? SendLifeCycleEventStatus::ENABLED : SendLifeCycleEventStatus::DISABLED;
    return true;
  }
  bool operator()(Bundle KifoInitConfig::*member) const {
    if (value.isString()) (configuration.*member).bundleIdentifier = value.toString().toStdString();
    return value.isString();
  }
  template <class Text>
  bool operator()(Text KifoInitConfig::*member) const {
    if (value.isString()) configuration.*member = value.toString().toStdString();
    return value.isString();
  }

  KifoInitConfig& configuration;
  const QJSValue& value;
};

void complain(const std::string& what) {
  Console::print(Kifo::LOG_TAG, "initialize: " + what);
}

const char* wantedBy(const Member& member) {
  const bool isSwitch = std::holds_alternative<bool KifoInitConfig::*>(member) ||
                        std::holds_alternative<SendLifeCycleEventStatus KifoInitConfig::*>(member);
  return isSwitch ? "true or false" : "a text";
}

}  // namespace

KifoInitConfig configurationOf(const QJSValue& values) {
  KifoInitConfig configuration;
  if (!values.isObject()) {
    complain("the configuration is no object, such as { apiUri: \"https://...\" }");
    return configuration;
  }
  for (QJSValueIterator each(values); each.next();) {
    const std::string name = each.name().toStdString();
    const QJSValue value = each.value();
    const auto* const field = std::ranges::find(kFields, std::string_view(name), &Field::name);
    if (field == std::end(kFields)) {
      complain("the configuration has no \"" + name + "\"");
    } else if (!std::visit(Writer{configuration, value}, field->member)) {
      complain("\"" + name + "\" wants " + wantedBy(field->member));
    }
  }
  return configuration;
}

}  // namespace kifo
