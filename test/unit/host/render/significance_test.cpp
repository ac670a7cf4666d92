#include "host/render/significance.h"

#include <gtest/gtest.h>

namespace npar_host {
namespace {

TEST(SignificanceTest, IsPrintedAsPublicationsDo) {
  EXPECT_EQ(SignificanceText("0.0009999"), "p < .001");
  EXPECT_EQ(SignificanceText("0.001"), "p = .001");
  EXPECT_EQ(SignificanceText("0.0634296"), "p = .063");
  EXPECT_EQ(SignificanceText("0.999"), "p = .999");
  EXPECT_EQ(SignificanceText("0.9991"), "p > .999");
  EXPECT_EQ(SignificanceText("1"), "p = 1");
  EXPECT_EQ(SignificanceText("0"), "p < .001");
  EXPECT_EQ(SignificanceText("nan"), "p unknown");
  EXPECT_EQ(SignificanceText("__MISSING__"), "p unknown");
}

struct DecidingCase {
  const char* test;
  std::vector<ResultStatistic> statistics;
  const char* figure;
  const char* kind;
};

TEST(SignificanceTest, IsTheOneThatTheDecisionRestsOn) {
  const ResultStatistic asymptotic{"", "AsymptoticSig2Tailed", "0.06"};
  const ResultStatistic exact{"", "ExactSig2Tailed", "0.04"};
  const DecidingCase cases[] = {
      {"RSign", {asymptotic, exact}, "0.04", "exact, 2-sided"},
      {"RSign", {asymptotic}, "0.06", "asymptotic, 2-sided"},
      {"RMcNemar", {asymptotic, exact}, "0.06", "asymptotic, 2-sided"},
      {"OBinomial",
       {{"", "AsymptoticSig1Tailed", "0.02"}, {"", "ExactSig1Tailed", "0.03"}},
       "0.02",
       "asymptotic, 1-sided"},
      {"IWaldWolfowitzRuns",
       {{"MinimumRuns", "ExactSig1Tailed", "0.01"}, {"MaximumRuns", "ExactSig1Tailed", "0.6"}},
       "0.6",
       "exact, 1-sided"},
      {"IMedian",
       {{"", "YatesAsymptoticSig2Tailed", "0.2"}, asymptotic},
       "0.06",
       "asymptotic, 2-sided"},
  };
  for (const DecidingCase& row : cases) {
    SCOPED_TRACE(row.test);
    ResultTest test;
    test.name = row.test;
    test.statistics = row.statistics;
    const auto significance = DecidingSignificance(test);
    ASSERT_TRUE(significance);
    EXPECT_EQ(significance->figure, row.figure);
    EXPECT_EQ(SignificanceKind(*significance), row.kind);
  }
  EXPECT_FALSE(DecidingSignificance({}));
}

}  // namespace
}  // namespace npar_host
