#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "Kifo_iOS_Common_Kit/ports/Value.h"

namespace kifo::testing {

/// One request as it came off the wire.
///
/// **Threading:** immutable once it is in the log.
struct ReceivedRequest {
  /// Case does not count in a header's name.
  struct NameLess {
    using is_transparent = void;
    bool operator()(std::string_view left, std::string_view right) const;
  };

  std::size_t number = 0;  ///< 1 for the first request since the log was last cleared.
  std::int64_t time = 0;   ///< Milliseconds since 1970, when the whole request was there.
  std::string method;      ///< "POST".
  std::string path;        ///< "/sdkListenerEvent", decoded, without the query.
  std::string target;      ///< Path and query as they were written.
  std::map<std::string, std::string> query;  ///< Decoded; the last of equal names wins.
  std::map<std::string, std::string, NameLess> headers;
  std::string body;
  std::optional<Value> json;  ///< The body, when it is JSON.
  int remotePort = 0;         ///< Requests of one connection share it.
  int status = 0;             ///< What is answered; 0: the connection is dropped without an answer.

  /// Sets what follows from the other members: the time, the query and the JSON.
  void complete();

  [[nodiscard]] std::string header(std::string_view name) const;

  /// The text under `key` of the JSON body; "" when there is none.
  [[nodiscard]] std::string text(const char* key) const;

  /// As one JSON object: "number", "time", "method", "path", "query", "headers", "body" (the JSON,
  /// else the text with invalid bytes replaced), "remotePort", "status".
  [[nodiscard]] Value toValue() const;

  /// When it came: "08:22:04", in local time.
  [[nodiscard]] std::string clockTime() const;
  /// What an event carries beyond what every event does: "price=12.5, sku=B-17".
  [[nodiscard]] std::string particulars(const std::string& separator = ", ") const;
};

/// The name and value pairs of a query: percent sequences decoded, "+" read as a blank.
std::map<std::string, std::string> parseQuery(std::string_view query);

}  // namespace kifo::testing
