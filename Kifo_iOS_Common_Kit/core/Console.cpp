#include "Kifo_iOS_Common_Kit/core/Console.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "Kifo_iOS_Common_Kit/ports/Platform.h"

namespace kifo {
namespace {

std::atomic<void (*)(std::string_view)> fatalErrorHandler = nullptr;

}  // namespace

std::string logTag(std::string_view className) {
  return std::string("Kifo ").append(className).append(":");
}

void Console::print(std::string_view tag, std::string_view message) {
  std::string line;
  line.reserve(tag.size() + 1 + message.size());
  line.append(tag).append(" ").append(message);
  Platform::current()->console->write(std::move(line));
}

void Console::printBare(std::string_view line) {
  Platform::current()->console->write(std::string(line));
}

void fatalError(std::string_view message) {
  if (auto* handler = fatalErrorHandler.load()) handler(message);
  const std::string line = "Fatal error: " + std::string(message);
  Console::printBare(line);
  // The sink may write later than the process lives.
  std::fprintf(stderr, "%s\n", line.c_str());
  std::abort();
}

void setFatalErrorHandler(void (*handler)(std::string_view message)) {
  fatalErrorHandler = handler;
}

}  // namespace kifo
