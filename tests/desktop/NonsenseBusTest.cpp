// A notification service that answers nonsense: the SDK asks no more often than it would a good
// one, reports every push as received, and shows what comes once a good service takes over.
#include <QDBusVariant>

#include "tests/desktop/DesktopNotificationFixture.h"

namespace kifo {
namespace {

constexpr int kPushes = 3;

struct Nonsense {
  const char* name;
  std::function<std::optional<QDBusMessage>(const QDBusMessage&)> reply;  ///< None: no answer.
  int notifies;  ///< Calls of Notify until the service is given up or all pushes are out.
  bool onlyNotify = false;  ///< The other calls get a good answer.
};

std::ostream& operator<<(std::ostream& stream, const Nonsense& nonsense) {
  return stream << nonsense.name;
}

Nonsense value(const char* name, const QVariantList& arguments) {
  return {name, [=](const auto& call) { return call.createReply(arguments); }, kPushes};
}

Nonsense error(const char* name, const char* error, int notifies, bool onlyNotify = false,
               const QString& text = {}) {
  return {name, [=](const auto& call) { return call.createErrorReply(QLatin1String(error), text); },
          notifies, onlyNotify};
}

class NonsenseBusTest : public DesktopNotificationCentreTest,
                        public ::testing::WithParamInterface<Nonsense> {
 protected:
  void deliver(const std::string& title) {
    centre_->deliver({{"data", kCampaign}, {"title", title}}, title);
  }
  /// Signals of every type, from the service itself.
  static void sendSignals(ScriptedNotificationService& service) {
    const QVariantList oddities{QVariant(QStringLiteral("text")),
                                QVariant(-1),
                                QVariant(QStringList{QStringLiteral("a")}),
                                QVariant::fromValue(QDBusVariant(QVariantMap())),
                                QVariant(QString(1 << 20, QChar('x'))),
                                QVariant(0U),
                                QVariant(1U)};
    for (const char* signal : {"ActionInvoked", "NotificationClosed", "ActivationToken", "Other"}) {
      const QString name = QLatin1String(signal);
      service.emitSignal(name, {});
      for (const QVariant& first : oddities) {
        for (const QVariant& second : oddities) service.emitSignal(name, {first, second});
      }
    }
  }
};

TEST_P(NonsenseBusTest, IsAskedNoMoreThanAGoodOneAndTheNextServiceShowsWhatComes) {
  const Nonsense& nonsense = GetParam();
  int calls = 0;
  int notifies = 0;
  service_->reply = [&](const QDBusMessage& call) -> std::optional<QDBusMessage> {
    ++calls;
    const bool isNotify = call.member() == QLatin1String("Notify");
    notifies += isNotify ? 1 : 0;
    if (isNotify || !nonsense.onlyNotify) return nonsense.reply(call);
    return call.createReply(QVariant(QStringList{QStringLiteral("body")}));
  };
  service_->appear();
  options_.retryInterval = 3600.0;
  makeCentre();
  ASSERT_TRUE(waitFor([&] { return calls > 0; }));
  for (int push = 0; push < kPushes; ++push) deliver("push " + std::to_string(push));
  ASSERT_TRUE(waitFor([&] { return notifies == nonsense.notifies; }));
  sendSignals(*service_);

  auto next = makeService();
  const int before = calls;
  service_.reset();
  next->appear();
  deliver("last");
  const auto isLast = [](const auto& shown) { return shown.summary == QLatin1String("last"); };
  ASSERT_TRUE(waitFor([&] { return std::ranges::any_of(next->shown(), isLast); }));
  EXPECT_EQ(std::ranges::count_if(next->shown(), isLast), 1);
  EXPECT_LE(before, 3 * kPushes + 3) << "questions, notifications and their closing";
  EXPECT_EQ(events("push_notification_received").size(), kPushes + 1U);
  centre_.reset();
}

INSTANTIATE_TEST_SUITE_P(
    Desktop, NonsenseBusTest,
    ::testing::Values(
        value("AText", {QStringLiteral("no number")}), value("ANegativeNumber", {-1}),
        value("AHugeNumber", {QVariant::fromValue(std::numeric_limits<qulonglong>::max())}),
        value("AListOfTexts", {QStringList{QStringLiteral("a"), QStringLiteral("b")}}),
        value("AMap", {QVariantMap{{QStringLiteral("a"), QVariantMap()}}}),
        value("AVariant", {QVariant::fromValue(QDBusVariant(QStringLiteral("a")))}),
        value("Nothing", {}), value("TooMuch", {1U, 2.5, QStringLiteral("a"), QVariantMap()}),
        value("TheSameNumberAlways", {7U}), value("AHugeText", {QString(1 << 22, QChar('x'))}),
        error("AnErrorOfItsOwn", "org.example.Error", kPushes, false, QString(1 << 20, QChar('x'))),
        error("ThatItDidNotAnswer", "org.freedesktop.DBus.Error.NoReply", 0),
        error("ThatItDoesNotExist", "org.freedesktop.DBus.Error.ServiceUnknown", 0),
        error("ThatItWentOverANotify", "org.freedesktop.DBus.Error.NoReply", 1, true),
        Nonsense{"NoAnswer", [](const auto&) { return std::nullopt; }, 0},
        Nonsense{"NoAnswerToANotify", [](const auto&) { return std::nullopt; }, 1, true}),
    [](const auto& each) { return each.param.name; });

}  // namespace
}  // namespace kifo
