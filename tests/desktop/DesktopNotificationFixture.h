#pragma once

#include <gmock/gmock.h>

#include <QtTest>
#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"
#include "platform/qt/DesktopNotificationCentre.h"
#include "testing/FakePlatform.h"
#include "testing/PrivateBus.h"
#include "tests/desktop/ScriptedNotificationService.h"
#include "tests/support/Common.h"

namespace kifo {

enum Reason : uint { expired = 1, dismissed = 2, closedByCall = 3, undefined = 4 };

/// A centre on a bus, and what the host and the server hear of it.
class NotificationCentreFixture : public ::testing::Test {
 protected:
  static constexpr auto kCampaign = R"({"uuid": "U", "code": "C", "action": {"link": "body"},
    "buttons": [{"id": "buy", "text": "Buy <now>", "action": {"link": "shop"}},
                {"id": "default", "text": "Later", "action": {"link": "later"}}]})";

  void useBus(const std::string& address) {
    Runtime::current()->session.updateIdentity(
        [](auto& identity) { identity.listenerUri = "http://listener"; });
    options_.applicationName = "Shop";
    options_.busAddress = address;
    options_.pictureGrace = 3600.0;
    options_.dismissalGrace = 0.0;
    options_.retryInterval = 0.0;
  }

  void makeCentre() {
    centre_ = std::make_shared<DesktopNotificationCentre>(
        options_, [this](auto action, const std::string& token) {
          clicks_.emplace_back(action ? action->link.value_or("") : "none", token);
        });
    Platform platform = fake_.platform();
    platform.notifications = centre_;
    Platform::install(std::move(platform));
  }

  int status() {
    int known = -1;
    centre_->getNotificationSettings([&](int status) { known = status; });
    return known;
  }
  bool waitForStatus(int expected) {
    return waitFor([&] { return status() == expected; });
  }
  static bool waitFor(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, 20000);
  }

  std::vector<Value> events(const std::string& name) {
    fake_.runUntilIdle();
    return fake_.http->events(name);
  }

  testing::InstalledFakePlatform fake_;
  DesktopNotificationCentre::Options options_;
  std::vector<std::pair<std::string, std::string>> clicks_;
  std::shared_ptr<DesktopNotificationCentre> centre_;
};

/// A centre on a bus of its own, with a scripted service.
class DesktopNotificationCentreTest : public NotificationCentreFixture {
 protected:
  static void SetUpTestSuite() { bus_ = std::make_unique<testing::PrivateBus>(); }
  static void TearDownTestSuite() { bus_.reset(); }

  void SetUp() override {
    if (!bus_->problem().empty()) GTEST_SKIP() << bus_->problem();
    useBus(bus_->address());
    service_ = makeService();
  }

  std::unique_ptr<ScriptedNotificationService> makeService() {
    return std::make_unique<ScriptedNotificationService>(QString::fromStdString(bus_->address()));
  }

  /// A centre whose service is there and has told what it can do.
  void start() {
    makeCentre();
    service_->appear();
    ASSERT_TRUE(waitForStatus(2));
  }
  /// Waits until everything that the service has sent so far has been received: the answer to a
  /// later call comes after it.
  void settle() {
    const std::string identifier = "settle" + std::to_string(++settled_);
    const std::size_t before = service_->shown().size();
    show(identifier);
    ASSERT_TRUE(waitFor([&] { return service_->shown().size() > before; }));
    centre_->close(identifier);
    const uint id = service_->shown().back().id;
    ASSERT_TRUE(waitFor([&] { return std::ranges::count(service_->closeCalls(), id) == 1; }));
  }

  void show(const std::string& identifier, NotificationContent content = {}) {
    if (content.title.empty()) content.title = identifier;
    centre_->show({identifier, std::make_shared<NotificationContent>(std::move(content))});
  }
  /// Leaves a push unanswered by the service, and another one behind it.
  void showUnderWayAndWaiting() {
    service_->silent = true;
    show("under way");
    ASSERT_TRUE(waitFor([&] { return service_->unanswered() == 1; }));
    show("waiting");
  }
  /// Shows the campaign's push and hands back the service's number.
  uint showCampaign(const std::string& identifier = "push") {
    const std::size_t before = service_->shown().size();
    centre_->deliver(
        {{"data", kCampaign}, {"title", "Sa\x01le"}, {"body", "All <b>half</b> & less"}},
        identifier);
    EXPECT_TRUE(waitFor([&] { return service_->shown().size() > before; }));
    return service_->shown().empty() ? 0 : service_->shown().back().id;
  }
  std::vector<std::string> titles() const {
    std::vector<std::string> all;
    for (const auto& shown : service_->shown()) all.push_back(shown.summary.toStdString());
    return all;
  }

  void deliverWithPicture(const std::string& title, const std::string& identifier) {
    centre_->deliver(
        {{"data", kCampaign}, {"title", title}, {"image", "http://pictures/" + title + ".png"}},
        identifier);
  }
  /// The places, in the transport's requests, of the pictures that are being loaded.
  std::vector<std::size_t> picturesUnderWay() const {
    // In this order: the worker's thread may send one more in between.
    auto open = fake_.http->open();
    const auto requests = fake_.http->requests();
    std::erase_if(
        open, [&](std::size_t at) { return !requests[at].url.starts_with("http://pictures/"); });
    return open;
  }
  void waitForPicturesUnderWay(std::size_t count) {
    ASSERT_TRUE(waitFor([&] { return picturesUnderWay().size() == count; }));
  }
  void answerPictures() {
    for (const std::size_t at : picturesUnderWay()) fake_.http->answer(at, 200, "GIF89a");
  }

  static inline std::unique_ptr<testing::PrivateBus> bus_;

  std::unique_ptr<ScriptedNotificationService> service_;
  int settled_ = 0;
};

}  // namespace kifo
