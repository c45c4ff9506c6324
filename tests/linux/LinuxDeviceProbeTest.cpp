#include "platform/linux/LinuxDeviceProbe.h"

#include <sys/statvfs.h>

#include <filesystem>
#include <fstream>
#include <map>

#include "platform/linux/LinuxClock.h"
#include "tests/support/Common.h"

namespace kifo::testing {
namespace {

namespace fs = std::filesystem;

/// A root directory with just the files of a test.
class SystemTree : public ::testing::Test {
 protected:
  void put(const std::string& path, const std::string& text) const {
    const fs::path file = root() + path;
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
  }
  void link(const std::string& path, const std::string& target) const {
    const fs::path file = root() + path;
    fs::create_directories(file.parent_path());
    fs::create_symlink(target, file);
  }
  [[nodiscard]] const std::string& root() const { return directory_.path(); }
  [[nodiscard]] LinuxDeviceProbe probe(const std::string& application = "shop") const {
    return {queue_, {.applicationIdentifier = application, .root = root()}};
  }
  [[nodiscard]] std::string zone(const std::string& tz = "") const {
    return LinuxClock(queue_, tz, root()).timeZone();
  }
  using Battery = std::map<std::string, std::string>;
  void putSupply(const std::string& name, const Battery& files) const {
    for (const auto& [file, text] : files) {
      put("/sys/class/power_supply/" + name + "/" + file, text + "\n");
    }
  }

