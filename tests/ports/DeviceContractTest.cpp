// What device probes, positions, clocks and identifiers promise, asked of the machine, the fakes
// and the null ones.
#include <set>

#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "platform/linux/LinuxPlatform.h"
#include "tests/support/Common.h"

namespace kifo::testing {
namespace {

using ::testing::AnyOf;
using ::testing::Eq;
using ::testing::MatchesRegex;

constexpr auto kUuid = "[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-[0-9A-F]{12}";

struct Candidate {
  const char* name;
  Platform (*make)(const FakePlatform& fake);
};

const Candidate kLinux{"Linux", [](const FakePlatform& fake) {
                         return makeLinuxPlatform({.documentsDirectory = fake.directory.path()});
                       }};
const Candidate kFake{"Fake", [](const FakePlatform& fake) { return fake.platform(); }};

class DeviceContract : public ::testing::TestWithParam<Candidate> {
 protected:
  InstalledFakePlatform fake_;
  Platform platform_ = GetParam().make(fake_);
};

TEST_P(DeviceContract, ReadingsAreInTheirRanges) {
  const DeviceProbe& device = *platform_.device;
  EXPECT_EQ(device.machine(), device.machine());
  EXPECT_EQ(device.systemVersion(), device.systemVersion());
  EXPECT_THAT(device.batteryLevel(), AnyOf(Eq(-1.0F), AllOf(Ge(0.0F), Le(1.0F))));
  const auto total = device.capacity(VolumeCapacity::total);
  const auto available = device.capacity(VolumeCapacity::available);
  EXPECT_EQ(total.outcome, available.outcome);
  EXPECT_GE(available.bytes, 0);
  EXPECT_GE(total.bytes, available.bytes);
}

TEST_P(DeviceContract, TheVendorIdentifierIsAStableUuidOrNone) {
  const auto identifier = platform_.device->vendorIdentifier();
  EXPECT_EQ(identifier, platform_.device->vendorIdentifier());
  EXPECT_THAT(identifier.value_or("none"), AnyOf("none", MatchesRegex(kUuid)));
}

TEST_P(DeviceContract, TheTimeZoneIsAName) {
  EXPECT_THAT(platform_.clock->timeZone(), MatchesRegex("[A-Za-z0-9/_+-]+"));
}

TEST_P(DeviceContract, APositionIsKnownInDegreesOrNotAtAll) {
  fake_.position->coordinate.set(Coordinate{-90.0, 180.0});
  const PositionSource& position = *platform_.position;
  EXPECT_THAT(position.authorizationStatus(), AllOf(Ge(0), Le(4)));
  EXPECT_THAT(position.applicationState(), AllOf(Ge(0), Le(2)));
  const auto known = position.location().value_or(Coordinate{});
  EXPECT_THAT(known.latitude, AllOf(Ge(-90.0), Le(90.0)));
  EXPECT_THAT(known.longitude, AllOf(Ge(-180.0), Le(180.0)));
}

INSTANTIATE_TEST_SUITE_P(
    Platforms, DeviceContract,
    ::testing::Values(kLinux, kFake,
                      Candidate{"Null", [](const FakePlatform&) { return nullPlatform(); }}),
    [](const auto& each) { return each.param.name; });

class IdentifiersContract : public DeviceContract {};

TEST_P(IdentifiersContract, NoTwoAreAlikeWhateverTheThread) {
  std::vector<std::vector<std::string>> given(4);
  onThreads(4, [&](int thread) {
    for (int index = 0; index < 250; ++index) {
      given[thread].push_back(platform_.identifiers->uuid());
    }
  });
  std::set<std::string> distinct;
  for (const auto& mine : given) distinct.insert(mine.begin(), mine.end());
  EXPECT_EQ(distinct.size(), 1000u);
  EXPECT_THAT(distinct, Each(MatchesRegex(kUuid)));
}

TEST_P(IdentifiersContract, TheClockTellsMillisecondsSince1970) {
  const std::int64_t year2020 = 1'577'836'800'000;
  EXPECT_GT(platform_.clock->millisecondsSince1970(), year2020);
  EXPECT_LT(platform_.clock->millisecondsSince1970(), 100 * year2020);
}

INSTANTIATE_TEST_SUITE_P(Platforms, IdentifiersContract, ::testing::Values(kLinux, kFake),
                         [](const auto& each) { return each.param.name; });

}  // namespace
}  // namespace kifo::testing
