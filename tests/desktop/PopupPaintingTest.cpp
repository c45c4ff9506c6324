// What popups and alerts do so that a frame of theirs, and of the host's, is painted in time.

#include <QImage>
#include <QPainter>
#include <QSemaphore>
#include <QTest>
#include <QThreadPool>
#include <QWidget>
#include <algorithm>
#include <future>

#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoder.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoders.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageShrinker.h"
#include "Kifo_iOS_Common_Kit/inapp/views/looks/PanelShadow.h"
#include "Kifo_iOS_Common_Kit/inapp/views/shared/WidgetOpacity.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

QImage lineOf(const std::vector<QColor>& colors) {
  QImage line(static_cast<int>(colors.size()), 1, QImage::Format_ARGB32);
  for (int x = 0; x < line.width(); ++x) {
    line.setPixelColor(x, 0, colors[static_cast<std::size_t>(x)]);
  }
  return line;
}

TEST(ImageShrinker, MakesEachPixelTheMeanOfThoseThatItStandsFor) {
  const QImage two = shrunk(lineOf({Qt::black, Qt::white, Qt::white}), {2, 1});
  EXPECT_EQ(two.pixelColor(0, 0), QColor(85, 85, 85)) << "one and a half: black and half a white";
  EXPECT_EQ(two.pixelColor(1, 0), QColor(Qt::white));
  const QImage upright =
      shrunk(lineOf({Qt::red, Qt::blue}).transformed(QTransform().rotate(90)), {1, 1});
  EXPECT_EQ(upright.pixelColor(0, 0), QColor(128, 0, 128));
}

TEST(ImageShrinker, GivesWhatCannotBeSeenNoColour) {
  const QImage one = shrunk(lineOf({QColor(255, 0, 0, 255), QColor(0, 255, 0, 0)}), {1, 1});
  EXPECT_EQ(one.pixelColor(0, 0).rgb(), QColor(Qt::red).rgb());
  EXPECT_EQ(one.pixelColor(0, 0).alpha(), 128);
}

/// Keeps all threads busy that Qt paints on.
class BusyPainters {
 public:
  BusyPainters() {
    const int threads = pool_.maxThreadCount();
    for (int i = 0; i < threads; ++i) pool_.start([this] { begun_.release(), end_.acquire(); });
    begun_.acquire(threads);
  }
  ~BusyPainters() {
    end_.release(pool_.maxThreadCount());
    pool_.waitForDone();
  }

 private:
  QThreadPool& pool_ = *QThreadPool::globalInstance();
  QSemaphore begun_;
  QSemaphore end_;
};

TEST(ImageDecoder, NeedsNoneOfTheThreadsThatQtPaintsOn) {
  for (const char* format : {"PNG", "JPG"}) {
    const std::string photograph = pictureBytes({2403, 1801}, Qt::red, format);
    std::promise<QSize> decoded;
    auto size = decoded.get_future();
    {
      const BusyPainters busy;
      ImageDecoders::start([&] { decoded.set_value(decodeImage(photograph, {480, 480}).size()); });
      EXPECT_EQ(size.wait_for(std::chrono::seconds(20)), std::future_status::ready) << format;
    }
    EXPECT_EQ(size.get().width(), 480) << format;
  }
}

class PaintCounter : public QWidget {
 public:
  using QWidget::QWidget;
  int paints = 0;

 protected:
  void paintEvent(QPaintEvent*) override { ++paints; }
};

class WidgetOpacityTest : public ::testing::Test {
 protected:
  void SetUp() override {
    window.resize(200, 200);
    panel.setGeometry(10, 10, 100, 100);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    window.grab();
    panel.paints = 0;
  }

  /// One frame, whatever the window system makes of it.
  void frameAt(double opacity) {
    setPaintedOpacity(panel, opacity);
    window.grab();
  }

  QWidget window;
  PaintCounter panel{&window};
};

TEST_F(WidgetOpacityTest, PaintsAFadingWidgetOnceForManyFrames) {
  preparePaintedOpacity(panel);
  EXPECT_EQ(panel.paints, 1);
  for (const double opacity : {0.2, 0.4, 0.6, 0.8}) frameAt(opacity);
  EXPECT_EQ(panel.paints, 1);
  panel.resize(120, 100);
  frameAt(0.9);
  EXPECT_EQ(panel.paints, 2) << "the picture no longer fits";
}

TEST_F(WidgetOpacityTest, ShowsTheWidgetItselfAgainOnceItIsOpaque) {
  frameAt(0.5);
  setPaintedOpacity(panel, 1);
  EXPECT_TRUE(QTest::qWaitFor([this] { return panel.graphicsEffect() == nullptr; }, 5000));
  preparePaintedOpacity(panel);
  setPaintedOpacity(panel, 1);
  setPaintedOpacity(panel, 0.5);
  QCoreApplication::processEvents();
  EXPECT_NE(panel.graphicsEffect(), nullptr) << "it fades again meanwhile";
}

/// How light a canvas is from the panel's edge outwards, a pixel a step, at the middle of a side.
std::vector<int> outwards(const QImage& canvas, QPointF edge, QPoint step) {
  std::vector<int> lightness;
  QPoint at = (edge * canvas.devicePixelRatio()).toPoint();
  for (; canvas.rect().contains(at); at += step) lightness.push_back(qGray(canvas.pixel(at)));
  return lightness;
}

TEST(PanelShadow, FadesOutwardsOnEachSideAtEachScaleAndIsNotUnderThePanel) {
  const QRectF panel(60, 60, 300, 200);
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    QImage canvas(QSize(420, 340) * scale, QImage::Format_RGB32);
    canvas.setDevicePixelRatio(scale);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    PanelShadow::paint(painter, panel, 12);
    painter.end();
    for (const double along : {0.4, 0.5, 0.6}) {
      const QPointF on(panel.x() + along * panel.width(), panel.y() + along * panel.height());
      for (const auto& side : {outwards(canvas, {on.x(), panel.bottom() + 1}, {0, 1}),
                               outwards(canvas, {on.x(), panel.top() - 2}, {0, -1}),
                               outwards(canvas, {panel.left() - 2, on.y()}, {-1, 0}),
                               outwards(canvas, {panel.right() + 1, on.y()}, {1, 0})}) {
        EXPECT_LT(side.front(), 245) << scale;
        EXPECT_TRUE(std::ranges::is_sorted(side)) << scale << ": no gap and no seam";
        EXPECT_EQ(side.back(), 255) << scale;
      }
      for (const QPointF& inside : {QPointF(on.x(), panel.bottom() - 3), QPointF(on.x(), 63),
                                    QPointF(63, on.y()), QPointF(panel.right() - 3, on.y())}) {
        EXPECT_EQ(qGray(canvas.pixel((inside * scale).toPoint())), 255) << scale;
      }
    }
  }
}

}  // namespace
}  // namespace kifo::testing
