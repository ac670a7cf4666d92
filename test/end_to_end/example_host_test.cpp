#include <gmock/gmock.h>

#include "support/schema.h"

namespace {

using testing::HasSubstr;

constexpr char kHost[] = NPAR_BUILD_DIR "/bin/example_host " NPAR_BUILD_DIR "/lib/libnpar.so";

TEST(ExampleHost, PrintsTheResultOfTheSignTest) {
  const ProgramOutcome outcome = RunProgram(kHost);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.output;
  // Nine positive differences, none negative: 2 / 2^9.
  EXPECT_THAT(outcome.output, HasSubstr("name=\"ExactSig2Tailed\" value=\"0.00390625\""));
  EXPECT_THAT(outcome.output, HasSubstr("Hyoscine"));
  EXPECT_TRUE(IsValid(outcome.output, "statxml-7.0.xsd"));
}

TEST(ExampleHost, MissingLibraryIsToldAndExits2) {
  const ProgramOutcome outcome =
      RunProgram(NPAR_BUILD_DIR "/bin/example_host ./no_such_library.so");
  EXPECT_EQ(outcome.exitCode, 2);
  EXPECT_THAT(outcome.output, HasSubstr("no_such_library.so"));
}

TEST(ExampleHost, AnotherProviderTakesThePlatformsPlaceAtLoadTime) {
  const ProgramOutcome outcome =
      RunProgram(std::string("ASAN_OPTIONS=verify_asan_link_order=0 LD_PRELOAD=" NPAR_BUILD_DIR
                             "/lib/libcounting_distributions.so ") +
                 kHost);
  EXPECT_EQ(outcome.exitCode, 0) << outcome.output;
  EXPECT_THAT(outcome.output, HasSubstr("name=\"ExactSig2Tailed\" value=\"0.00390625\""));
  // One lower and one upper binomial tail, one normal tail.
  EXPECT_THAT(outcome.output, HasSubstr("CdfBin 2, normal 1\n"));
}

}  // namespace
