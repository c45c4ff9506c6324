#include "Kifo_iOS_Common_Kit/core/Console.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

std::atomic<void (*)(std::string_view)> fatalErrorHandler = nullptr;

/// Whether a control character may start with this byte; sorts out nearly every line in one loop.
bool mayBeginControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7F || byte == 0xC2;
}

/// Whether a control character starts at `index`: ASCII's, or one of U+0080 to U+009F as UTF-8.
bool isControl(std::string_view text, std::size_t index) {
  const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text[at]); };
  if (byte(index) < 0x20 || byte(index) == 0x7F) return true;
  return byte(index) == 0xC2 && index + 1 < text.size() && byte(index + 1) >= 0x80 &&
         byte(index + 1) < 0xA0;
}

/// `line` as it is but for control characters, which are shown as "\n" or "\x1b": a text from a
/// server or a host can neither forge a line nor steer a terminal.
std::string escaped(std::string line) {
  if (std::ranges::none_of(line, mayBeginControl)) return line;
  const std::string text = std::exchange(line, {});
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (!isControl(text, index)) {
      line += text[index];
    } else if (text[index] == '\n') {
      line += "\\n";
    } else {
      if (text[index] == '\xC2') ++index;
      char code[5];
      std::snprintf(code, sizeof code, "\\x%02x", static_cast<unsigned char>(text[index]));
      line += code;
    }
  }
  return line;
}

}  // namespace

void Console::print(std::string_view tag, std::string_view message) {
  std::string line;
  line.reserve(tag.size() + 1 + message.size());
  line.append(tag).append(" ").append(message);
  Platform::current()->console->write(escaped(std::move(line)));
}

void Console::printBare(std::string_view line) {
  Platform::current()->console->write(escaped(std::string(line)));
}

void fatalError(std::string_view message) {
  if (auto* handler = fatalErrorHandler.load()) handler(message);
  const std::string line = escaped("Fatal error: " + std::string(message));
  Console::printBare(line);
  // The sink may write later than the process lives.
  std::fprintf(stderr, "%s\n", line.c_str());
  std::abort();
}

void setFatalErrorHandler(void (*handler)(std::string_view message)) {
  fatalErrorHandler = handler;
}

}  // namespace kifo
