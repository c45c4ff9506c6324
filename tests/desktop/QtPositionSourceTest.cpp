#include "platform/qt/QtPositionSource.h"

#include <QGeoPositionInfoSource>
#include <QGuiApplication>
#include <QtTest>
#include <thread>

#include "Kifo_iOS_Common_Kit/device/LocationManager.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

/// A source that says what the test has it say, and counts what it is asked to start.
class ScriptedPositions final : public QGeoPositionInfoSource {
 public:
  ScriptedPositions() : QGeoPositionInfoSource(nullptr) {}

  void say(double latitude, double longitude) {
    last = QGeoPositionInfo(QGeoCoordinate(latitude, longitude), QDateTime::currentDateTime());
    Q_EMIT positionUpdated(last);
  }
  void fail(Error failure) {
    error_ = failure;
    Q_EMIT errorOccurred(failure);
  }

  QGeoPositionInfo lastKnownPosition(bool) const override { return last; }
  PositioningMethods supportedPositioningMethods() const override { return AllPositioningMethods; }
  int minimumUpdateInterval() const override { return 0; }
  Error error() const override { return error_; }
  void startUpdates() override { ++started; }
  void stopUpdates() override {}
  void requestUpdate(int) override { ++started; }

  QGeoPositionInfo last;
  int started = 0;

 private:
  Error error_ = NoError;
};

using Pair = std::optional<std::pair<std::string, std::string>>;

class QtPositionSourceTest : public testing::FakesTest {
 protected:
  void make() {
    position_ = std::make_shared<QtPositionSource>(source_.get());
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    testing::installWith(fake_, [&](auto& platform) { platform.position = position_; });
  }

  std::unique_ptr<ScriptedPositions> source_ = std::make_unique<ScriptedPositions>();
  std::shared_ptr<QtPositionSource> position_;
};

TEST_F(QtPositionSourceTest, APositionIsKnownOnceTheSourceHasSaidOneAndNothingIsStartedForIt) {
  make();
  EXPECT_EQ(position_->authorizationStatus(), 0);
  EXPECT_EQ(LocationManager::currentLocation(), std::nullopt);
  source_->say(41.0082, -73.98);
  EXPECT_EQ(position_->authorizationStatus(), 4);
  Pair elsewhere;
  std::thread([&] { elsewhere = LocationManager::currentLocation(); }).join();
  EXPECT_EQ(elsewhere, Pair(std::pair("41.0082", "-73.98")));
  Q_EMIT source_->positionUpdated(QGeoPositionInfo());
  source_.reset();
  EXPECT_EQ(LocationManager::currentLocation(), Pair(std::pair("41.0082", "-73.98")))
      << "an invalid position and the source's end change nothing";
}

TEST_F(QtPositionSourceTest, WhatTheSourceKnewBeforeCountsToo) {
  source_->say(1.5, 2.0);
  make();
  EXPECT_EQ(LocationManager::currentLocation(), Pair(std::pair("1.5", "2.0")));
  EXPECT_EQ(source_->started, 0);
}

TEST_F(QtPositionSourceTest, RefusedAccessIsADenialUntilAPositionComesAndOtherFailuresAreNone) {
  make();
  source_->say(1.5, 2.0);
  source_->fail(QGeoPositionInfoSource::UpdateTimeoutError);
  source_->fail(QGeoPositionInfoSource::ClosedError);
  EXPECT_EQ(position_->authorizationStatus(), 4);
  source_->fail(QGeoPositionInfoSource::AccessError);
  EXPECT_EQ(position_->authorizationStatus(), 2);
  EXPECT_EQ(LocationManager::currentLocation(), std::nullopt);
  source_->say(3.5, 4.5);
  EXPECT_EQ(LocationManager::currentLocation(), Pair(std::pair("3.5", "4.5")));
}

TEST_F(QtPositionSourceTest, OnlyAnActiveApplicationHasAPosition) {
  make();
  source_->say(1.5, 2.0);
  for (const auto& [state, expected] :
       {std::pair(Qt::ApplicationInactive, 1), std::pair(Qt::ApplicationHidden, 2),
        std::pair(Qt::ApplicationSuspended, 2)}) {
    Q_EMIT qGuiApp->applicationStateChanged(state);
    EXPECT_EQ(position_->applicationState(), expected);
    EXPECT_EQ(LocationManager::currentLocation(), std::nullopt);
  }
}

TEST_F(QtPositionSourceTest, OneThatIsMadeOffTheUiThreadKnowsNothing) {
  source_->say(1.5, 2.0);
  std::thread([&] { position_ = std::make_shared<QtPositionSource>(source_.get()); }).join();
  EXPECT_EQ(position_->authorizationStatus(), 0);
  EXPECT_EQ(position_->applicationState(), 2);
  EXPECT_EQ(position_->location(), std::nullopt);
}

}  // namespace
}  // namespace kifo
