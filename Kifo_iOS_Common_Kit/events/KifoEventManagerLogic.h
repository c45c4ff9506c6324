#pragma once

#include <concepts>
#include <memory>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "Kifo_iOS_Common_Kit/core/ViewController.h"
#include "Kifo_iOS_Common_Kit/core/Vocabulary.h"

namespace kifo {

/// What an event manager offers to the SDK's own flows.
template <class Manager>
concept KifoEventManagerLogic = requires(std::shared_ptr<ViewController> controller,
                                         std::optional<std::string> pageName, std::string name,
                                         EventParameters parameters, TokenProviderType provider) {
  Manager::sendInstallEvent(pageName);
  Manager::sendInitializeEvent();
  Manager::sendTokenChangeEvent(provider);
  Manager::sendChangeActorEvent(name, name);
  Manager::sendAppForegroundEvent();
  Manager::sendAppBackgroundEvent();
  Manager::sendPageInEvent(controller, pageName);
  Manager::sendPageOutEvent(controller, pageName);
  Manager::sendLoginEvent(controller, pageName, parameters);
  Manager::sendEvent(controller, name, pageName, parameters);
};

}  // namespace kifo
