#include "host/cli/output.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <vector>

#include "host/os/interrupt.h"
#include "support/process.h"

namespace npar_host {
namespace {

namespace fs = std::filesystem;

class OutputTest : public testing::Test {
 protected:
  [[nodiscard]] fs::path Path(const char* name) const { return temporary.Path(name); }

  TemporaryFolder temporary;
};

TEST_F(OutputTest, ReplacesAFileWholeAndLeavesNothingBeside) {
  const fs::path file = Path("r.xml");
  Publish(file, std::string(100000, 'a'));
  Publish(file, "short");
  EXPECT_EQ(FileContent(file), "short");
  EXPECT_THAT(temporary.Names(), testing::ElementsAre("r.xml"));
}

// A reader that had the old file open goes on reading the old file: it was renamed over, not
// written into.
TEST_F(OutputTest, OldContentIsNeverWrittenInto) {
  const fs::path file = Path("r.xml");
  Publish(file, "old");
  std::ifstream reader(file);
  Publish(file, "new");
  std::string text;
  reader >> text;
  EXPECT_EQ(text, "old");
}

TEST_F(OutputTest, LinkKeepsPointingAndPermissionsStay) {
  const fs::path file = Path("r.xml");
  const fs::path link = Path("link.xml");
  Publish(file, "old");
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink(file, link);
  Publish(link, "new");
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(FileContent(file), "new");
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
  fs::remove(file);
  Publish(link, "newer");
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(FileContent(file), "newer");
}

TEST_F(OutputTest, NewFileHasTheUsualPermissions) {
  const mode_t mask = umask(022);
  Publish(Path("r.xml"), "text");
  umask(mask);
  EXPECT_EQ(static_cast<unsigned>(fs::status(Path("r.xml")).permissions()), 0644u);
}

TEST_F(OutputTest, FailuresNameFileAndReason) {
  const auto saysWhy = [](const std::string& path, const char* reason) {
    EXPECT_THAT([&] { Publish(path, "text"); },
                testing::ThrowsMessage<OutputError>(
                    testing::AllOf(testing::HasSubstr(path), testing::HasSubstr(reason))));
  };
  saysWhy("/dev/full", "No space left");
  saysWhy(Path("absent/r.xml"), "No such file");
  saysWhy(temporary.Path("."), "Is a directory");
  EXPECT_THAT(temporary.Names(), testing::IsEmpty());
}

// The process gets the signals in the middle of a text, and waits for its end there.
void PublishAndGet(const std::vector<int>& signals, bool isWatched, bool isCancelled,
                   const fs::path& path) {
  std::optional<InterruptWatch> watch;
  std::optional<InterruptWatch::Cancelling> cancelling;
  if (isWatched) watch.emplace();
  if (isCancelled) cancelling.emplace(*watch, [] {});
  Publish(path, TextWriter([&](const TextSink& sink) {
            sink("half");
            for (const int signal : signals) kill(getpid(), signal);
            for (;;) pause();
          }));
}

TEST_F(OutputTest, SignalsThatEndTheProcessLeaveNothingBeside) {
  const fs::path file = Path("r.xml");
  Publish(file, "old");
  EXPECT_EXIT(PublishAndGet({SIGINT}, true, false, file),
              testing::ExitedWithCode(kInterruptedExitCode), "npar: cancelled");
  EXPECT_EXIT(PublishAndGet({SIGINT, SIGINT}, true, true, file), testing::KilledBySignal(SIGINT),
              "");
  for (const int signal : {SIGTERM, SIGUSR1, SIGALRM}) {
    EXPECT_EXIT(PublishAndGet({signal}, true, false, file), testing::KilledBySignal(signal), "");
    EXPECT_EXIT(PublishAndGet({signal}, false, false, file), testing::KilledBySignal(signal), "");
  }
  EXPECT_EQ(FileContent(file), "old");
  EXPECT_THAT(temporary.Names(), testing::ElementsAre("r.xml"));
}

}  // namespace
}  // namespace npar_host
