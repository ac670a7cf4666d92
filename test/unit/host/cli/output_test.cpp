#include "host/cli/output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace npar_host {
namespace {

namespace fs = std::filesystem;

class OutputTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string pattern = (fs::temp_directory_path() / "npar_output_XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    folder = pattern;
  }
  void TearDown() override { fs::remove_all(folder); }

  static std::string Content(const fs::path& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
  }
  std::size_t FileCount() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
  }

  fs::path folder;
};

TEST_F(OutputTest, ReplacesAFileWholeAndLeavesNothingBeside) {
  const fs::path file = folder / "r.xml";
  Publish(file, std::string(100000, 'a'));
  Publish(file, "short");
  EXPECT_EQ(Content(file), "short");
  EXPECT_EQ(FileCount(), 1u);
}

// A reader that had the old file open goes on reading the old file: it was renamed over, not
// written into.
TEST_F(OutputTest, OldContentIsNeverWrittenInto) {
  const fs::path file = folder / "r.xml";
  Publish(file, "old");
  std::ifstream reader(file);
  Publish(file, "new");
  std::string text;
  reader >> text;
  EXPECT_EQ(text, "old");
}

TEST_F(OutputTest, LinkKeepsPointingAndPermissionsStay) {
  const fs::path file = folder / "r.xml";
  const fs::path link = folder / "link.xml";
  Publish(file, "old");
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink(file, link);
  Publish(link, "new");
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(Content(file), "new");
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(OutputTest, NewFileHasTheUsualPermissions) {
  const mode_t mask = umask(022);
  Publish(folder / "r.xml", "text");
  umask(mask);
  EXPECT_EQ(static_cast<unsigned>(fs::status(folder / "r.xml").permissions()), 0644u);
}

TEST_F(OutputTest, FailuresNameFileAndReason) {
  const auto saysWhy = [](const std::string& path, const char* reason) {
    EXPECT_THAT([&] { Publish(path, "text"); },
                testing::ThrowsMessage<OutputError>(
                    testing::AllOf(testing::HasSubstr(path), testing::HasSubstr(reason))));
  };
  saysWhy("/dev/full", "No space left");
  saysWhy(folder / "absent" / "r.xml", "No such file");
  saysWhy(folder, "Is a directory");
  EXPECT_EQ(FileCount(), 0u);
}

}  // namespace
}  // namespace npar_host
