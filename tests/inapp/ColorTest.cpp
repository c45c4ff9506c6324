#include <gtest/gtest.h>

#include "Kifo_iOS_Common_Kit/inapp/PopupPreferences.h"

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

class ColorText : public testing::TestWithParam<Reading> {};

TEST_P(ColorText, StandsForItsColor) {
  EXPECT_EQ(colorFromHex(GetParam().text), GetParam().color) << GetParam().text;
}

INSTANTIATE_TEST_SUITE_P(SixDigitsAreRedGreenBlue, ColorText,
                         testing::Values(Reading{"#FF0000", kRed}, Reading{"FF0000", kRed},
                                         Reading{"  ff0000\t", kRed},
                                         Reading{"#12aB5f", channels(0x12, 0xAB, 0x5F)}));

INSTANTIATE_TEST_SUITE_P(ThreeDigitsAreDoubled, ColorText,
                         testing::Values(Reading{"F00", kRed},
                                         Reading{"#F80", channels(0xFF, 0x88, 0)}));

INSTANTIATE_TEST_SUITE_P(EightDigitsBeginWithAlpha, ColorText,
                         testing::Values(Reading{"80FF0000", channels(255, 0, 0, 128)},
                                         Reading{"FF0000FF", channels(0, 0, 255)},
                                         Reading{"00000000", channels(0, 0, 0, 0)}));

// The length is that of the text, the number only that of its leading digits.
INSTANTIATE_TEST_SUITE_P(ScanningStopsAtTheFirstStranger, ColorText,
                         testing::Values(Reading{"GGGGGG", kBlack}, Reading{"0xFF00", kBlack},
                                         Reading{"FF-000", channels(0, 0, 0xFF)},
                                         Reading{"F0G", channels(0, 0xFF, 0)},
                                         Reading{"FF zzzzz", channels(0, 0, 0xFF, 0)}));

INSTANTIATE_TEST_SUITE_P(AnyOtherLengthIsOpaqueBlack, ColorText,
                         testing::Values(Reading{"", kBlack}, Reading{"###", kBlack},
                                         Reading{"12AB5", kBlack}, Reading{"FF00000", kBlack},
                                         Reading{"FFFFFFFFFFFFFFFFFFFFFFFF", kBlack}));

INSTANTIATE_TEST_SUITE_P(
    CharactersBeyondAsciiCountOnceAndMarksAmongThemAreTrimmed, ColorText,
    testing::Values(Reading{"\u00A0FF0000\u200B", kRed}, Reading{"\u201CF00\u201D", kRed},
                    Reading{"\u00E9FF000", channels(0, 0, 0)},
                    Reading{"FF\u00E9\u00E9\u00E9\u00E9", channels(0, 0, 0xFF)},
                    Reading{"\xFF\xC3", kBlack}, Reading{"F00\xE2\x80", kRed}));

}  // namespace
}  // namespace kifo
