#include "Kifo_iOS_Common_Kit/inapp/views/KifoPopupStyleKit.h"

#include <gmock/gmock.h>

#include <set>

namespace kifo {
namespace {

const std::vector<KifoPopupStyle> kStyles = {KifoPopupStyle::success, KifoPopupStyle::error,
                                             KifoPopupStyle::notice,  KifoPopupStyle::warning,
                                             KifoPopupStyle::info,    KifoPopupStyle::edit,
                                             KifoPopupStyle::wait,    KifoPopupStyle::question};

QImage drawn(KifoPopupStyle style, const QColor& color, double ratio) {
  return KifoPopupStyleKit::image(style, 20, color, ratio)
      .toImage()
      .convertToFormat(QImage::Format_ARGB32);
}

TEST(KifoPopupStyleKitTest, EachStyleHasAnIconOfItsOwnInTheColourAskedFor) {
  std::set<std::vector<QRgb>> pictures;
  for (const KifoPopupStyle style : kStyles) {
    const QImage picture = drawn(style, QColor(200, 40, 10), 2);
    ASSERT_EQ(picture.size(), QSize(40, 40));
    std::vector<QRgb> pixels;
    int solid = 0;
    for (int y = 0; y < picture.height(); ++y) {
      for (int x = 0; x < picture.width(); ++x) {
        const QRgb pixel = picture.pixel(x, y);
        pixels.push_back(pixel);
        if (qAlpha(pixel) < 255) continue;
        ++solid;
        EXPECT_EQ(QColor(pixel), QColor(200, 40, 10));
      }
    }
    EXPECT_GT(solid, 80) << static_cast<int>(style);
    EXPECT_LT(solid, 1200) << static_cast<int>(style);
    pictures.insert(pixels);
  }
  EXPECT_EQ(pictures.size(), kStyles.size());
}

TEST(KifoPopupStyleKitTest, AnIconAtThreeTimesTheScaleIsDrawnAndNotBlownUp) {
  for (const KifoPopupStyle style : kStyles) {
    const QImage coarse = drawn(style, Qt::black, 1);
    const QImage fine = drawn(style, Qt::black, 3);
    ASSERT_EQ(fine.size(), QSize(60, 60));
    const auto softEdges = [](const QImage& image) {
      int count = 0;
      for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
          const int alpha = qAlpha(image.pixel(x, y));
          if (alpha > 20 && alpha < 235) ++count;
        }
      }
      return count;
    };
    // An edge is one soft pixel wide at any scale; blown up it would be three by three.
    EXPECT_LT(softEdges(fine), 5 * softEdges(coarse)) << static_cast<int>(style);
  }
}

}  // namespace
}  // namespace kifo
