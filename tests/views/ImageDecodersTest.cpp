#include "Kifo_iOS_Common_Kit/inapp/views/images/ImageDecoders.h"
#include "tests/support/Common.h"

#include <sys/wait.h>
#include <unistd.h>

#include <QSemaphore>
#include <cstdlib>

namespace kifo {
namespace {

constexpr unsigned kLongEnough = 60;  // seconds, for a process to end

/// Brings a picture when the program has ended but for it, as the transport may.
struct LateTransport {
  ~LateTransport() {
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
    static const LateTransport late;
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
}  // namespace kifo
