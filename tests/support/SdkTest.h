#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/Kifo.h"
#include "testing/FakePlatform.h"

namespace kifo {

/// The whole SDK on fakes, with a real database file in a directory of its own.
class SdkTest : public ::testing::Test {
 protected:
  SdkTest();

  /// A configuration that initialises: endpoints, a token, a bundle, the actor "actor".
  static KifoInitConfig configuration();
  /// Initialises, answers the in-app query with `answer` and runs everything that follows; the
  /// listener then answers every event with `eventStatus`.
  void start(const std::string& answer =
                 R"({"configuration":{"stopAllEvents":false,"offlineQueueSize":100}})",
             const KifoInitConfig& config = configuration());
  /// From now on every request is answered with `status`; the in-app query with the start's answer.
  void answerWith(int status, const std::string& body = R"({"code":0})");
  /// Requests stay open from now on.
  void answerNothing();
  void setOnline(bool online);
  /// As if the process were killed and begun again on the same files: what is queued or under way
  /// is lost, and nothing is initialised.
  void restartProcess();

  /// The events that reached the transport so far, as their bodies.
  std::vector<nlohmann::json> events() const;
  std::vector<std::string> eventNames() const;
  /// The last event of a name; null when there is none.
  nlohmann::json lastEvent(const std::string& name) const;

  /// Rows of a query, cells joined by "|", on the database file as another process would see it.
  std::vector<std::string> rows(const std::string& query) const;
  std::string databasePath() const;

  testing::InstalledFakePlatform fake;
  std::string inAppAnswer;
};

}  // namespace kifo
