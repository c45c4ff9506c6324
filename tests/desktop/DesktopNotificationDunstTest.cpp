// The notification centre against a real service, dunst, on a screen and a bus of the test's own.
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <cstdlib>

#include "tests/desktop/DesktopNotificationFixture.h"

namespace kifo {
namespace {

// dunst asks the menu program which action is meant; this one picks the button "Later".
constexpr auto CONFIGURATION = "[global]\n dmenu = %1\n[urgency_normal]\n timeout = 0\n";
constexpr auto MENU = "#!/bin/sh\ngrep Later\n";

/// A screen without a monitor, and a bus.
struct Desktop {
  Desktop() {
    for (const char* program : {"dunst", "dunstctl", "Xvfb"}) {
      if (QStandardPaths::findExecutable(QLatin1String(program)).isEmpty()) {
        problem = std::string("not installed here: ") + program;
        return;
      }
    }
    problem = bus.problem();
    if (!problem.empty()) return;
    screen.start({"Xvfb", "-displayfd", "1", "-nolisten", "tcp", "-screen", "0", "800x600x24"});
    const std::string number = screen.readLine();
    if (number.empty()) problem = "no screen can be had here";
    display = ":" + number;
    const QString menu = write("menu", MENU);
    configuration = write("dunstrc", QString::fromLatin1(CONFIGURATION).arg(menu));
  }

  QString write(const char* name, const QString& text) const {
    QFile file(directory.filePath(QLatin1String(name)));
    if (file.open(QIODevice::WriteOnly)) file.write(text.toUtf8());
    file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    return file.fileName();
  }
  testing::ChildProgram::Environment environment() const {
    return {
        {"DBUS_SESSION_BUS_ADDRESS", bus.address()}, {"DISPLAY", display}, {"WAYLAND_DISPLAY", ""}};
  }

  testing::PrivateBus bus;
  QTemporaryDir directory;
  testing::ChildProgram screen;
  std::string display;
  QString configuration;
  std::string problem;
};

class DunstTest : public NotificationCentreFixture {
 protected:
  static void SetUpTestSuite() { desktop_ = std::make_unique<Desktop>(); }
  static void TearDownTestSuite() { desktop_.reset(); }

  void SetUp() override {
    if (!desktop_->problem.empty()) GTEST_SKIP() << desktop_->problem;
    useBus(desktop_->bus.address());
    makeCentre();
    dunst_.start({"dunst", "-conf", desktop_->configuration.toStdString()},
                 desktop_->environment());
    ASSERT_TRUE(waitForStatus(2));
  }
  void TearDown() override { dunst_.end(); }

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
    centre_->deliver({{"data", kCampaign}, {"title", title}, {"body", "Half price"}}, identifier);
    ASSERT_TRUE(waitFor([&] { return displayed() == expected; }));
  }

  static inline std::unique_ptr<Desktop> desktop_;

  testing::ChildProgram dunst_;
};

TEST_F(DunstTest, ATapAButtonFromTheMenuAndACloseAreReportedOnceEach) {
  deliver("Sale", "offer", 1);
  dunstctl({"action"});
  ASSERT_TRUE(waitFor([&] { return !clicks_.empty() && displayed() == 0; }));
  deliver("Next", "next", 1);
  dunstctl({"context"});
  ASSERT_TRUE(waitFor([&] { return clicks_.size() > 1 && displayed() == 0; }));
  deliver("Last", "last", 1);
  EXPECT_THAT(events("push_notification_dismissed"), IsEmpty());
  dunstctl({"close"});
  ASSERT_TRUE(waitFor([&] { return !events("push_notification_dismissed").empty(); }));
  EXPECT_THAT(clicks_, ElementsAre(Pair("body", ::testing::_), Pair("later", ::testing::_)));
  EXPECT_THAT(events("push_notification_received"), SizeIs(3));
  ASSERT_THAT(events("push_notification_clicked"), SizeIs(2));
  EXPECT_EQ(events("push_notification_clicked")[1]["responseId"], "default");
  EXPECT_EQ(events("push_notification_dismissed")[0]["communication_name"], "U");
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
