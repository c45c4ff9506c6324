#include <gtest/gtest.h>

#include <ostream>

#include "testing/simulation/Play.h"
#include "testing/simulation/Script.h"
#include "tests/support/Common.h"

namespace kifo::testing::simulation {
namespace {

/// The shortest script of a fault that a simulated world once found.
struct Regression {
  const char* name;
  Script script;
  friend std::ostream& operator<<(std::ostream& stream, const Regression& regression) {
    return stream << regression.name;
  }
};

class SimulatedWorld : public ::testing::TestWithParam<Regression> {};

TEST_P(SimulatedWorld, HoldsWhereItOnceFailed) {
  EXPECT_EQ(play(GetParam().script).violation, std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    Simulation, SimulatedWorld,
    ::testing::Values(Regression{"ADiskThatIsFullWhileTheTableIsMadeStoresAgainOnceItHasRoom",
                                 {{Kind::breakDisk, 5}, {Kind::runTask, 0}, {Kind::runTask, 0}}},
                      Regression{
                          "AStartWhoseConsentIsRevokedIsNotToldAsASuccess",
                          {{Kind::runTask, 1}, {Kind::answerRequest, 9}, {Kind::changeConsent, 0}}},
                      Regression{"ARefusalAfterTheConsentWasRevokedAsksForNoToken",
                                 {{Kind::runTask, 1},
                                  {Kind::answerRequest, 4},
                                  {Kind::changeConsent, 0},
                                  {Kind::runAll, 0},
                                  {Kind::answerToken, 1}}},
                      Regression{"AnErasingThatCannotRemoveTheTableLeavesItsJournal",
                                 {{Kind::runTask, 0},
                                  {Kind::runTask, 1},
                                  {Kind::answerRequest, 14},
                                  {Kind::runTask, 0},
                                  {Kind::runTask, 0},
                                  {Kind::runTask, 0},
                                  {Kind::runTask, 0},
                                  {Kind::enterPage, 0},
                                  {Kind::breakDisk, 655293762},
                                  {Kind::runTask, 0},
                                  {Kind::enterPage, 0},
                                  {Kind::runAll, 0},
                                  {Kind::breakDisk, 7},
                                  {Kind::changeConsent, 0},
                                  {Kind::runTask, 0}}}),
    [](const auto& each) { return each.param.name; });

TEST(SimulatedWorldTest, AScriptPlaysTheSameEachTimeAndIsShrunkToWhatMatters) {
  const Script script = randomScript(7, 300);
  EXPECT_EQ(script, randomScript(7, 300));
  const Outcome first = play(script);
  EXPECT_GT(first.steps, script.size());
  EXPECT_EQ(play(script).steps, first.steps);
  const auto holdsBoth = [](const Script& shorter) {
    bool isKilled = false;
    for (const Operation& operation : shorter) {
      isKilled |= operation.kind == Kind::kill;
      if (isKilled && operation.kind == Kind::sendEvent) return true;
    }
    return false;
  };
  ASSERT_TRUE(holdsBoth(script));
  EXPECT_EQ(shrunk(script, holdsBoth), (Script{{Kind::kill, 0}, {Kind::sendEvent, 0}}));
}

}  // namespace
}  // namespace kifo::testing::simulation