  TemporaryDirectory directory_;
  std::shared_ptr<FakeSerialQueue> queue_ = std::make_shared<FakeSerialQueue>();
};

using LinuxDeviceProbeTest = SystemTree;

TEST_F(LinuxDeviceProbeTest, TheVersionIsThatOfTheDistributionElseOfTheKernel) {
  EXPECT_THAT(probe().systemVersion(), ::testing::MatchesRegex("[0-9]+\\..*"));
  put("/usr/lib/os-release", "VERSION_ID=\"11\"\n");
  EXPECT_EQ(probe().systemVersion(), "11");
  put("/etc/os-release",
      "# VERSION_ID=1\nPRETTY_NAME=\"Some 12 (x)\"\nBUILD_VERSION_ID=2\nVERSION_ID_LIKE=3\n"
      "VERSION_ID='12.5'");
  EXPECT_EQ(probe().systemVersion(), "12.5");
  put("/etc/os-release", "NAME=Rolling\n");
  EXPECT_THAT(probe().systemVersion(), ::testing::MatchesRegex("[0-9]+\\..*"));
}

TEST_F(LinuxDeviceProbeTest, TheIdentifierIsTheApplicationsOwnAndDoesNotTellTheMachines) {
  EXPECT_EQ(probe().vendorIdentifier(), std::nullopt);
  put("/etc/machine-id", "uninitialized\n");
  EXPECT_EQ(probe().vendorIdentifier(), std::nullopt);
  put("/var/lib/dbus/machine-id", "0123456789abcdef0123456789abcdef\n");
  const auto identifier = probe().vendorIdentifier();
  // HMAC-SHA256, keyed with the id, of "kifo device identifier 1:shop".
  EXPECT_EQ(identifier, "AC85F742-0618-4D14-A1D0-3542B8FAE747");
  EXPECT_NE(identifier, probe("other").vendorIdentifier());
  put("/etc/machine-id", "0123456789abcdef0123456789abcdee\n");
  EXPECT_NE(identifier, probe().vendorIdentifier());
}

TEST_F(LinuxDeviceProbeTest, CapacitiesAreThoseOfTheVolume) {
  struct statvfs volume {};
  ASSERT_EQ(statvfs(root().c_str(), &volume), 0);
  const auto total = probe().capacity(VolumeCapacity::total);
  EXPECT_EQ(total.outcome, CapacityReading::Outcome::known);
  EXPECT_EQ(total.bytes, static_cast<std::int64_t>(volume.f_blocks * volume.f_frsize));
  // Other programs write meanwhile; what the superuser has in reserve is much more.
  EXPECT_NEAR(static_cast<double>(probe().capacity(VolumeCapacity::available).bytes),
              static_cast<double>(volume.f_bavail * volume.f_frsize), 1 << 30);
  const LinuxDeviceProbe nowhere(queue_, {.applicationIdentifier = "", .root = "/nonexistent"});
  EXPECT_EQ(nowhere.capacity(VolumeCapacity::total).outcome, CapacityReading::Outcome::failed);
}

TEST_F(LinuxDeviceProbeTest, WithoutABatteryTheLevelIsUnknown) {
  EXPECT_EQ(probe().batteryLevel(), -1.0F);
  putSupply("AC", {{"type", "Mains"}, {"online", "1"}});
  putSupply("mouse", {{"type", "Battery"}, {"scope", "Device"}, {"capacity", "30"}});
  putSupply("bay", {{"type", "Battery"}, {"present", "0"}, {"capacity", "0"}});
  putSupply("silent", {{"type", "Battery"}, {"capacity", "unknown"}});
  EXPECT_EQ(probe().batteryLevel(), -1.0F);
}

struct Charge {
  const char* name;
  std::vector<std::map<std::string, std::string>> batteries;
  float level;
};

class BatteryLevel : public SystemTree, public ::testing::WithParamInterface<Charge> {};

TEST_P(BatteryLevel, IsTheChargeOfAllBatteriesTogether) {
  int index = 0;
  for (auto files : GetParam().batteries) {
    files["type"] = "Battery";
    putSupply("BAT" + std::to_string(index++), files);
  }
  EXPECT_FLOAT_EQ(batteryLevelIn(root() + "/sys/class/power_supply"), GetParam().level);
}

INSTANTIATE_TEST_SUITE_P(
    Batteries, BatteryLevel,
    ::testing::Values(
        Charge{"One", {{{"capacity", "55"}, {"scope", "System"}}}, 0.55F},
        Charge{"Empty", {{{"capacity", "0"}}}, 0.0F},
        Charge{"AboveFull", {{{"capacity", "103"}}}, 1.0F},
        Charge{"ByCharge", {{{"charge_now", "300"}, {"charge_full", "1200"}}}, 0.25F},
        Charge{"ThatTellsNoFullCharge", {{{"charge_now", "3"}, {"charge_full", "0"}}}, -1.0F},
        Charge{"TwoByEnergy",
               {{{"capacity", "100"}, {"energy_now", "30"}, {"energy_full", "30"}},
                {{"capacity", "0"}, {"energy_now", "0"}, {"energy_full", "90"}}},
               0.25F},
        Charge{"TwoByCharge",
               {{{"charge_now", "10"}, {"charge_full", "40"}},
                {{"charge_now", "50"}, {"charge_full", "60"}}},
               0.6F},
        Charge{"TwoInDifferentUnits",
               {{{"energy_now", "10"}, {"energy_full", "40"}}, {{"capacity", "75"}}},
               0.5F}),
    [](const auto& each) { return each.param.name; });

using LinuxClockTest = SystemTree;

TEST_F(LinuxClockTest, TheZoneIsNamedByTheVariableTheLinkOrTheFileInThisOrderElseItIsUtc) {
  EXPECT_EQ(zone(), "UTC");
  put("/etc/timezone", "not a zone\n");
  EXPECT_EQ(zone(), "UTC");
  put("/etc/timezone", "America/Argentina/Buenos_Aires\n");
  EXPECT_EQ(zone(), "America/Argentina/Buenos_Aires");
  link("/etc/localtime", "/etc/some-copy");
  EXPECT_EQ(zone(), "America/Argentina/Buenos_Aires");
  fs::remove(root() + "/etc/localtime");
  link("/etc/localtime", "../usr/share/zoneinfo/posix/Etc/GMT+3");
  EXPECT_EQ(zone(), "Etc/GMT+3");
  EXPECT_EQ(zone("Europe/Istanbul"), "Europe/Istanbul");
  EXPECT_EQ(zone(":Asia/Tokyo"), "Asia/Tokyo");
  EXPECT_EQ(zone("/usr/share/zoneinfo/Asia/Tokyo"), "Asia/Tokyo");
  EXPECT_EQ(zone("<+03>-3"), "Etc/GMT+3") << "a rule is no name";
}

TEST(CachedReadingTest, TheFirstIsTakenOnTheSpotAndOldOnesAreRenewedOnTheQueue) {
  const auto queue = std::make_shared<FakeSerialQueue>();
  int taken = 0;
  const CachedReading<int> always(
      queue, [&] { return ++taken; }, std::chrono::seconds(-1));
  EXPECT_EQ(always.get(), 1);
  EXPECT_EQ(always.get(), 1);
  EXPECT_EQ(always.get(), 1);
  EXPECT_EQ(queue->pending(), 1u) << "one renewal at a time";
  queue->runUntilIdle();
  EXPECT_EQ(always.get(), 2);
  queue->runUntilIdle();
  EXPECT_EQ(always.get(), 3) << "and so on";
  const CachedReading<int> fresh(queue, [&] { return ++taken; });
  EXPECT_EQ(fresh.get(), fresh.get());
}

}  // namespace
}  // namespace kifo::testing
