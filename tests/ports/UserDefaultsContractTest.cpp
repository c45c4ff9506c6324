// What every store of user defaults promises, asked of the file and of the fake.

#include "Kifo_iOS_Common_Kit/ports/NullPorts.h"
#include "platform/linux/FileUserDefaults.h"
#include "tests/support/Common.h"

namespace kifo::testing {
namespace {

struct FileStore {
  // A write that still waits holds the store, and the store its queue; letting go queues one more.
  ~FileStore() {
    defaults.reset();
    queue->discard();
  }

  TemporaryDirectory directory;
  std::shared_ptr<FakeSerialQueue> queue = std::make_shared<FakeSerialQueue>();
  std::shared_ptr<UserDefaults> defaults =
      std::make_shared<FileUserDefaults>(directory.path(), queue);
};

struct MemoryStore {
  std::shared_ptr<UserDefaults> defaults = std::make_shared<FakeUserDefaults>();
};

template <class Bench>
class UserDefaultsContract : public FakesTest {
 protected:
  Bench bench_;
  UserDefaults& defaults_ = *bench_.defaults;
};

using Benches = ::testing::Types<FileStore, MemoryStore>;
TYPED_TEST_SUITE(UserDefaultsContract, Benches);

TYPED_TEST(UserDefaultsContract, AValueIsThereAtOnceWithItsType) {
  auto& defaults = this->defaults_;
  EXPECT_EQ(defaults.value("key"), std::nullopt);
  for (const DefaultsValue& value :
       {DefaultsValue(true), DefaultsValue(std::int64_t{-7}), DefaultsValue(0.5),
        DefaultsValue(std::string("a\0'\"\xff", 5)), DefaultsValue(std::string())}) {
    defaults.setValue("key", value);
    EXPECT_EQ(defaults.value("key"), value);
  }
  EXPECT_EQ(defaults.value("Key"), std::nullopt);
}

TYPED_TEST(UserDefaultsContract, ReadsANumberFromWhateverIsWhollyOne) {
  auto& defaults = this->defaults_;
  const auto numberOf = [&](DefaultsValue value) {
    defaults.setValue("key", std::move(value));
    return std::pair(defaults.number("key"), defaults.integer("key"));
  };
  EXPECT_EQ(numberOf(std::string("12.5")), std::pair(12.5, std::int64_t{12}));
  EXPECT_EQ(numberOf(std::string("12.5s")), std::pair(0.0, std::int64_t{0}));
  EXPECT_EQ(numberOf(-2.9), std::pair(-2.9, std::int64_t{-2}));
  EXPECT_EQ(numberOf(true), std::pair(1.0, std::int64_t{1}));
  EXPECT_EQ(numberOf(1e300).second, INT64_MAX);
  EXPECT_EQ(numberOf(std::int64_t{INT64_MIN}).second, INT64_MIN);
  EXPECT_EQ(defaults.integer("absent"), 0);
  EXPECT_EQ(defaults.string("key"), std::nullopt) << "a number is no text";
}

TYPED_TEST(UserDefaultsContract, RemovedNothingIsLeftAndANewValueIsKept) {
  this->defaults_.setValue("key", true);
  EXPECT_TRUE(this->defaults_.removeAll());
  EXPECT_EQ(this->defaults_.value("key"), std::nullopt);
  this->defaults_.setValue("next", true);
  EXPECT_EQ(this->defaults_.value("next"), DefaultsValue(true));
}

TYPED_TEST(UserDefaultsContract, ThreadsThatWriteDifferentKeysLoseNothing) {
  onThreads(4, [&](int index) {
    for (std::int64_t value = 1; value <= 200; ++value) {
      this->defaults_.setValue("key" + std::to_string(index), value);
      EXPECT_EQ(this->defaults_.integer("key" + std::to_string(index)), value);
    }
  });
  for (int index = 0; index < 4; ++index) {
    EXPECT_EQ(this->defaults_.integer("key" + std::to_string(index)), 200);
  }
}

TEST(NullUserDefaults, KeepsNothing) {
  const auto defaults = nullPlatform().userDefaults;
  defaults->setValue("key", true);
  EXPECT_EQ(defaults->value("key"), std::nullopt);
}

}  // namespace
}  // namespace kifo::testing
