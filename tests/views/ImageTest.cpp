#include <gtest/gtest.h>

#include <QPointer>
#include <QThreadPool>

#include "Kifo_iOS_Common_Kit/inapp/views/ImageDecoder.h"
#include "Kifo_iOS_Common_Kit/inapp/views/ImageLoader.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

/// A PNG whose header claims a size and whose pixels are not there.
std::string pngThatClaims(quint32 width, quint32 height) {
  std::string bytes = pictureBytes({1, 1}, Qt::red);
  for (int i = 0; i < 4; ++i) {
    bytes[16 + i] = static_cast<char>(width >> (24 - 8 * i));
    bytes[20 + i] = static_cast<char>(height >> (24 - 8 * i));
  }
  const auto crc = [&] {
    quint32 value = 0xffffffffu;
    for (int i = 12; i < 29; ++i) {
      value ^= static_cast<uchar>(bytes[i]);
      for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ (value & 1 ? 0xedb88320u : 0);
    }
    return ~value;
  }();
  for (int i = 0; i < 4; ++i) bytes[29 + i] = static_cast<char>(crc >> (24 - 8 * i));
  return bytes;
}

TEST(ImageDecoder, BringsPicturesDownToTheSizeWanted) {
  EXPECT_EQ(decodeImage(pictureBytes({2000, 1000}, Qt::red), {480, 480}).size(), QSize(480, 240));
  EXPECT_EQ(decodeImage(pictureBytes({2000, 1000}, Qt::red, "JPG"), {480, 480}).size(),
            QSize(480, 240));
  EXPECT_EQ(decodeImage(pictureBytes({40, 30}, Qt::red), {480, 480}).size(), QSize(40, 30));
  EXPECT_EQ(decodeImage(pictureBytes({3000, 1}, Qt::red), {480, 480}).size(), QSize(480, 1));
}

TEST(ImageDecoder, KeepsColours) {
  const QImage red = decodeImage(pictureBytes({9, 9}, QColor(200, 10, 10)), {480, 480});
  EXPECT_EQ(red.pixelColor(4, 4), QColor(200, 10, 10));
}

TEST(ImageDecoder, RefusesWhatIsTooLargeOfAnotherFormatOrBroken) {
  const std::string whole = pictureBytes({64, 64}, Qt::red, "JPG");
  EXPECT_TRUE(decodeImage(pngThatClaims(20000, 20000), {480, 480}).isNull());
  EXPECT_TRUE(decodeImage(pngThatClaims(0x7fffffff, 1), {480, 480}).isNull());
  EXPECT_TRUE(decodeImage(pictureBytes({8, 8}, Qt::red, "BMP"), {480, 480}).isNull());
  EXPECT_TRUE(
      decodeImage("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>", {480, 480})
          .isNull());
  EXPECT_TRUE(decodeImage(whole.substr(0, 40), {480, 480}).isNull());
  EXPECT_TRUE(decodeImage("", {480, 480}).isNull());
}

class ImageLoaderTest : public PopupTest {
 protected:
  void finish() {
    fake.runUntilIdle();
    QThreadPool::globalInstance()->waitForDone();
    settle();
  }

  ImageLoader::Done count() {
    return [this](const QImage& image) {
      ++calls;
      last = image;
    };
  }

  std::unique_ptr<ImageLoader> loader = std::make_unique<ImageLoader>(QSize(480, 480));
  QObject context;
  QImage last;
  int calls = 0;
};

TEST_F(ImageLoaderTest, FetchesAUrlOnceForAllWhoAsk) {
  loader->load("https://pictures.example/1", &context, count());
  loader->load("https://pictures.example/1", &context, count());
  EXPECT_EQ(fake.http->count(), 1u);
  EXPECT_EQ(fake.http->requests()[0].maximumBodySize, 10u << 20);
  fake.http->answerNext(200, pictureBytes({10, 10}, Qt::blue));
  EXPECT_EQ(calls, 0) << "never from within, always on the UI thread";
  finish();
  EXPECT_EQ(calls, 2);
  loader->load("https://pictures.example/1", &context, count());
  EXPECT_EQ(calls, 2);
  finish();
  EXPECT_EQ(calls, 3);
  EXPECT_EQ(fake.http->count(), 1u);
  EXPECT_EQ(loader->kept("https://pictures.example/1").size(), QSize(10, 10));
}

TEST_F(ImageLoaderTest, FetchesNothingButTheWeb) {
  for (const char* url :
       {"file:///etc/passwd", "ftp://pictures.example/1", "data:image/png;base64,AAAA",
        "javascript:alert(1)", "pictures.example/1"}) {
    loader->load(url, &context, count());
  }
  finish();
  EXPECT_EQ(fake.http->count(), 0u);
  EXPECT_EQ(calls, 5);
  EXPECT_TRUE(last.isNull());
}

TEST_F(ImageLoaderTest, AFailureIsANullImageAndIsTriedAgainWhenAskedAgain) {
  loader->load("https://pictures.example/1", &context, count());
  fake.http->failNext();
  finish();
  EXPECT_EQ(calls, 1);
  EXPECT_TRUE(last.isNull());
  loader->load("https://pictures.example/1", &context, count());
  EXPECT_EQ(fake.http->count(), 2u);
}

TEST_F(ImageLoaderTest, DeletedItCallsNobodyAndAGoneContextIsSkipped) {
  auto passing = std::make_unique<QObject>();
  loader->load("https://pictures.example/1", passing.get(), count());
  loader->load("https://pictures.example/2", &context, count());
  passing.reset();
  fake.http->answerNext(200, pictureBytes({10, 10}, Qt::blue));
  finish();
  EXPECT_EQ(calls, 0);
  loader.reset();
  fake.http->answerNext(200, pictureBytes({10, 10}, Qt::blue));
  finish();
  EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace kifo::testing
