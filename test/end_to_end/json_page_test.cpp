#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "support/process.h"

namespace {

// The commands of docs/json.md, each a fenced block.
std::vector<std::string> CommandsOfThePage() {
  const std::string page = FileContent("docs/json.md");
  std::vector<std::string> commands;
  for (std::size_t start = page.find("\n```\n"); start != std::string::npos;) {
    const std::size_t end = page.find("\n```", start + 5);
    commands.push_back(page.substr(start + 5, end - start - 5));
    start = page.find("\n```\n", end + 4);
  }
  return commands;
}

TEST(JsonPageTest, ItsCommandsRun) {
  const std::vector<std::string> commands = CommandsOfThePage();
  ASSERT_EQ(commands.size(), 5u);
  std::vector<std::string> printed;
  for (const std::string& command : commands) {
    SCOPED_TRACE(command);
    const ProcessResult run =
        RunProcess({"/bin/bash", "-o", "pipefail", "-c",
                    "npar() { " NPAR_BUILD_DIR "/bin/npar \"$@\"; }\n" + command});
    EXPECT_EQ(run.exitCode, 0) << run.err;
    EXPECT_FALSE(run.out.empty());
    printed.push_back(run.out);
  }
  EXPECT_THAT(printed[0], testing::StartsWith("\"Sign test\",\"reject\",0.0076607"));
  EXPECT_THAT(printed[1], testing::HasSubstr("\"p\": 0.00390625"));
  EXPECT_THAT(printed[2], testing::StartsWith("A C "));
  EXPECT_EQ(printed[3],
            "{\"group\":\"C\",\"outliers\":[7]}\n{\"group\":\"D\",\"outliers\":[12]}\n");
  EXPECT_EQ(printed[4], "error 221309: the field has more than two categories\n");
}

}  // namespace
