// The sample's work with parameters that come from a JSON library of the host's own.
#include <Kifo_iOS_Common_Kit/core/Kifo.h>
#include <Kifo_iOS_Common_Kit/core/ValueJson.h>
#include <Kifo_iOS_Common_Kit/events/KifoEventManager.h>

#include <string_view>
#include <typeinfo>

#include <nlohmann/json.hpp>

int main(int argc, char** argv) {
  // The library's version is part of its names.
  const std::string_view type = typeid(nlohmann::json).name();
  if (argc < 2 || type.find("_99") == std::string_view::npos) return 2;
  const std::string server = argv[1];
  kifo::KifoInitConfig configuration;
  configuration.bundle = {"com.example.shop"};
  configuration.apiUri = server + "/getInAppCommunication";
  configuration.listenerUri = server + "/sdkListenerEvent";
  configuration.authorization = "a token of the server's";
  kifo::Kifo::initialize(configuration, [] {
    const auto parameters = kifo::valueFromJson(nlohmann::json{{"items", 3}}.dump());
    kifo::KifoEventManager::sendEvent("basket_opened", std::nullopt, *parameters->asMap());
  });
  return kifo::Kifo::shutdown() ? 0 : 1;
}
