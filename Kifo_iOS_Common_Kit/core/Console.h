#pragma once

#include <exception>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Export.h"

namespace kifo {

/// Prints through the platform's console sink. A class that prints has a constant `LOG_TAG` that
/// starts its lines: "Kifo ServiceClient:" for ServiceClient. Control characters in a text are
/// shown escaped, so that each call prints one line.
///
/// **Threading:** thread-safe; as quick as the sink is.
class KIFO_SHARED Console {
 public:
  /// Prints `tag`, a blank and `message`.
  static void print(std::string_view tag, std::string_view message);
  /// Prints a line that bears no tag.
  static void printBare(std::string_view line);
};

/// Ends the process for a mistake that the protocol calls fatal, after saying so on the console and
/// on standard error. Tests may set a handler.
[[noreturn]] KIFO_SHARED void fatalError(std::string_view message);

/// Runs in place of ending the process; it must not return. An empty one restores the default.
KIFO_SHARED void setFatalErrorHandler(void (*handler)(std::string_view message));

/// Runs host code, unless the callback is empty: what it throws is printed and dropped.
template <class Callback, class... Arguments>
void callHost(std::string_view tag, const Callback& callback, Arguments&&... arguments) {
  try {
    if constexpr (std::is_constructible_v<bool, const Callback&>) {
      if (!callback) return;
    }
    callback(std::forward<Arguments>(arguments)...);
  } catch (const std::exception& error) {
    Console::print(tag, std::string("a host callback threw: ") + error.what());
  } catch (...) {
    Console::print(tag, "a host callback threw");
  }
}

}  // namespace kifo
