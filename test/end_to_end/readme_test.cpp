#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/process.h"

namespace {

// README shows a command with a part of what it prints, from the first test on.
TEST(ReadmeTest, ShowsWhatItsFirstCommandPrints) {
  const std::string page = FileContent("README.md");
  const std::size_t start = page.find("```\n$ npar ");
  ASSERT_NE(start, std::string::npos);
  const std::size_t command = start + 6;
  const std::size_t commandEnd = page.find('\n', command);
  const std::size_t end = page.find("\n```", commandEnd);
  const ProcessResult run = RunProcess(
      {"/bin/sh", "-c", NPAR_BUILD_DIR "/bin/" + page.substr(command, commandEnd - command)});
  EXPECT_EQ(run.exitCode, 0) << run.err;
  const std::string sample = page.substr(commandEnd + 1, end - commandEnd);
  EXPECT_THAT(sample, testing::StartsWith("\n1. "));
  EXPECT_THAT(run.out, testing::HasSubstr(sample));
}

}  // namespace
