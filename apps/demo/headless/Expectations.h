#pragma once

#include <string>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/EventParameters.h"
#include "apps/demo/headless/HostLog.h"
#include "testing/server/RequestLog.h"

namespace kifo::demo {

/// The events that the server should receive, and whether it did.
///
/// **Threading:** externally synchronised.
class Expectations {
 public:
  enum class Sending { FRESH, RESENT };

  /// One event named `name` with these values among its parameters, sent this way.
  void expect(const std::string& name, EventParameters parameters, Sending sending);
  /// At most one such event, sent either way.
  void allow(const std::string& name, EventParameters parameters);

  [[nodiscard]] std::size_t count() const;

  /// Prints what the server received, as a table.
  static void print(const testing::RequestLog::Requests& received, const HostLog& host);

  /// What is missing, unexpected, doubled, out of order or sent the wrong way; empty: all is well.
  [[nodiscard]] std::vector<std::string> faults(const testing::RequestLog::Requests& received,
                                                const HostLog& host) const;

 private:
  struct Expected {
    std::string name;
    EventParameters parameters;
    bool isResent = false;
    bool isOptional = false;
  };

  static bool matches(const Expected& expected, const testing::ReceivedRequest& request);

  std::vector<Expected> expected_;
};

}  // namespace kifo::demo
