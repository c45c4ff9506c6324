// Popups that come and go at awkward moments.
#include <QFile>

#include "tests/views/Campaigns.h"
#include "tests/views/Pixels.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

class LifetimeTest : public PopupTest {
 protected:
  bool waitUntilGone() {
    return QTest::qWaitFor([this] { return settle(), isGone(); }, 5000);
  }
};

TEST_P(LifetimeTest, FadesInAndOutAndIsGone) {
  options.reducedMotion = false;
  options.durations.fade = std::chrono::milliseconds(30);
  present("POPUP");
  EXPECT_TRUE(toolkit->isFading());
  EXPECT_TRUE(QTest::qWaitFor([this] { return !toolkit->isFading(); }, 5000));
  toolkit->dismiss();
  EXPECT_EQ(toolkit->closings, 0) << "closed comes after the fade";
  EXPECT_TRUE(waitUntilGone());
  EXPECT_EQ(toolkit->closings, 1);
}

TEST_P(LifetimeTest, HalfwayThroughAFadeNoShadowIsSeenInsideThePanel) {
  options.reducedMotion = false;
  options.durations.fade = std::chrono::hours(1);
  present("POPUP");
  advanceFade(*toolkit->popup());
  settle();
  expectNoShadowInside(toolkit->picture(), box("popupView"));
  delete toolkit->popup();
}

TEST_P(LifetimeTest, CanBeDismissedWhileItStillFadesIn) {
  options.reducedMotion = false;
  present("POPUP");
  advanceFade(*toolkit->popup());
  key(Qt::Key_Escape);
  toolkit->dismiss();
  EXPECT_TRUE(waitUntilGone());
  EXPECT_EQ(toolkit->closings, 1);
  EXPECT_EQ(reports().size(), 1u);
}

TEST_P(LifetimeTest, GoesWithAHostThatIsDestroyedWhileItFades) {
  options.reducedMotion = false;
  campaign("EMOJI");
  choices(2);
  present();
  toolkit->dismiss();
  toolkit->destroyHost();
  settle();
  EXPECT_TRUE(isGone());
  EXPECT_EQ(toolkit->closings, 0);
}

TEST_P(LifetimeTest, AnAnswerIsSentEvenWhenTheSubmitCallbackDestroysTheHost) {
  campaign("OPEN_ENDED");
  submitButton();
  request->submitButtonItem = [this](auto) { toolkit->destroyHost(); };
  present();
  toolkit->submit();
  EXPECT_TRUE(isGone());
  ASSERT_EQ(reports().size(), 1u);
  EXPECT_TRUE(reports()[0].answer.openEndedField);
}

TEST_P(LifetimeTest, PicturesThatComeAfterTheEndFindNobody) {
  campaign("EMOJI");
  choices(2);
  request->preferences.image = "https://pictures.example/1.png";
  for (auto& choice : request->preferences.choices) {
    choice->imageUrl = "https://pictures.example/face.png";
  }
  present();
  ASSERT_EQ(fake.http->count(), 2u) << "one fetch for each URL";
  toolkit->dismiss();
  EXPECT_TRUE(waitUntilGone());
  while (fake.http->answerNext(200, pictureBytes({8, 8}, Qt::red))) {
  }
  finishDecoding();

  present();
  fake.http->answerNext(200, pictureBytes({2000, 2000}, Qt::red));
  toolkit->destroyHost();  // while the picture is being decoded
  finishDecoding();
}

long residentPages() {
  QFile file("/proc/self/statm");
  return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').at(1).toLong() : 0;
}

TEST_P(LifetimeTest, OpeningAndClosingOverAndOverDoesNotGrow) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer keeps freed memory for a while";
#endif
  const auto rounds = [this, all = campaigns(fake)](std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      toolkit->present(all[i % all.size()].request, options);
      toolkit->picture();
      dismiss();
      ASSERT_TRUE(isGone());
    }
  };
  rounds(100);
  const long before = residentPages();
  rounds(120);
  EXPECT_LT((residentPages() - before) * 4, 2048) << "kilobytes";
}

KIFO_ON_EACH_TOOLKIT(LifetimeTest);

}  // namespace
}  // namespace kifo::testing
