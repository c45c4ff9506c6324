// Runs the tests that need no Qt.
#include <gmock/gmock.h>

#include "Kifo_iOS_Common_Kit/events/InAppTrigger.h"
#include "Kifo_iOS_Common_Kit/network/RequestLedger.h"
#include "Kifo_iOS_Common_Kit/network/ServiceClient.h"

namespace {

/// What a test left under way is nothing to the next one in the same process.
class CleanSlate : public testing::EmptyTestEventListener {
  void OnTestEnd(const testing::TestInfo&) override {
    kifo::RequestLedger::shared().reset();
    kifo::InAppTrigger::shared().reset();
    kifo::ServiceClient::reset();
  }
};

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);
  testing::UnitTest::GetInstance()->listeners().Append(new CleanSlate);
  return RUN_ALL_TESTS();
}
