#include <sys/wait.h>
#include <unistd.h>

#include <QSemaphore>
#include <cstdlib>

#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoder.h"
#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageLoader.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

/// A picture that is stored lying on its side, as cameras do: with "turned to the right" in its
/// Exif data.
std::string turnedPicture(QSize size) {
  static const std::string exif(
      "\xFF\xE1\0\x22"
      "Exif\0\0II*\0\x08\0\0\0\x01\0\x12\x01\x03\0\x01\0\0\0\x06\0\0\0\0\0\0\0",
      36);
  return pictureBytes(size, Qt::red, "JPG").insert(2, exif);
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
  EXPECT_EQ(decodeImage(turnedPicture({40, 30}), {480, 480}).size(), QSize(30, 40));
}

TEST(ImageDecoderTest, RefusesWhatIsTooLargeOfAnotherFormatOrBroken) {
  for (const std::string& bytes :
       {pictureBytes({4097, 4096}, Qt::red, "JPG"), pictureBytes({8, 8}, Qt::red, "BMP"),
        std::string("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"),
        pictureBytes({64, 64}, Qt::red, "JPG").substr(0, 40), std::string()}) {
    EXPECT_TRUE(decodeImage(bytes, {480, 480}).isNull()) << bytes.substr(0, 40);
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

TEST_F(ImageLoaderTest, AFailureOrAnAnswerWithoutAPictureIsANullImageAndIsTriedAgain) {
  const std::optional<std::pair<int, std::string>> answers[] = {
      {{204, pictureBytes({9, 9}, Qt::red)}}, {{200, ""}}, {{200, "<html></html>"}}, {}};
  for (const auto& answer : answers) {
    last = QImage(1, 1, QImage::Format_RGB32);
    loader->load("https://pictures.example/1", &context, count());
    answer ? fake.http->answerNext(answer->first, answer->second) : fake.http->failNext();
    finishDecoding();
    EXPECT_TRUE(last.isNull()) << calls;
  }
  EXPECT_EQ(calls, 4);
  EXPECT_EQ(fake.http->count(), 4u);
}

TEST_F(ImageLoaderTest, KeepsSoManyBytesAndDropsThePictureThatWasNotUsedForLongest) {
  loader = std::make_unique<ImageLoader>(QSize(2000, 2000));
  fake.http->setHandler([large = pictureBytes({2000, 2000}, Qt::red)](const HttpRequest&) {
    return HttpAnswer{{}, 200, large};
  });
  for (const char* url : {"https://p.example/1", "https://p.example/2", "https://p.example/3",
                          "https://p.example/1", "https://p.example/4"}) {
    loader->load(url, &context, count());
    finishDecoding();
  }
  EXPECT_EQ(fake.http->count(), 4u);
  EXPECT_FALSE(loader->kept("https://p.example/1").isNull());
  EXPECT_TRUE(loader->kept("https://p.example/2").isNull());
}

TEST_F(ImageLoaderTest, FetchesNothingButTheWebAndNothingWithoutConsent) {
  Runtime::current()->consent.setWithheld(true);
  loader->load("https://pictures.example/1", &context, count());
  settle();
  EXPECT_EQ(fake.http->requests()[0].url, "");
  Runtime::current()->consent.setWithheld(false);

  for (const char* url :
       {"file:///etc/passwd", "ftp://pictures.example/1", "data:image/png;base64,AAAA",
        "javascript:alert(1)", "pictures.example/1"}) {
    loader->load(url, &context, count());
  }
  finishDecoding();
  EXPECT_EQ(fake.http->count(), 1u);
  EXPECT_EQ(calls, 5);
  EXPECT_TRUE(last.isNull());
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

// The threads that decode, at the end of a process

constexpr unsigned kLongEnough = 60;  // seconds, for a process to end

/// Brings a picture when the program has ended but for it, as the transport may.
struct LatePicture {
  ~LatePicture() {
    ImageDecoders::start([] { std::_Exit(EXIT_FAILURE); });
    ImageDecoders::waitForDone();
  }
};

/// Ends the process after the decoders' end, but before a leak checker's turn: that one would miss
/// what only the threads of a forked child's parent refer to.
struct LeaveSuccessfully {
  ~LeaveSuccessfully() { std::_Exit(EXIT_SUCCESS); }
};

/// These run in a process of their own.
class ImageDecodersDeathTest : public ::testing::Test {
 protected:
  ImageDecodersDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
  ~ImageDecodersDeathTest() override { GTEST_FLAG_SET(death_test_style, "fast"); }

  [[noreturn]] static void endBeforeAPictureComes() {
    static const LatePicture late;
    ImageDecoders::start([] {});
    std::exit(EXIT_SUCCESS);
  }

  [[noreturn]] static void endAForkedChildWhileAPictureIsDecoded() {
    static const LeaveSuccessfully last;
    QSemaphore begun;
    QSemaphore decoded;
    ImageDecoders::start([&] { begun.release(), decoded.acquire(); });
    begun.acquire();
    const pid_t child = fork();
    if (child == 0) {
      alarm(kLongEnough);
      std::exit(EXIT_SUCCESS);
    }
    int status = 0;
    waitpid(child, &status, 0);
    std::_Exit(status == 0 ? EXIT_SUCCESS : EXIT_FAILURE);
  }
};

TEST_F(ImageDecodersDeathTest, APictureThatComesAsTheProgramEndsIsNotDecoded) {
  EXPECT_EXIT(endBeforeAPictureComes(), ::testing::ExitedWithCode(EXIT_SUCCESS), "");
}

TEST_F(ImageDecodersDeathTest, AForkedChildThatExitsDoesNotWaitForItsParentsThreads) {
  EXPECT_EXIT(endAForkedChildWhileAPictureIsDecoded(), ::testing::ExitedWithCode(EXIT_SUCCESS), "");
}

}  // namespace
}  // namespace kifo::testing
