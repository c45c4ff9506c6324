#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Kifo_iOS_Common_Kit/ports/Value.h"

namespace kifo::testing {

/// The faults of the server's answers. Any of them may be set together; without one an answer is
/// correct.
///
///     faults.latency = 0.05;           // every answer 50 ms late
///     faults.everyOther = 500;         // and every second one an error
///
/// As JSON, for the address "/faults":
///
///     {"latency": 0.05, "status": 401, "everyOther": 500, "body": "truncated", "bodySize":
///     209715200,
///      "connection": "drop", "on": "listener", "times": 2}
struct Faults {
  enum class Body {
    GOOD,
    TRUNCATED,     ///< "truncated": the answer's JSON, cut in its middle.
    INVALID_UTF8,  ///< "invalid-utf8": JSON whose text holds bytes that are no UTF-8.
    EMPTY,         ///< "empty": no body at all.
    HUGE_BODY,     ///< "huge": JSON of `bodySize` bytes.
  };
  enum class Connection {
    KEEP,
    DROP,  ///< "drop": closed when the request has been read, without an answer.
    DIE,   ///< "die": closed after the headers and half of the body.
  };
  enum class On { ALL, API, LISTENER };  ///< "all", "api" (the in-app query), "listener" (events).

  double latency = 0.0;  ///< Seconds by which each answer is late.
  int status = 0;        ///< In place of 200; 0: none.
  int everyOther = 0;    ///< The status of every second request that has faults; 0: none.
  Body body = Body::GOOD;
  std::size_t bodySize = 200'000'000;  ///< Of a huge body, in bytes.
  Connection connection = Connection::KEEP;
  On on = On::ALL;
  /// How many requests have the faults; none: all.
  std::optional<std::uint64_t> times = std::nullopt;

  [[nodiscard]] Value toValue() const;
  /// The faults that the map `value` names. None, with the reason in `problem`, for an unknown key,
  /// word or type.
  static std::optional<Faults> fromValue(const Value& value, std::string& problem);
};

}  // namespace kifo::testing
