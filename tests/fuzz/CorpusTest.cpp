
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/support/Common.h"

extern "C" {
int answerFuzz(const std::uint8_t* data, std::size_t size);
int netlinkFuzz(const std::uint8_t* data, std::size_t size);
int pushFuzz(const std::uint8_t* data, std::size_t size);
int rowFuzz(const std::uint8_t* data, std::size_t size);
int storedFuzz(const std::uint8_t* data, std::size_t size);
}

namespace kifo {
namespace {

struct Target {
  const char* name;
  int (*run)(const std::uint8_t* data, std::size_t size);
};

class FuzzCorpusTest : public ::testing::TestWithParam<Target> {};

/// A target ends the process at an input that fails; the last one named is it.
TEST_P(FuzzCorpusTest, HoldsForEachInputThatWasOnceFound) {
  int inputs = 0;
  const std::filesystem::path corpus(KIFO_FUZZ_CORPUS);
  for (const auto& entry : std::filesystem::directory_iterator(corpus / GetParam().name)) {
    SCOPED_TRACE(entry.path());
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string input((std::istreambuf_iterator<char>(file)), {});
    EXPECT_EQ(GetParam().run(reinterpret_cast<const std::uint8_t*>(input.data()), input.size()), 0);
    ++inputs;
  }
  EXPECT_GT(inputs, 0);
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzCorpusTest,
                         ::testing::Values(Target{"answer", answerFuzz},
                                           Target{"netlink", netlinkFuzz}, Target{"push", pushFuzz},
                                           Target{"row", rowFuzz}, Target{"stored", storedFuzz}),
                         [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace kifo
