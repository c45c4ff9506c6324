#include "platform/linux/LinuxPlatform.h"

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "platform/linux/Directories.h"
#include "tests/support/Common.h"

namespace kifo::testing {
namespace {

namespace fs = std::filesystem;

/// An environment variable with another value for as long as this lives.
class Variable {
 public:
  Variable(const char* name, const std::string& value) : name_(name) {
    if (const char* text = getenv(name)) before_ = text;
    setenv(name, value.c_str(), 1);
  }
  ~Variable() {
    if (before_) {
      setenv(name_, before_->c_str(), 1);
    } else {
      unsetenv(name_);
    }
  }

 private:
  const char* const name_;
  std::optional<std::string> before_;
};

int threads() {
  int count = 0;
  for ([[maybe_unused]] const auto& each : fs::directory_iterator("/proc/self/task")) ++count;
  return count;
}

class LinuxPlatformTest : public ::testing::Test {
 protected:
  TemporaryDirectory directory_;
};

TEST_F(LinuxPlatformTest, NothingIsStartedAndNothingMadeUntilItIsNeeded) {
  const int before = threads();
  const Variable data("XDG_DATA_HOME", directory_.path());
  const Variable cache("XDG_CACHE_HOME", directory_.path());
  const Platform platform = makeLinuxPlatform();
  platform.device->vendorIdentifier();
  platform.identifiers->uuid();
  EXPECT_EQ(threads(), before);
  EXPECT_TRUE(fs::is_empty(directory_.path()));
  EXPECT_EQ(platform.documentsDirectory, directory_.file("kifo_kit_tests/kifo"));
  platform.userDefaults->setValue("key", true);
  EXPECT_TRUE(platform.mainQueue->stop(SerialQueue::Duration(20)));
  EXPECT_TRUE(fs::exists(platform.documentsDirectory + "/defaults.json"));
  fs::permissions(platform.documentsDirectory, fs::perms::all);
  makeLinuxPlatform();
  EXPECT_EQ(fs::status(platform.documentsDirectory).permissions(), fs::perms::owner_all);
}

TEST_F(LinuxPlatformTest, AnUnsetOrRelativeDataHomeLeadsBelowTheHomeDirectory) {
  const Variable data("XDG_DATA_HOME", "relative");
  const Variable cache("XDG_CACHE_HOME", "");
  const Variable home("HOME", directory_.path());
  const auto directories = Directories::ofThisProcess();
  EXPECT_EQ(directories.documents, directory_.file(".local/share/kifo_kit_tests/kifo"));
  EXPECT_EQ(directories.temporary, directory_.file(".cache/kifo_kit_tests/kifo"));
  EXPECT_EQ(directories.problem, "");
}

TEST_F(LinuxPlatformTest, WhereNothingCanBeKeptATemporaryDirectoryServes) {
  std::ofstream(directory_.file("file")) << "no directory";
  const Variable temporary("TMPDIR", directory_.path());
  const Variable data("XDG_DATA_HOME", directory_.file("file/below"));
  const auto directories = Directories::ofThisProcess();
  const auto base = directory_.file("kifo-" + std::to_string(getuid()));
  EXPECT_EQ(directories.documents, base + "/kifo_kit_tests");
  EXPECT_THAT(directories.problem, StartsWith(directory_.file("file/below")));
  fs::permissions(base, fs::perms::all);  // whoever may write there could have made it
  EXPECT_THAT(Directories::ofThisProcess().documents, StartsWith(base + "-"));
}

}  // namespace
}  // namespace kifo::testing
