#include "testing/server/CampaignSource.h"

#include <fstream>

#include "testing/TemporaryDirectory.h"
#include "tests/support/Common.h"

namespace kifo::testing {
namespace {

void write(const std::filesystem::path& path, const std::string& text) {
  std::ofstream(path, std::ios::trunc) << text;
}

TEST(CampaignSource, serves_a_changed_file_and_keeps_the_last_good_one_while_it_is_half_written) {
  const TemporaryDirectory folder;
  const auto file = std::filesystem::path(folder.path()) / "campaigns.json";
  CampaignSource source;
  write(file, R"({"model":[{"uuid":"first"}]})");
  source.servePath(file);
  EXPECT_NE(source.answer().find("first"), std::string::npos);

  write(file, R"({"model":[{"uuid":"second")");
  EXPECT_NE(source.answer().find("first"), std::string::npos);
  EXPECT_NE(source.problem(), "");

  write(file, R"({"model":[{"uuid":"second"}]})");
  EXPECT_NE(source.answer().find("second"), std::string::npos);
  EXPECT_EQ(source.problem(), "");
}

TEST(CampaignSource, joins_the_files_of_a_folder_and_notices_a_new_one) {
  const TemporaryDirectory folder;
  const std::filesystem::path root = folder.path();
  write(root / "a.json", R"({"configuration":{"stopAllEvents":false},"model":[{"uuid":"1"}]})");
  write(root / "notes.txt", "no campaign");
  CampaignSource source;
  source.servePath(root);
  write(root / "b.json", R"({"blockedEvents":[{"name":"noise"}],"model":[{"uuid":"2"}]})");
  EXPECT_EQ(nlohmann::json::parse(source.answer()), nlohmann::json::parse(R"(
    {"configuration":{"stopAllEvents":false},"blockedEvents":[{"name":"noise"}],
     "model":[{"uuid":"1"},{"uuid":"2"}]})"));
}

}  // namespace
}  // namespace kifo::testing
