#include "apps/kifo/host/Host.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <thread>
#include <utility>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "apps/kifo/ReadJson.h"
#include "apps/kifo/host/Operations.h"
#include "apps/kifo/host/Properties.h"
#include "apps/kifo/host/PushOperations.h"

namespace kifo::tool {
namespace {

using Seconds = std::chrono::duration<double>;

constexpr double kLongestWait = 86400.0;
constexpr double kUsualTimeout = 30.0;
constexpr Seconds kPollingInterval(0.002);
constexpr double kShutDownBound = 2.0;
constexpr int kBadLines = 2;

double seconds(Arguments& arguments, const std::string& label) {
  const double value = arguments.number(label);
  if (!(value >= 0.0 && value <= kLongestWait)) {
    throw BadLine("\"" + label + "\" must be seconds, from 0 to a day");
  }
  return value;
}

UserAction userAction(Arguments& arguments) {
  using Kind = UserAction::Kind;
  static const auto& kinds = *new std::map<std::string, Kind>{
      {"close", Kind::close},   {"button", Kind::button}, {"body", Kind::body},
      {"select", Kind::select}, {"type", Kind::type},     {"slide", Kind::slide},
      {"submit", Kind::submit}};
  const auto word = arguments.text("popup");
  const auto kind = kinds.find(word);
  if (kind == kinds.end()) throw BadLine("a popup has no \"" + word + "\"");
  UserAction action;
  action.kind = kind->second;
  if (action.kind == Kind::button || action.kind == Kind::select) {
    action.text = arguments.text("id");
  } else if (action.kind == Kind::type) {
    action.text = arguments.text("text");
  } else if (action.kind == Kind::slide) {
    action.score = arguments.number("value");
  }
  arguments.finish();
  return action;
}

}  // namespace

Host::Host(Options options, std::shared_ptr<Output> output, HostWindow& window)
    : options_(std::move(options)),
      output_(std::move(output)),
      window_(window),
      platform_(options_.home, output_, options_.writesDecisions, window.presenter()) {
  platform_.install();
}

int Host::run(std::istream& script) {
  std::string text;
  while (!exitStatus_ && std::getline(script, text)) {
    if (text.find_first_not_of(" \t\r") != std::string::npos) carryOut(text);
  }
  Kifo::shutdown(kShutDownBound);
  // A popup that is still open must not start the system's own platform.
  Platform nothing = nullPlatform();
  nothing.console = output_;
  Platform::install(std::move(nothing));
  const int status = exitStatus_.value_or(0);
  return status == 0 && output_->hadErrors() ? kBadLines : status;
}

bool Host::shutDown(double bound) {
  const bool isDone = Kifo::shutdown(bound);
  platform_.install();
  return isDone;
}

std::shared_ptr<KifoViewController> Host::screen(const std::string& className) {
  auto& screen = screens_[className];
  if (!screen) {
    screen = window_.makeScreen(className);
    screen->viewDidLoad();
  }
  return screen;
}

// Lines ------------------------------------------------------------------------------------------

void Host::carryOut(const std::string& text) {
  const auto line = readJson(text);
  try {
    if (line.is_discarded()) throw BadLine("this is no JSON, or nested too deeply");
    if (!line.is_object()) throw BadLine("a line is one JSON object");
    carryOut(line);
  } catch (const std::exception& problem) {
    output_->error(std::string(problem.what()) + ": " + text);
  }
}

void Host::carryOut(const nlohmann::json& line) {
  using Handler = void (Host::*)(Arguments);
  static const auto& handlers =
      *new std::vector<std::pair<const char*, Handler>>{{"call", &Host::call},
                                                        {"screen", &Host::showScreen},
                                                        {"set", &Host::setProperty},
                                                        {"get", &Host::getProperty},
                                                        {"popup", &Host::popup},
                                                        {"wait", &Host::wait},
                                                        {"network", &Host::network},
                                                        {"device", &Host::device},
                                                        {"location", &Host::location},
                                                        {"defaults", &Host::defaults},
                                                        {"push", &Host::push},
                                                        {"tap", &Host::tap},
                                                        {"permission", &Host::permission},
                                                        {"exit", &Host::exit}};
  const auto handler =
      std::ranges::find_if(handlers, [&](const auto& each) { return line.contains(each.first); });
  if (handler == handlers.end()) throw BadLine("nothing is known of such a line");
  (this->*handler->second)(Arguments(line));
}

void Host::call(Arguments arguments) {
  const auto name = arguments.text("call");
  const auto operation = operations().find(name);
  if (operation == operations().end()) throw BadLine("there is no operation " + name);
  const auto action = operation->second(arguments, *this);
  arguments.finish();
  const ScriptedNotificationCentre::Line line(platform_.notifications());
  action();
}

void Host::showScreen(Arguments arguments) {
  const auto word = arguments.text("screen");
  const auto name = arguments.text("class");
  arguments.finish();
  if (word != "appear" && word != "disappear") {
    throw BadLine("a screen appears or disappears, it does not \"" + word + "\"");
  }
  const ScriptedNotificationCentre::Line line(platform_.notifications());
  const auto shown = screen(name);
  word == "appear" ? window_.appear(*shown) : window_.disappear(*shown);
}

void Host::setProperty(Arguments arguments) {
  const auto name = arguments.text("set");
  const auto property = properties().find(name);
  if (property == properties().end()) throw BadLine("there is no property " + name);
  if (!property->second.set) throw BadLine(name + " is set by the SDK alone");
  property->second.set(arguments);
}

void Host::getProperty(Arguments arguments) {
  const auto name = arguments.text("get");
  arguments.finish();
  const auto property = properties().find(name);
  if (property == properties().end()) throw BadLine("there is no property " + name);
  output_->line({{"value", property->second.get()}});
}

// The platform ------------------------------------------------------------------------------------

void Host::network(Arguments arguments) {
  const auto state = arguments.any("network");
  arguments.finish();
  platform_.network(state);
}

void Host::device(Arguments arguments) {
  auto readings = arguments.arguments("device");
  arguments.finish();
  platform_.device(std::move(readings));
}

void Host::location(Arguments arguments) {
  auto readings = arguments.arguments("location");
  arguments.finish();
  platform_.location(std::move(readings));
}

void Host::defaults(Arguments arguments) {
  const auto values = arguments.object("defaults");
  arguments.finish();
  platform_.defaults(values);
}

void Host::permission(Arguments arguments) {
  const auto status = arguments.integer("permission", INT32_MIN, INT32_MAX);
  arguments.finish();
  platform_.permission(status);
}

void Host::push(Arguments arguments) {
  auto push = arguments.arguments("push");
  arguments.finish();
  const UserInfo userInfo = push.object("userInfo");
  push.finish();
  const NotificationRequest request{"",
                                    std::make_shared<NotificationContent>(contentOfPush(userInfo))};
  const ScriptedNotificationCentre::Line line(platform_.notifications());
  NotificationManager::didReceive(request, contentHandler(output_));
}

void Host::tap(Arguments arguments) {
  auto tap = arguments.arguments("tap");
  arguments.finish();
  const UserInfo userInfo = tap.object("userInfo");
  const NotificationResponse response{
      tap.optionalText("actionIdentifier").value_or(NotificationResponse::defaultActionIdentifier)};
  tap.finish();
  const ScriptedNotificationCentre::Line line(platform_.notifications());
  NotificationManager::handleNotification(userInfo, response, actionCallback(output_));
}

// The user, and time -----------------------------------------------------------------------------

void Host::popup(Arguments arguments) {
  const auto action = userAction(arguments);
  const ScriptedNotificationCentre::Line line(platform_.notifications());
  window_.perform(action);
}

void Host::wait(Arguments arguments) {
  if (arguments.any("wait") != "idle") {
    const double time = seconds(arguments, "wait");
    arguments.finish();
    std::this_thread::sleep_for(Seconds(time));
    return;
  }
  const double timeout = arguments.has("timeout") ? seconds(arguments, "timeout") : kUsualTimeout;
  arguments.ignore("timeout");
  arguments.finish();
  waitUntilIdle(timeout);
}

void Host::waitUntilIdle(double timeout) {
  const auto end = std::chrono::steady_clock::now() + Seconds(timeout);
  for (;;) {
    const Seconds left = end - std::chrono::steady_clock::now();
    if (left <= Seconds(0) || !Kifo::waitUntilIdle(left.count())) {
      std::cerr << "kifo host: not idle after " << timeout << " s\n";
      return;
    }
    // A popup can only follow a timer, and only an answer of the user's can follow a popup.
    if (!platform_.hasTimers() && window_.isSettled() && Kifo::waitUntilIdle(left.count()) &&
        !platform_.hasTimers() && window_.isSettled()) {
      return;
    }
    std::this_thread::sleep_for(kPollingInterval);
  }
}

void Host::exit(Arguments arguments) {
  exitStatus_ = static_cast<int>(arguments.integer("exit", 0, 255));
  arguments.finish();
}

}  // namespace kifo::tool
