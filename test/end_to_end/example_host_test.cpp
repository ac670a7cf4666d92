#include <gmock/gmock.h>

#include "support/schema.h"

namespace {

using testing::HasSubstr;

constexpr char kHost[] = NPAR_BUILD_DIR "/bin/example_host " NPAR_BUILD_DIR "/lib/libnpar.so";

TEST(ExampleHost, PrintsTheResultOfTheSignTest) {
  const ProcessResult outcome = RunShell(kHost);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.out;
  // Nine positive differences, none negative: 2 / 2^9.
  EXPECT_THAT(outcome.out, HasSubstr("name=\"ExactSig2Tailed\" value=\"0.00390625\""));
  EXPECT_THAT(outcome.out, HasSubstr("Hyoscine"));
  EXPECT_TRUE(IsValid(outcome.out, "statxml-7.0.xsd"));
}

TEST(ExampleHost, MissingLibraryIsToldAndExits2) {
  const ProcessResult outcome = RunShell(NPAR_BUILD_DIR "/bin/example_host ./no_such_library.so");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.out, HasSubstr("no_such_library.so"));
}

}  // namespace
