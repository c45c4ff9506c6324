#include "Kifo_iOS_Common_Kit/core/Url.h"

#include <algorithm>
#include <array>

namespace kifo {
namespace {

constexpr bool isLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool isHexDigit(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
constexpr bool isUnreserved(char c) {
  return isLetter(c) || isDigit(c) || c == '-' || c == '.' || c == '_' || c == '~';
}

/// By byte, whether it may stand in a URL bare; looked up once for each character of each event's
/// address.
constexpr auto kMayStandBare = [] {
  std::array<bool, 256> may{};
  for (std::size_t byte = 0; byte < may.size(); ++byte) {
    may[byte] = isUnreserved(static_cast<char>(byte));
  }
  for (const char reserved : std::string_view(":/?#[]@!$&'()*+,;=")) {
    may[static_cast<unsigned char>(reserved)] = true;
  }
  return may;
}();

bool hasOnlyUrlCharacters(std::string_view text) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (kMayStandBare[static_cast<unsigned char>(text[i])]) continue;
    const bool isEscape =
        text[i] == '%' && i + 2 < text.size() && isHexDigit(text[i + 1]) && isHexDigit(text[i + 2]);
    if (!isEscape) return false;
  }
  return true;
}

bool isScheme(std::string_view text) {
  return !text.empty() && isLetter(text.front()) &&
         std::all_of(text.begin(), text.end(), [](char c) {
           return isLetter(c) || isDigit(c) || c == '+' || c == '-' || c == '.';
         });
}

/// `authority` is what stands between "//" and the path.
bool hasSoundPort(std::string_view authority) {
  const auto colon = authority.rfind(':');
  const auto bracket = authority.rfind(']');
  if (colon == std::string_view::npos || (bracket != std::string_view::npos && bracket > colon)) {
    return true;
  }
  const auto port = authority.substr(colon + 1);
  return std::all_of(port.begin(), port.end(), isDigit);
}

/// `text` up to its path, query or fragment.
std::string_view upToPath(std::string_view text) {
  const auto isDelimiter = [](char c) { return c == '/' || c == '?' || c == '#'; };
  return {text.begin(), std::find_if(text.begin(), text.end(), isDelimiter)};
}

constexpr auto kHexDigits = std::string_view("0123456789ABCDEF");

}  // namespace

bool isUrl(std::string_view text) {
  if (text.empty() || !hasOnlyUrlCharacters(text)) return false;
  const auto colon = upToPath(text).find(':');
  std::string_view rest = text;
  if (colon != std::string_view::npos) {
    if (!isScheme(text.substr(0, colon))) return false;
    rest = text.substr(colon + 1);
  }
  if (rest.substr(0, 2) != "//") return true;
  rest.remove_prefix(2);
  return hasSoundPort(upToPath(rest));
}

void appendPercentEncoded(std::string& target, std::string_view text) {
  for (const char c : text) {
    if (isUnreserved(c)) {
      target += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    const std::array<char, 3> escape{'%', kHexDigits[byte >> 4], kHexDigits[byte & 15]};
    target.append(escape.data(), escape.size());
  }
}

}  // namespace kifo
