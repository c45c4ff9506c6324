#include <Kifo_iOS_Common_Kit/core/Kifo.h>
#include <Kifo_iOS_Common_Kit/events/KifoEventManager.h>

int main(int argc, char** argv) {
  const std::string server = argc > 1 ? argv[1] : "http://127.0.0.1:8080";
  kifo::KifoInitConfig configuration;
  configuration.bundle = {"com.example.shop"};
  configuration.apiUri = server + "/getInAppCommunication";
  configuration.listenerUri = server + "/sdkListenerEvent";
  configuration.authorization = "a token of the server's";
  configuration.applicationName = "shop";
  configuration.resendsWhenServerReturns = true;
  kifo::Kifo::initialize(configuration, [] {
    // The server has answered: from now on events are sent, and stored when they cannot be.
    kifo::KifoEventManager::sendEvent("basket_opened", std::nullopt, {{"items", 3}});
  });
  return kifo::Kifo::shutdown() ? 0 : 1;  // Waits for the answers, two seconds at most.
}
