#include "apps/kifo/Terminal.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace kifo::tool {
namespace {

bool startsCharacter(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

}  // namespace

Terminal::Terminal(int descriptor)
    : isTerminal_(isatty(descriptor) == 1),
      hasColor_(isTerminal_ && std::getenv("NO_COLOR") == nullptr) {}

std::string Terminal::paint(Color color, std::string_view text) const {
  if (!hasColor_) return std::string(text);
  constexpr const char* codes[] = {"31", "32", "33", "90"};
  return std::string("\033[") + codes[static_cast<int>(color)] + "m" + std::string(text) +
         "\033[0m";
}

std::string Terminal::plain(std::string_view text) {
  std::string made;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x20 && byte != 0x7F) {
      made += c;
      continue;
    }
    char escaped[8];
    std::snprintf(escaped, sizeof escaped, "\\x%02x", byte);
    made += escaped;
  }
  return made;
}

std::string Terminal::fitted(std::string_view text, std::size_t columns) {
  std::string made;
  std::size_t width = 0;
  std::size_t cut = 0;  // Where the last character that leaves space for "…" ends.
  for (const char c : plain(text)) {
    if (startsCharacter(c) && ++width == columns) cut = made.size();
    if (width > columns) return made.substr(0, cut) + "…";
    made += c;
  }
  return made + std::string(columns - width, ' ');
}

}  // namespace kifo::tool
