// The notification centre against a real service, dunst, on a screen and a bus of the test's own.
#include <QFile>
#include <QImage>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include <gmock/gmock.h>

#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "platform/qt/DesktopNotificationCentre.h"
#include "testing/FakePlatform.h"
#include "testing/PrivateBus.h"

namespace kifo {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::Pair;
using ::testing::SizeIs;

constexpr auto CAMPAIGN = R"({"uuid": "U", "action": {"link": "body"},
    "buttons": [{"id": "buy", "text": "Buy", "action": {"link": "shop"}},
                {"id": "later", "text": "Later", "action": {"link": "later"}}]})";

// dunst asks this program which action is meant; it picks the button "Later".
constexpr auto CONFIGURATION = "[global]\n dmenu = %1\n[urgency_normal]\n timeout = 0\n";
constexpr auto MENU = "#!/bin/sh\ngrep Later\n";

class DunstTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    desktop_ = std::make_unique<Desktop>();
    desktop_->start();
  }
  static void TearDownTestSuite() { desktop_.reset(); }

  void SetUp() override {
    if (!desktop_->problem.isEmpty()) GTEST_SKIP() << desktop_->problem.toStdString();
    Runtime::current()->session.updateIdentity(
        [](auto& identity) { identity.listenerUri = "http://listener"; });
    DesktopNotificationCentre::Options options;
    options.applicationName = "Shop";
    options.busAddress = desktop_->bus.address();
    options.dismissalGrace = 0.0;
    options.retryInterval = 0.0;
    centre_ = std::make_shared<DesktopNotificationCentre>(
        options, [this](auto action, const std::string& token) {
          clicks_.emplace_back(action ? action->link.value_or("") : "none", token);
        });
    Platform platform = fake_.platform();
    platform.notifications = centre_;
    Platform::install(std::move(platform));
    startDunst();
  }

  void TearDown() override { dunst_.end(); }

  void startDunst() {
    QFile configuration(desktop_->file(QStringLiteral("dunstrc")));
    ASSERT_TRUE(configuration.open(QIODevice::WriteOnly));
    configuration.write(
        QString::fromLatin1(CONFIGURATION).arg(desktop_->file(QStringLiteral("menu"))).toUtf8());
    configuration.close();
    dunst_.start({"dunst", "-conf", configuration.fileName().toStdString()},
                 desktop_->environment());
    ASSERT_TRUE(waitFor([&] {
      int status = 0;
      centre_->getNotificationSettings([&](int known) { status = known; });
      return status == 2;
    }));
  }

  static bool waitFor(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, 20000);
  }
  /// What `dunstctl` prints for the given words.
  std::string dunstctl(std::vector<std::string> words) {
    words.insert(words.begin(), "dunstctl");
    testing::ChildProgram control;
    control.start(words, desktop_->environment());
    return control.readAll();
  }
  int displayed() { return std::atoi(dunstctl({"count", "displayed"}).c_str()); }
  /// Shows a push and waits until dunst displays as many as `expected`.
  void deliver(const std::string& title, const std::string& identifier, int expected) {
    centre_->deliver({{"data", CAMPAIGN}, {"title", title}, {"body", "Half price"}}, identifier);
    ASSERT_TRUE(waitFor([&] { return displayed() == expected; }));
  }

  std::vector<Value> events(const std::string& name) {
    fake_.runUntilIdle();
    return fake_.http->events(name);
  }

  /// A screen without a monitor, and a bus.
  struct Desktop {
    void start() {
      for (const char* program : {"dunst", "dunstctl", "Xvfb"}) {
        if (QStandardPaths::findExecutable(QLatin1String(program)).isEmpty()) {
          problem = QStringLiteral("not installed here: ") + QLatin1String(program);
          return;
        }
      }
      problem = QString::fromStdString(bus.problem());
      if (!problem.isEmpty()) return;
      screen.start({"Xvfb", "-displayfd", "1", "-nolisten", "tcp", "-screen", "0", "800x600x24"});
      const std::string number = screen.readLine();
      if (number.empty()) problem = QStringLiteral("no screen can be had here");
      display = ":" + number;
      QFile menu(file(QStringLiteral("menu")));
      if (menu.open(QIODevice::WriteOnly)) menu.write(MENU);
      menu.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QString file(const QString& name) const { return directory.filePath(name); }
    testing::ChildProgram::Environment environment() const {
      return {{"DBUS_SESSION_BUS_ADDRESS", bus.address()},
              {"DISPLAY", display},
              {"WAYLAND_DISPLAY", ""}};
    }

    testing::PrivateBus bus;
    QTemporaryDir directory;
    testing::ChildProgram screen;
    std::string display;
    QString problem;
  };
  static std::unique_ptr<Desktop> desktop_;

  testing::InstalledFakePlatform fake_;
  testing::ChildProgram dunst_;
  std::vector<std::pair<std::string, std::string>> clicks_;
  std::shared_ptr<DesktopNotificationCentre> centre_;
};

std::unique_ptr<DunstTest::Desktop> DunstTest::desktop_;

TEST_F(DunstTest, ATapOnThePushIsAClickAndNoDismissal) {
  deliver("Sale", "offer", 1);
  dunstctl({"action"});
  ASSERT_TRUE(waitFor([&] { return !clicks_.empty() && displayed() == 0; }));
  EXPECT_THAT(clicks_, ElementsAre(Pair("body", ::testing::_)));
  EXPECT_THAT(events("push_notification_received"), SizeIs(1));
  EXPECT_THAT(events("push_notification_clicked"), SizeIs(1));
  EXPECT_THAT(events("push_notification_dismissed"), SizeIs(0));
}

TEST_F(DunstTest, AButtonFromTheMenuIsAClickOnThatButton) {
  deliver("Sale", "offer", 1);
  dunstctl({"context"});
  ASSERT_TRUE(waitFor([&] { return !clicks_.empty(); }));
  EXPECT_THAT(clicks_, ElementsAre(Pair("later", ::testing::_)));
  EXPECT_EQ(events("push_notification_clicked").at(0)["responseId"], "later");
}

TEST_F(DunstTest, AClosedPushIsDismissedOnce) {
  deliver("Sale", "offer", 1);
  dunstctl({"close"});
  ASSERT_TRUE(waitFor([&] { return !events("push_notification_dismissed").empty(); }));
  EXPECT_EQ(events("push_notification_dismissed").at(0)["communication_name"], "U");
  EXPECT_THAT(clicks_, SizeIs(0));
}

TEST_F(DunstTest, APushOfTheSameIdentifierReplacesAndOneTakenBackGoes) {
  deliver("First", "offer", 1);
  deliver("Second", "other", 2);
  deliver("Third", "offer", 2);
  deliver("Fourth", "last", 3);  // pushes are shown in order: with this one there, the third is too
  centre_->close("offer");
  ASSERT_TRUE(waitFor([&] { return displayed() == 2; }));
  EXPECT_THAT(dunstctl({"history"}), HasSubstr("Third"));
  EXPECT_THAT(dunstctl({"history"}), Not(HasSubstr("First")));
  QCoreApplication::processEvents();
  EXPECT_THAT(events("push_notification_dismissed"), SizeIs(0));
}

}  // namespace
}  // namespace kifo
