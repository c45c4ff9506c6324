#include "Kifo_iOS_Common_Kit/device/DeviceStatusHelper.h"

#include <cmath>
#include <stdexcept>

#include "Kifo_iOS_Common_Kit/core/Console.h"
#include "tests/support/Common.h"

namespace kifo::testing {
namespace {

using Outcome = CapacityReading::Outcome;

class DeviceStatusTest : public FakesTest {
 protected:
  void setBattery(float level) {
    fake_.device->readings.update([=](auto& now) { now.batteryLevel = level; });
  }
  void setCapacities(CapacityReading total, CapacityReading available) {
    fake_.device->readings.update([=](auto& now) {
      now.total = total;
      now.available = available;
    });
  }
  static std::vector<std::string> capacities() {
    return {DeviceStatusHelper::totalDiskCapacity(), DeviceStatusHelper::availableDiskCapacity()};
  }
};

TEST_F(DeviceStatusTest, AListedModelHasItsNameAndAnyOtherItsIdentifierWithPoints) {
  const std::vector<std::pair<std::string, std::string>> models = {
      {"iPhone1,1", "iPhone"},
      {"iPhone9,1", "iPhone 7"},
      {"iPhone9,3", "iPhone 7"},
      {"iPhone10,3", "iPhone X Global"},
      {"iPhone12,8", "iPhone SE 2nd Gen"},
      {"iPhone13,1", "iPhone 12 Mini"},
      {"iPhone15,3", "iPhone 14 Pro Max"},
      {"iPod1,1", "1st Gen iPod"},
      {"iPod9,1", "7th Gen iPod"},
      {"iPad1,1", "iPad"},
      {"iPad4,9", "iPad Mini 3 (China)"},
      {"iPad5,2", "4th Gen iPad mini (WiFi+Cellular)"},
      {"iPad6,11", "iPad (2017)"},
      {"iPad6,12", "iPad (2017)"},
      {"iPad8,8", "iPad Pro 12.9 inch 3rd Gen (1TB, WiFi+Cellular)"},
      {"iPad13,10", "iPad Pro 12.9 inch 5th Gen"},
      {"iPad14,2", "iPad mini 6th Gen (WiFi+Cellular)"},
      {"iPhone15,4", "iPhone15.4"},
      {"iPhone1,", "iPhone1."},
      {"iphone1,1", "iphone1.1"},
      {"a,b,c", "a.b.c"},
      {"x86_64", "x86_64"},
      {"", ""}};
  for (const auto& [identifier, name] : models) {
    fake_.device->readings.update([&](auto& now) { now.machine = identifier; });
    EXPECT_EQ(modelName(), name) << identifier;
  }
}

TEST_F(DeviceStatusTest, ABatteryLevelThatIsNoWholeNumberIsFatal) {
  setFatalErrorHandler(
      [](std::string_view message) -> void { throw std::runtime_error(std::string(message)); });
  for (const float level : {std::nanf(""), HUGE_VALF, -HUGE_VALF, 1e18F, -1e18F}) {
    setBattery(level);
    EXPECT_THROW(DeviceStatusHelper::batteryLevel(), std::runtime_error) << level;
  }
  setFatalErrorHandler(nullptr);
}

TEST_F(DeviceStatusTest, AFailedCapacityIsAnsweredWithTheLastReadingOfItsKind) {
  setCapacities({Outcome::known, 500}, {Outcome::known, 100});
  EXPECT_THAT(capacities(), ElementsAre("500", "100"));
  setCapacities({Outcome::failed}, {Outcome::known, 90});
  EXPECT_THAT(capacities(), ElementsAre("500", "90"));
  setCapacities({Outcome::missing}, {Outcome::missing});
  EXPECT_THAT(capacities(), ElementsAre("-1", "-1"));
  EXPECT_THAT(fake_.console->lines(),
              ElementsAre("Kifo DeviceStatusHelper: Total disk capacity is unavailable",
                          "Kifo DeviceStatusHelper: Available disk capacity is unavailable"));
  setCapacities({Outcome::failed}, {Outcome::failed});
  EXPECT_THAT(capacities(), ElementsAre("500", "90")) << "a missing value is no reading";
}

}  // namespace
}  // namespace kifo::testing
