// The notification centre against a real service, dunst, on a screen and a bus of the test's own.
#include <signal.h>

#include <QFile>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>
#include <filesystem>
#include <memory>

#include <gmock/gmock.h>

#include "Kifo_iOS_Common_Kit/core/Session.h"
#include "platform/qt/DesktopNotificationCentre.h"
#include "tests/desktop/PrivateBus.h"
#include "testing/FakePlatform.h"

namespace kifo {
namespace {

using ::testing::ElementsAre;
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
    Session::shared().updateIdentity([](auto& identity) { identity.listenerUri = "http://listener"; });
    DesktopNotificationCentre::Options options;
    options.applicationName = "Shop";
    options.busAddress = desktop_->bus.address().toStdString();
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

  void TearDown() override { end(dunst_); }

  void startDunst() {
    QFile configuration(desktop_->file(QStringLiteral("dunstrc")));
    ASSERT_TRUE(configuration.open(QIODevice::WriteOnly));
    configuration.write(QString::fromLatin1(CONFIGURATION)
                            .arg(desktop_->file(QStringLiteral("menu")))
                            .toUtf8());
    configuration.close();
    bindToTest(dunst_);
    dunst_.setProcessEnvironment(desktop_->environment());
    dunst_.start(QStringLiteral("dunst"), {QStringLiteral("-conf"), configuration.fileName()});
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
  QString dunstctl(const QStringList& words) {
    QProcess control;
    control.setProcessEnvironment(desktop_->environment());
    control.start(QStringLiteral("dunstctl"), words);
    EXPECT_TRUE(waitFor([&] { return control.state() == QProcess::NotRunning; }));
    return QString::fromUtf8(control.readAllStandardOutput()).trimmed();
  }
  int displayed() { return dunstctl({QStringLiteral("count"), QStringLiteral("displayed")}).toInt(); }
  /// Shows a push and waits until dunst displays as many as `expected`.
  void deliver(const std::string& title, const std::string& identifier, int expected) {
    centre_->deliver({{"data", CAMPAIGN}, {"title", title}, {"body", "Half price"}}, identifier);
    ASSERT_TRUE(waitFor([&] { return displayed() == expected; }));
  }

  std::vector<nlohmann::json> events(const std::string& name) {
    fake_.runUntilIdle();
    std::vector<nlohmann::json> found;
    for (const auto& request : fake_.http->requests()) {
      auto body = nlohmann::json::parse(request.body.value_or("{}"));
      if (body.value("name", "") == name) found.push_back(std::move(body));
    }
    return found;
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
      problem = bus.problem();
      if (!problem.isEmpty()) return;
      const QString number =
          startAndReadLine(screen, QStringLiteral("Xvfb"),
                           {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-nolisten"),
                            QStringLiteral("tcp"), QStringLiteral("-screen"), QStringLiteral("0"),
                            QStringLiteral("800x600x24")});
      if (number.isEmpty()) problem = QStringLiteral("no screen can be had here");
      display = QLatin1Char(':') + number;
      QFile menu(file(QStringLiteral("menu")));
      if (menu.open(QIODevice::WriteOnly)) menu.write(MENU);
      menu.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    ~Desktop() { end(screen); }

    QString file(const QString& name) const { return directory.filePath(name); }
    QProcessEnvironment environment() const {
      auto environment = bus.environment();
      environment.insert(QStringLiteral("DISPLAY"), display);
      environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
      return environment;
    }

    PrivateBus bus;
    QTemporaryDir directory;
    QProcess screen;
    QString display;
    QString problem;
  };
  static std::unique_ptr<Desktop> desktop_;

  testing::InstalledFakePlatform fake_;
  QProcess dunst_;
  std::vector<std::pair<std::string, std::string>> clicks_;
  std::shared_ptr<DesktopNotificationCentre> centre_;
};

std::unique_ptr<DunstTest::Desktop> DunstTest::desktop_;

TEST_F(DunstTest, ATapOnThePushIsAClickAndNoDismissal) {
  deliver("Sale", "offer", 1);
  dunstctl({QStringLiteral("action")});
  ASSERT_TRUE(waitFor([&] { return !clicks_.empty() && displayed() == 0; }));
  EXPECT_THAT(clicks_, ElementsAre(Pair("body", ::testing::_)));
  EXPECT_THAT(events("push_notification_received"), SizeIs(1));
  EXPECT_THAT(events("push_notification_clicked"), SizeIs(1));
  EXPECT_THAT(events("push_notification_dismissed"), SizeIs(0));
}

TEST_F(DunstTest, AButtonFromTheMenuIsAClickOnThatButton) {
  deliver("Sale", "offer", 1);
  dunstctl({QStringLiteral("context")});
  ASSERT_TRUE(waitFor([&] { return !clicks_.empty(); }));
  EXPECT_THAT(clicks_, ElementsAre(Pair("later", ::testing::_)));
  EXPECT_EQ(events("push_notification_clicked").at(0)["responseId"], "later");
}

TEST_F(DunstTest, AClosedPushIsDismissedOnce) {
  deliver("Sale", "offer", 1);
  dunstctl({QStringLiteral("close")});
  ASSERT_TRUE(waitFor([&] { return !events("push_notification_dismissed").empty(); }));
  EXPECT_EQ(events("push_notification_dismissed").at(0)["communication_name"], "U");
  EXPECT_THAT(clicks_, SizeIs(0));
}

TEST_F(DunstTest, APushOfTheSameIdentifierReplacesAndOneTakenBackGoes) {
  deliver("First", "offer", 1);
  deliver("Second", "other", 2);
  deliver("Third", "offer", 2);
  centre_->close("offer");
  ASSERT_TRUE(waitFor([&] { return displayed() == 1; }));
  EXPECT_TRUE(dunstctl({QStringLiteral("history")}).contains(QLatin1String("Third")));
  EXPECT_FALSE(dunstctl({QStringLiteral("history")}).contains(QLatin1String("First")));
  QCoreApplication::processEvents();
  EXPECT_THAT(events("push_notification_dismissed"), SizeIs(0));
}

TEST_F(DunstTest, AnotherDunstShowsWhatTheLastOneShowed) {
  deliver("Sale", "offer", 1);
  end(dunst_);
  startDunst();
  ASSERT_TRUE(waitFor([&] { return displayed() == 1; }));
  dunstctl({QStringLiteral("action")});
  EXPECT_TRUE(waitFor([&] { return clicks_.size() == 1; }));
}

TEST_F(DunstTest, ADunstThatStandsStillHoldsNothingUpAndLosesNothing) {
  const auto process = static_cast<pid_t>(dunst_.processId());
  ASSERT_EQ(kill(process, SIGSTOP), 0);
  for (const char* identifier : {"one", "two", "three"}) {
    centre_->deliver({{"data", CAMPAIGN}, {"title", identifier}}, identifier);
  }
  ASSERT_TRUE(waitFor([&] { return events("push_notification_received").size() == 3; }));
  ASSERT_EQ(kill(process, SIGCONT), 0);
  EXPECT_TRUE(waitFor([&] { return displayed() == 3; }));
}

}  // namespace
}  // namespace kifo
