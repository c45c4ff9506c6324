// Runs the tests that need no Qt.

#include "Kifo_iOS_Common_Kit/core/runtime/Runtime.h"

namespace {

/// Every test finds a fresh runtime.
class FreshRuntime : public testing::EmptyTestEventListener {
  void OnTestEnd(const testing::TestInfo&) override { kifo::Runtime::detach(); }
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new FreshRuntime);
  return RUN_ALL_TESTS();
}
