#include "Kifo_iOS_Common_Kit/notifications/AttachmentFile.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "testing/ChildProgram.h"
#include "tests/support/Common.h"

namespace kifo {
namespace {

namespace fs = std::filesystem;

std::string contentsOf(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

/// The number of a process that has ended.
pid_t endedProcess() {
  testing::ChildProgram child;
  child.start({"true"});
  const pid_t process = child.process();
  child.wait();
  return process;
}

class AttachmentFileTest : public testing::FakesTest {
 protected:
  std::string makeDirectory(const std::string& name) {
    const std::string path = fake_.directory.file(name);
    fs::create_directory(path);
    std::ofstream(path + "/image.jpg") << "old";
    return path;
  }
};

TEST_F(AttachmentFileTest, TheBytesLieUnchangedUnderTheFixedNameUntilTheFileIsLetGo) {
  const std::string bytes("\x89PNG\r\n\0\xff", 8);
  auto file = AttachmentFile::write(bytes);
  const fs::path path = file->path();
  EXPECT_EQ(path.filename(), "image.jpg");
  EXPECT_EQ(path.parent_path().parent_path(), fake_.directory.path());
  auto other = AttachmentFile::write("other");
  EXPECT_NE(other->path(), path);
  EXPECT_EQ(contentsOf(path), bytes);
  EXPECT_EQ(fs::status(path.parent_path()).permissions(), fs::perms::owner_all);
  other.reset();
  file.reset();
  EXPECT_TRUE(fs::is_empty(fake_.directory.path()));
}

TEST_F(AttachmentFileTest, TheNextStartRemovesWhatAnEndedProcessLeftAndNothingElse) {
  const auto ended = makeDirectory("kifo-push-" + std::to_string(endedProcess()) + "-A");
  const auto sameNumber = makeDirectory("kifo-push-" + std::to_string(getpid()) + "-A");
  const auto running = makeDirectory("kifo-push-" + std::to_string(getppid()) + "-A");
  const auto foreign = makeDirectory("kifo-push-notes");
  const auto current = AttachmentFile::write("bytes");  // the first one clears the way
  EXPECT_FALSE(fs::exists(ended));
  EXPECT_FALSE(fs::exists(sameNumber));
  EXPECT_TRUE(fs::exists(running));
  EXPECT_TRUE(fs::exists(foreign));
  AttachmentFile::removeLeftovers(fake_.directory.path());
  EXPECT_TRUE(fs::exists(current->path()));
}

}  // namespace
}  // namespace kifo
