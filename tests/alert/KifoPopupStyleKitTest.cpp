#include "Kifo_iOS_Common_Kit/inapp/views/alertcore/KifoPopupStyleKit.h"
#include "tests/support/Common.h"

#include <set>

namespace kifo {
namespace {

constexpr int kStyles = static_cast<int>(KifoPopupStyle::question) + 1;

/// The icon's pixels at `ratio` times its size of 20.
std::vector<QRgb> drawn(int style, const QColor& color, double ratio) {
  const QImage image =
      KifoPopupStyleKit::image(static_cast<KifoPopupStyle>(style), 20, color, ratio)
          .toImage()
          .convertToFormat(QImage::Format_ARGB32);
  EXPECT_EQ(image.size(), QSize(20, 20) * ratio);
  const auto* pixels = reinterpret_cast<const QRgb*>(image.constBits());
  return {pixels, pixels + image.sizeInBytes() / sizeof(QRgb)};
}

TEST(KifoPopupStyleKitTest, EachStyleHasAnIconOfItsOwnInTheColourAskedFor) {
  const QRgb color = qRgb(200, 40, 10);
  std::set<std::vector<QRgb>> pictures;
  for (int style = 0; style < kStyles; ++style) {
    const auto pixels = drawn(style, color, 2);
    const auto solid = std::ranges::count(pixels, 255, [](QRgb pixel) { return qAlpha(pixel); });
    EXPECT_EQ(std::ranges::count(pixels, color), solid) << style;
    EXPECT_GT(solid, 80) << style;
    EXPECT_LT(solid, 1200) << style;
    pictures.insert(pixels);
  }
  EXPECT_EQ(pictures.size(), kStyles);
}

TEST(KifoPopupStyleKitTest, AnIconAtThreeTimesTheScaleIsDrawnAndNotBlownUp) {
  const auto isSoft = [](QRgb pixel) { return qAlpha(pixel) > 20 && qAlpha(pixel) < 235; };
  for (int style = 0; style < kStyles; ++style) {
    const auto coarse = std::ranges::count_if(drawn(style, Qt::black, 1), isSoft);
    // An edge is one soft pixel wide at any scale; blown up it would be three by three.
    EXPECT_LT(std::ranges::count_if(drawn(style, Qt::black, 3), isSoft), 5 * coarse) << style;
  }
}

}  // namespace
}  // namespace kifo
