#include "Kifo_iOS_Common_Kit/inapp/popup/ShownText.h"

namespace kifo {
namespace {

/// Bytes of the character that `lead` begins; a stray byte counts as one.
std::size_t lengthOf(unsigned char lead) {
  return lead < 0xC0 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

bool isControl(std::string_view character) {
  const auto first = static_cast<unsigned char>(character.front());
  if (first == '\n' || first == '\r' || first == '\t') return false;
  if (first < 0x20 || first == 0x7F) return true;
  return first == 0xC2 && character.size() > 1 && static_cast<unsigned char>(character[1]) < 0xA0;
}

}  // namespace

std::string shownText(std::string_view text) {
  std::string shown;
  std::size_t characters = 0;
  while (!text.empty()) {
    const auto character = text.substr(0, lengthOf(static_cast<unsigned char>(text.front())));
    text.remove_prefix(character.size());
    if (isControl(character)) continue;
    if (++characters > kMostShown) return shown + "…";
    shown += character;
  }
  return shown;
}

}  // namespace kifo
