
#include "Kifo_iOS_Common_Kit/inapp/PopupPreferences.h"
#include "tests/support/Common.h"

namespace kifo {

static void PrintTo(const Color& color, std::ostream* out) {
  *out << "rgba(" << color.red * 255 << ", " << color.green * 255 << ", " << color.blue * 255
       << ", " << color.alpha * 255 << ")";
}

namespace {

constexpr Color channels(double red, double green, double blue, double alpha = 255) {
  return {red / 255.0, green / 255.0, blue / 255.0, alpha / 255.0};
}

constexpr Color kBlack = channels(0, 0, 0);
constexpr Color kRed = channels(255, 0, 0);

struct Reading {
  const char* text;
  Color color;
};

TEST(ColorText, StandsForTheColorThatItsLengthAndItsLeadingDigitsSay) {
  const Reading readings[] = {
      // Six digits are red, green and blue.
      {"#FF0000", kRed},
      {"FF0000", kRed},
      {"  ff0000\t", kRed},
      {"#12aB5f", channels(0x12, 0xAB, 0x5F)},
      // Three are doubled.
      {"F00", kRed},
      {"#F80", channels(0xFF, 0x88, 0)},
      // Eight begin with alpha.
      {"80FF0000", channels(255, 0, 0, 128)},
      {"FF0000FF", channels(0, 0, 255)},
      {"00000000", channels(0, 0, 0, 0)},
      // The length is that of the text, the number only that of its leading digits.
      {"GGGGGG", kBlack},
      {"0xFF00", kBlack},
      {"FF-000", channels(0, 0, 0xFF)},
      {"F0G", channels(0, 0xFF, 0)},
      {"FF zzzzz", channels(0, 0, 0xFF, 0)},
      // Any other length is opaque black.
      {"", kBlack},
      {"###", kBlack},
      {"12AB5", kBlack},
      {"FF00000", kBlack},
      {"FFFFFFFFFFFFFFFFFFFFFFFF", kBlack},
      // Characters beyond ASCII count once, and marks among them are trimmed.
      {"\u00A0FF0000\u200B", kRed},
      {"\u201CF00\u201D", kRed},
      {"\u00E9FF000", kBlack},
      {"FF\u00E9\u00E9\u00E9\u00E9", channels(0, 0, 0xFF)},
      {"\xFF\xC3", kBlack},
      {"F00\xE2\x80", kRed}};
  for (const auto& [text, color] : readings) EXPECT_EQ(colorFromHex(text), color) << text;
}

}  // namespace
}  // namespace kifo
