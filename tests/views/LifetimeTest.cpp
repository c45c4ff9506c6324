// Popups that come and go at awkward moments.
#include <QFile>

#include "tests/views/Campaigns.h"
#include "tests/views/PopupFixture.h"

namespace kifo::testing {
namespace {

class LifetimeTest : public PopupTest {
 protected:
  bool waitUntilGone() {
    return QTest::qWaitFor(
        [this] {
          settle();
          return popup.isNull();
        },
        5000);
  }
};

TEST_F(LifetimeTest, FadesInAndOutAndIsGone) {
  options.reducedMotion = false;
  options.durations.fade = std::chrono::milliseconds(30);
  campaign("POPUP");
  present();
  EXPECT_TRUE(elements().popupView->graphicsEffect());
  EXPECT_TRUE(QTest::qWaitFor([this] { return !elements().popupView->graphicsEffect(); }, 5000));
  popup->dismissView();
  EXPECT_EQ(closings, 0) << "closed comes after the fade";
  EXPECT_TRUE(waitUntilGone());
  EXPECT_EQ(closings, 1);
}

TEST_F(LifetimeTest, CanBeDismissedWhileItStillFadesIn) {
  options.reducedMotion = false;
  campaign("POPUP");
  present();
  QTest::keyClick(popup.data(), Qt::Key_Escape);
  popup->dismissView();
  QTest::keyClick(popup.data(), Qt::Key_Escape);
  EXPECT_TRUE(waitUntilGone());
  EXPECT_EQ(closings, 1);
  EXPECT_EQ(reporter->reports.size(), 1u);
}

TEST_F(LifetimeTest, CanBeDismissedBeforeItIsPresented) {
  campaign("POPUP");
  popup = new PopUpWindow(request, options, host.get());
  QObject::connect(popup, &PopUpWindow::closed, host.get(), [this] { ++closings; });
  popup->dismissView();
  popup->present();
  EXPECT_TRUE(waitUntilGone());
  EXPECT_EQ(closings, 1);
}

TEST_F(LifetimeTest, GoesWithAHostThatIsDestroyedWhileItFades) {
  options.reducedMotion = false;
  campaign("EMOJI");
  choices(2);
  present();
  popup->dismissView();
  host.reset();
  settle();
  EXPECT_TRUE(popup.isNull());
  EXPECT_EQ(closings, 0);
}

TEST_F(LifetimeTest, AnAnswerIsSentEvenWhenTheSubmitCallbackDestroysTheHost) {
  campaign("OPEN_ENDED");
  submitButton();
  request->submitButtonItem = [this](auto) { host.reset(); };
  present();
  popup->submitButtonPressed();
  EXPECT_TRUE(popup.isNull());
  ASSERT_EQ(reporter->reports.size(), 1u);
  EXPECT_TRUE(reporter->reports[0].answer.openEndedField);
}

TEST_F(LifetimeTest, PicturesThatComeAfterTheEndFindNobody) {
  campaign("EMOJI");
  choices(2);
  request->preferences.image = "https://pictures.example/1.png";
  for (auto& choice : request->preferences.choices)
    choice->imageUrl = "https://pictures.example/face.png";
  present();
  ASSERT_EQ(fake.http->count(), 2u) << "one fetch for each URL";
  popup->dismissView();
  EXPECT_TRUE(waitUntilGone());
  while (fake.http->answerNext(200, pictureBytes({8, 8}, Qt::red))) {
  }
  finishDecoding();

  present();
  fake.http->answerNext(200, pictureBytes({2000, 2000}, Qt::red));
  host.reset();  // while the picture is being decoded
  finishDecoding();
}

TEST_F(LifetimeTest, AsAWindowOfItsOwnItClosesAsItsButtonDoes) {
  campaign("POPUP");
  popup = new PopUpWindow(request, options);
  popup->resize(800, 600);
  popup->present();
  EXPECT_TRUE(popup->isWindow());
  EXPECT_TRUE(popup->close()) << "a window that refuses would refuse the application's end";
  EXPECT_TRUE(waitUntilGone());
  EXPECT_EQ(reporter->reports.size(), 1u);
}

TEST_F(LifetimeTest, FollowsItsHostsSizeAndKeepsAnswerAndFocus) {
  campaign("SCORE");
  item->maxScore = 10;
  item->defaultFreeText = DefaultFreeText{};
  request->preferences.image = "https://pictures.example/1.png";
  present();
  QTest::keyClicks(elements().textField, "kept");
  elements().textField->setFocus();
  EXPECT_EQ(popup->state().imageViewHeight, 172);
  host->resize(1000, 600);
  settle();
  EXPECT_EQ(popup->geometry(), host->rect());
  EXPECT_EQ(elements().popupView->width(), 480);
  EXPECT_EQ(popup->state().imageViewHeight, 240);
  host->resize(320, 480);
  settle();
  EXPECT_EQ(elements().popupView->width(), 258);
  EXPECT_EQ(QApplication::focusWidget()->objectName(), "textField");
  EXPECT_FALSE(elements().textField->visibleRegion().isEmpty());
  EXPECT_EQ(popup->popUpWindowView()->freeText(), "kept");
}

long residentPages() {
  QFile file("/proc/self/statm");
  return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').at(1).toLong() : 0;
}

TEST_F(LifetimeTest, OpeningAndClosingOverAndOverDoesNotGrow) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "a sanitizer keeps freed memory for a while";
#endif
  const auto rounds = [this](int count) {
    for (int i = 0; i < count; ++i) {
      const auto all = campaigns();
      all[static_cast<std::size_t>(i) % all.size()].describe(*request);
      present();
      popup->grab();
      dismiss();
      ASSERT_TRUE(popup.isNull());
    }
  };
  rounds(100);
  const long before = residentPages();
  const auto children = host->children().size();
  rounds(120);
  EXPECT_EQ(host->children().size(), children);
  EXPECT_LT((residentPages() - before) * 4, 2048) << "kilobytes";
}

}  // namespace
}  // namespace kifo::testing
