#include "Kifo_iOS_Common_Kit/device/LocationManager.h"
#include "tests/support/Common.h"

namespace kifo::testing {
namespace {

class LocationManagerTest : public FakesTest {
 protected:
  LocationManagerTest() {
    fake_.position->authorization = 3;
    fake_.position->coordinate.set(Coordinate{41.0082, -73.98});
  }
};

TEST_F(LocationManagerTest, ThereIsOneWithPermissionInTheForegroundWithAKnownPositionOnly) {
  const auto known = std::optional(std::pair<std::string, std::string>("41.0082", "-73.98"));
  for (const int authorization : {0, 1, 2, 3, 4}) {
    for (const int state : {0, 1, 2}) {
      fake_.position->authorization = authorization;
      fake_.position->state = state;
      const bool isKnown = authorization >= 3 && state == 0;
      EXPECT_EQ(LocationManager::currentLocation(), isKnown ? known : std::nullopt)
          << authorization << " " << state;
    }
  }
  fake_.position->authorization = 4;
  fake_.position->state = 0;
  fake_.position->coordinate.set(std::nullopt);
  EXPECT_EQ(LocationManager::currentLocation(), std::nullopt);
}

TEST_F(LocationManagerTest, ADegreeIsTheShortestTextThatReadsBackAsTheSameNumber) {
  const std::vector<std::pair<double, std::string>> texts = {
      {0.0001, "0.0001"}, {0.00012, "0.00012"},
      {0.00005, "5e-05"}, {0.001, "0.001"},
      {0.0, "0.0"},       {-0.0, "-0.0"},
      {100.0, "100.0"},   {0.1 + 0.2, "0.30000000000000004"},
      {-73.98, "-73.98"}};
  for (const auto& [degrees, text] : texts) {
    fake_.position->coordinate.set(Coordinate{degrees, degrees});
    EXPECT_EQ(LocationManager::currentLocation(), std::pair(text, text));
  }
}

}  // namespace
}  // namespace kifo::testing
