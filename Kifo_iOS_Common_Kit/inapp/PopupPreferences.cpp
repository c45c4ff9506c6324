#include "Kifo_iOS_Common_Kit/inapp/PopupPreferences.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace kifo {
namespace {

struct Range {
  char32_t first;
  char32_t last;
};

/// Where Unicode keeps the marks and blanks that come along when a colour is copied out of a
/// document; every other character beyond ASCII counts as a letter.
constexpr std::array kMarksAndBlanks{
    Range{0x80, 0xA9},     Range{0xAB, 0xB1},     Range{0xB4, 0xB4},     Range{0xB6, 0xB8},
    Range{0xBB, 0xBB},     Range{0xBF, 0xBF},     Range{0x2000, 0x206F}, Range{0x20A0, 0x20CF},
    Range{0x2190, 0x245F}, Range{0x3000, 0x3004}, Range{0x3008, 0x3020}, Range{0xFE00, 0xFE0F},
    Range{0xFEFF, 0xFEFF}, Range{0xFF01, 0xFF0F}, Range{0xFFFC, 0xFFFF}};

constexpr std::size_t kMissing = 16;

/// The value of a hexadecimal digit, or `kMissing`.
constexpr std::size_t digit(char32_t character) {
  constexpr std::u32string_view digits = U"0123456789abcdef";
  const char32_t lower = character >= 'A' && character <= 'F' ? character + 32 : character;
  return std::min(digits.find(lower), kMissing);
}

bool isLetterOrDigit(char32_t character) {
  if (character < 0x80) {
    return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
           (character >= 'a' && character <= 'z');
  }
  return std::ranges::none_of(kMarksAndBlanks, [character](Range range) {
    return character >= range.first && character <= range.last;
  });
}

/// Takes one character from the front of `text`; a byte that starts none counts as U+FFFD.
char32_t takeCharacter(std::string_view& text) {
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  char32_t character = length == 1 ? lead : lead & (0x7F >> length);
  const bool isStart = (lead < 0x80 || lead >= 0xC2) && length <= text.size();
  for (std::size_t index = 1; isStart && index < length; ++index) {
    character = character << 6 | (static_cast<unsigned char>(text[index]) & 0x3F);
  }
  text.remove_prefix(isStart ? length : 1);
  return isStart ? character : 0xFFFD;
}

std::u32string trimmedCharacters(std::string_view text) {
  std::u32string characters;
  while (!text.empty()) characters.push_back(takeCharacter(text));
  const auto first = std::ranges::find_if(characters, isLetterOrDigit);
  const auto last = std::find_if(characters.rbegin(), characters.rend(), isLetterOrDigit).base();
  return first < last ? std::u32string(first, last) : std::u32string();
}

/// The number at the start of `characters`; 0 when there is none. Unsigned arithmetic drops the top
/// digits of one that is too long, which no channel is taken from.
std::uint64_t scanHexadecimal(std::u32string_view characters) {
  std::uint64_t number = 0;
  for (const char32_t character : characters) {
    const std::size_t value = digit(character);
    if (value == kMissing) break;
    number = number << 4 | value;
  }
  return number;
}

Color fromChannels(std::uint64_t alpha, std::uint64_t red, std::uint64_t green,
                   std::uint64_t blue) {
  const auto component = [](std::uint64_t channel) { return static_cast<double>(channel) / 255.0; };
  return {component(red), component(green), component(blue), component(alpha)};
}

}  // namespace

Color colorFromHex(std::string_view text) {
  const std::u32string characters = trimmedCharacters(text);
  const std::uint64_t number = scanHexadecimal(characters);
  const auto byte = [number](int shift) { return number >> shift & 0xFF; };
  const auto doubledDigit = [number](int shift) { return (number >> shift & 0xF) * 17; };
  switch (characters.size()) {
    case 8:
      return fromChannels(byte(24), byte(16), byte(8), byte(0));
    case 6:
      return fromChannels(255, byte(16), byte(8), byte(0));
    case 3:
      return fromChannels(255, doubledDigit(8), doubledDigit(4), doubledDigit(0));
    default:  // black; kept for compatibility
      return fromChannels(255, 0, 0, 0);
  }
}

}  // namespace kifo
