#include <array>
#include <memory>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "apps/kifo/host/Host.h"
#include "apps/kifo/host/Operations.h"
#include "apps/kifo/host/ScriptedTokenService.h"

namespace kifo::tool {
namespace {

using Action = std::function<void()>;

constexpr auto kBundle = "com.example.kifo";
constexpr auto kApplicationName = "kifo";

/// With many devices at once only one's own machine may be the server.
std::string endpoint(Arguments& arguments, const std::string& label, const Host& host) {
  std::string uri = arguments.text(label);
  if (!host.options().isLoopbackOnly) return uri;
  for (const char* loopback : {"http://127.0.0.1", "http://localhost", "http://[::1]"}) {
    const std::string_view start = loopback;
    if (!uri.starts_with(start)) continue;
    const auto next = uri.substr(start.size(), 1);
    if (next.empty() || next == ":" || next == "/") return uri;
  }
  throw BadLine("\"" + label + "\" must be on this machine: many devices are load");
}

std::shared_ptr<TokenServiceProtocol> tokenService(Arguments& arguments, Host& host) {
  if (!arguments.has("tokenService")) {
    arguments.ignore("tokenService");
    return nullptr;
  }
  Arguments fields = arguments.arguments("tokenService");
  ScriptedTokenService::Answer answer{fields.optionalText("token"),
                                      fields.optionalNumber("delay").value_or(0.0)};
  const auto timeout = fields.optionalNumber("kifoTimeout");
  fields.finish();
  const auto service =
      std::make_shared<ScriptedTokenService>(std::move(answer), host.timers(), host.output());
  if (timeout) service->kifoTimeout = *timeout;
  return service;
}

KifoInitConfig configuration(Arguments fields, Host& host) {
  constexpr auto enabled = SendLifeCycleEventStatus::ENABLED;
  KifoInitConfig c;
  c.bundle.bundleIdentifier =
      fields.names("bundle") ? fields.optionalText("bundle") : std::optional<std::string>(kBundle);
  c.apiUri = endpoint(fields, "apiUri", host);
  c.listenerUri = endpoint(fields, "listenerUri", host);
  c.authorization = fields.optionalText("authorization");
  c.tokenService = tokenService(fields, host);
  c.actorId = fields.optionalText("actorId");
  c.applicationName = fields.optionalText("applicationName").value_or(kApplicationName);
  c.offlineCachingDisabled = fields.flag("offlineCachingDisabled", false);
  c.sendApplicationLifeCycleEventEnabled =
      fields.enumeration("sendApplicationLifeCycleEventEnabled", enabled);
  c.sendActivityLifeCycleEventStatus =
      fields.enumeration("sendActivityLifeCycleEventStatus", enabled);
  c.isWifiStatusRequired = fields.flag("isWifiStatusRequired", false);
  c.isDiskCapacityRequired = fields.flag("isDiskCapacityRequired", false);
  c.isBatteryStatusRequired = fields.flag("isBatteryStatusRequired", false);
  c.isLocationRequired = fields.flag("isLocationRequired", false);
  c.forceInitialize = fields.flag("forceInitialize", false);
  c.resendsWhenServerReturns = fields.flag("resendsWhenServerReturns", false);
  c.requiresConsent = fields.flag("requiresConsent", false);
  fields.finish();
  return c;
}

Action initializeWhole(Arguments& arguments, Host& host) {
  const KifoInitConfig c = configuration(arguments.arguments("configuration"), host);
  Kifo::OnSuccess onSuccess;
  if (arguments.flag("onSuccess", true)) {
    onSuccess = [output = host.output()] { output->line({{"callback", "onSuccess"}}); };
  }
  return [c, onSuccess] { Kifo::initialize(c, onSuccess); };
}

Action initializeShort(Arguments& arguments, Host& host) {
  const auto apiUri = endpoint(arguments, "apiUri", host);
  const auto listenerUri = endpoint(arguments, "listenerUri", host);
  const auto authorization = arguments.text("authorization");
  const auto localOrigin = arguments.optionalText("localOrigin").value_or(kBundle);
  const auto actorId = arguments.optionalText("actorId");
  const auto name = arguments.optionalText("applicationName").value_or(kApplicationName);
  const bool isCachingDisabled = arguments.flag("offlineCachingDisabled", false);
  return [=] {
    Kifo::initialize(apiUri, listenerUri, authorization, localOrigin, actorId, name,
                     isCachingDisabled);
  };
}

Action initialize(Arguments& arguments, Host& host) {
  return arguments.has("configuration") ? initializeWhole(arguments, host)
                                        : initializeShort(arguments, host);
}

/// An operation that takes one text.
Operation withText(const char* label, void (*operation)(const std::string&)) {
  return [label, operation](Arguments& arguments, Host&) -> Action {
    return [operation, text = arguments.text(label)] { operation(text); };
  };
}

/// A hook of the application's life; what the application is does not matter here.
Operation hook(void (*operation)()) {
  return [operation](Arguments& arguments, Host&) -> Action {
    arguments.ignore("application");
    return operation;
  };
}

template <class Question>
Operation answer(Question question) {
  return [question](Arguments&, Host& host) -> Action {
    return [question, output = host.output()] { output->line({{"value", question()}}); };
  };
}

}  // namespace

void addKifoOperations(Operations& all) {
  all["Kifo.initialize"] = initialize;
  all["Kifo.isInitialized"] = answer(&Kifo::isInitialized);
  all["Kifo.getInitializeStatusType"] =
      answer([] { return std::string(rawValue(Kifo::getInitializeStatusType())); });
  all["Kifo.giveConsent"] = hook(&Kifo::giveConsent);
  all["Kifo.revokeConsent"] = hook(&Kifo::revokeConsent);
  all["Kifo.consent"] = answer([] {
    constexpr std::array words = {"UNKNOWN", "GIVEN", "REFUSED"};
    return std::string(words[static_cast<std::size_t>(Kifo::consent())]);
  });
  all["Kifo.statistics"] = [](Arguments&, Host& host) -> Action {
    return [output = host.output()] {
      const auto [session, life, isKept] = Kifo::statistics();
      Output::Line line{{"isLifeKept", isKept}};
      for (std::size_t index = 0; index < kCounters; ++index) {
        const auto counter = static_cast<Counter>(index);
        const std::string key(name(counter));
        line["sinceInitialize"][key] = session[counter];
        line["overLife"][key] = life[counter];
      }
      output->line({{"value", line}});
    };
  };
  all["Kifo.updateActorId"] = withText("newActorId", &Kifo::updateActorId);
  all["Kifo.setPushToken"] = withText("token", &Kifo::setPushToken);
  all["Kifo.setAuthorizationToken"] = withText("token", &Kifo::setAuthorizationToken);
  all["Kifo.setApnsToken"] = [](Arguments& arguments, Host&) -> Action {
    return [token = arguments.bytes("deviceToken")] { Kifo::setApnsToken(token); };
  };
  all["Kifo.didFinishLaunchingWithOptions"] = hook(&Kifo::didFinishLaunchingWithOptions);
  all["Kifo.applicationDidBecomeActive"] = hook(&Kifo::applicationDidBecomeActive);
  all["Kifo.applicationWillResignActive"] = hook(&Kifo::applicationWillResignActive);
  all["Kifo.applicationDidReceiveRemoteNotification"] = [](Arguments& arguments, Host&) -> Action {
    return [userInfo = UserInfo(arguments.object("userInfo"))] {
      Kifo::applicationDidReceiveRemoteNotification(userInfo);
    };
  };
  all["Kifo.shutdown"] = [](Arguments& arguments, Host& host) -> Action {
    const double bound = arguments.optionalNumber("bound").value_or(2.0);
    return [bound, &host] { host.output()->line({{"value", host.shutDown(bound)}}); };
  };
}

}  // namespace kifo::tool
