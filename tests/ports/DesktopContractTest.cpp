// What the ports of a desktop promise, asked of Qt's versions, the fakes and the null ones.
#include <QClipboard>
#include <QGuiApplication>
#include <QtTest>
#include <atomic>

#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "platform/qt/DesktopNotificationCentre.h"
#include "platform/qt/QtPlatform.h"
#include "tests/support/Common.h"

namespace kifo::testing {
namespace {

TEST(PasteboardContract, TheLastTextIsTheOneThatIsThere) {
  const InstalledFakePlatform fake;
  const auto real = withQt(nullPlatform()).pasteboard;
  for (const std::string text : {"first", "", "Çay ☕\nline", "last"}) {
    real->setString(text);
    fake.pasteboard->setString(text);
    nullPlatform().pasteboard->setString(text);
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), text);
    EXPECT_EQ(fake.pasteboard->string.get(), text);
  }
}

TEST(NotificationCentreContract, EachQuestionIsAnsweredOnceOrNeverOnAnyThread) {
  const InstalledFakePlatform fake;
  const auto real = std::make_shared<DesktopNotificationCentre>(
      DesktopNotificationCentre::Options{.busAddress = "unix:path=/nowhere"}, nullptr);
  const std::vector<std::pair<std::shared_ptr<NotificationCentre>, int>> centres = {
      {real, 16}, {fake.notifications, 16}, {nullPlatform().notifications, 0}};
  for (const auto& [centre, expected] : centres) {
    const auto answers = std::make_shared<std::atomic<int>>(0);
    onThreads(4, [&](int) {
      for (int index = 0; index < 4; ++index) {
        centre->setNotificationCategories({{"category", {{"action", "Title", 4}}}});
        centre->getNotificationSettings([answers](int status) {
          if (status >= 0 && status <= 4) ++*answers;
        });
      }
    });
    QTest::qWait(0);
    EXPECT_EQ(*answers, expected);
  }
  EXPECT_EQ(fake.notifications->categories.get().size(), 1U) << "they replace, not add";
}

TEST(PopupPresenterContract, APopupWithoutItsScreenIsTakenFromAnyThreadAndDropped) {
  const InstalledFakePlatform fake;
  const std::vector<std::shared_ptr<PopupPresenter>> presenters = {
      withQt(nullPlatform()).popups, nullPlatform().popups, fake.popups};
  for (const auto& presenter : presenters) {
    const auto request = std::make_shared<PopupRequest>();
    request->preferences.appCommunicationItem = std::make_shared<AppCommunicationItem>();
    request->open = [] {
      ADD_FAILURE() << "a popup that cannot be shown is not opened";
      return false;
    };
    onThreads(4, [&](int) { presenter->present(request); });
    EXPECT_TRUE(QTest::qWaitFor([&] { return request.use_count() == 1; }));
  }
  EXPECT_TRUE(fake.popups->requests().empty());
}

TEST(PositionContract, APositionIsKnownInDegreesOrNotAtAllOnAnyThread) {
  const InstalledFakePlatform fake;
  const auto position = withQt(nullPlatform()).position;
  EXPECT_EQ(position->authorizationStatus(), 0) << "the first question is answered at once";
  QCoreApplication::processEvents();  // makes the default source, whatever the system has of it
  onThreads(4, [&](int) {
    EXPECT_THAT(position->authorizationStatus(), AllOf(Ge(0), Le(4)));
    EXPECT_THAT(position->applicationState(), AllOf(Ge(0), Le(2)));
    const auto known = position->location().value_or(Coordinate{});
    EXPECT_THAT(known.latitude, AllOf(Ge(-90.0), Le(90.0)));
    EXPECT_THAT(known.longitude, AllOf(Ge(-180.0), Le(180.0)));
  });
}

}  // namespace
}  // namespace kifo::testing
