#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoder.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageLoader.h"
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

TEST(ImageDecoderTest, BringsPicturesDownToTheSizeWantedAndKeepsTheirColours) {
  const struct {
    QSize size;
    const char* format;
    QSize decoded;
  } cases[] = {{{2000, 1000}, "PNG", {480, 240}},
               {{2000, 1000}, "JPG", {480, 240}},
               {{40, 30}, "PNG", {40, 30}},
               {{3000, 1}, "PNG", {480, 1}}};
  for (const auto& [size, format, expected] : cases) {
    EXPECT_EQ(decodeImage(pictureBytes(size, Qt::red, format), {480, 480}).size(), expected);
  }
  const QImage red = decodeImage(pictureBytes({9, 9}, QColor(200, 10, 10)), {480, 480});
  EXPECT_EQ(red.pixelColor(4, 4), QColor(200, 10, 10));
}

TEST(ImageDecoderTest, RefusesWhatIsTooLargeOfAnotherFormatOrBroken) {
  for (const std::string& bytes :
       {pngThatClaims(20000, 20000), pngThatClaims(0x7fffffff, 1),
        pictureBytes({8, 8}, Qt::red, "BMP"),
        std::string("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"),
        pictureBytes({64, 64}, Qt::red, "JPG").substr(0, 40), std::string()}) {
    EXPECT_TRUE(decodeImage(bytes, {480, 480}).isNull()) << bytes;
  }
}

class ImageLoaderTest : public SettledTest {
 protected:
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
  finishDecoding();
  EXPECT_EQ(calls, 2);
  loader->load("https://pictures.example/1", &context, count());
  EXPECT_EQ(calls, 2);
  finishDecoding();
  EXPECT_EQ(calls, 3);
  EXPECT_EQ(fake.http->count(), 1u);
  EXPECT_EQ(loader->kept("https://pictures.example/1").size(), QSize(10, 10));
}

TEST_F(ImageLoaderTest, AnAnswerWithoutAPictureIsAFailure) {
  const std::pair<int, std::string> answers[] = {
      {204, pictureBytes({9, 9}, Qt::red)}, {200, ""}, {200, "<html></html>"}};
  for (const auto& [status, body] : answers) {
    last = QImage(1, 1, QImage::Format_RGB32);
    loader->load("https://pictures.example/" + std::to_string(calls), &context, count());
    fake.http->answerNext(status, body);
    finishDecoding();
    EXPECT_TRUE(last.isNull()) << status << " " << body.size();
  }
  EXPECT_EQ(calls, 3);
}

TEST_F(ImageLoaderTest, FetchesNothingButTheWeb) {
  for (const char* url :
       {"file:///etc/passwd", "ftp://pictures.example/1", "data:image/png;base64,AAAA",
        "javascript:alert(1)", "pictures.example/1"}) {
    loader->load(url, &context, count());
  }
  finishDecoding();
  EXPECT_EQ(fake.http->count(), 0u);
  EXPECT_EQ(calls, 5);
  EXPECT_TRUE(last.isNull());
}

TEST_F(ImageLoaderTest, AFailureIsANullImageAndIsTriedAgainWhenAskedAgain) {
  loader->load("https://pictures.example/1", &context, count());
  fake.http->failNext();
  finishDecoding();
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
  finishDecoding();
  EXPECT_EQ(calls, 0);
  loader.reset();
  fake.http->answerNext(200, pictureBytes({10, 10}, Qt::blue));
  finishDecoding();
  EXPECT_EQ(calls, 0);
}

}  // namespace
}  // namespace kifo::testing
