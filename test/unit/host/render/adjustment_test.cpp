#include "host/render/adjustment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace npar_host {
namespace {

using testing::DoubleNear;
using testing::Pointwise;

constexpr double kTolerance = 1e-15;

// R 4.2: p.adjust(c(0.01, 0.04, 0.03, 0.005, 0.9), "holm"), and so on.
TEST(AdjustmentTest, IsThatOfR) {
  const std::vector<double> p = {0.01, 0.04, 0.03, 0.005, 0.9};
  const auto near = [](const std::vector<double>& wanted) {
    return Pointwise(DoubleNear(kTolerance), wanted);
  };
  EXPECT_THAT(Adjusted(p, Adjustment::Bonferroni), near({0.05, 0.2, 0.15, 0.025, 1.0}));
  EXPECT_THAT(Adjusted(p, Adjustment::Holm), near({0.04, 0.09, 0.09, 0.025, 0.9}));
  EXPECT_THAT(Adjusted(p, Adjustment::BenjaminiHochberg), near({0.025, 0.05, 0.05, 0.025, 0.9}));
}

TEST(AdjustmentTest, CountsTheTestsThatHaveASignificance) {
  ResultDocument document;
  document.tests.resize(3);
  for (const std::size_t i : {0u, 2u}) {
    document.tests[i].name = "RMcNemar";
    document.tests[i].statistics = {{"", "AsymptoticSig2Tailed", "0.02"}};
  }
  AdjustOverTests(document, FindAdjustment("bonferroni"));
  EXPECT_EQ(document.tests[0].adjustedSignificance, 0.04);
  EXPECT_FALSE(document.tests[1].adjustedSignificance);
}

// The second pair has no significance, and counts among the four all the same. R 4.2:
// p.adjust(c(0.01, 1, 0.02, 0.03), "holm").
TEST(AdjustmentTest, OfPairsIsOverAllOfThemAndTheDocumentsOwnAfterBonferroni) {
  ResultComparison comparison;
  comparison.content.columnNames = {"Sample1", "Sample2", "Sig", "AdjSig"};
  comparison.content.rows = {{"0", "1", "0.01", "0.0401"},
                             {"0", "2", "__MISSING__", "__MISSING__"},
                             {"1", "2", "0.02", "0.08"},
                             {"1", "3", "0.03", "0.12"}};
  const auto adjusted = [&comparison](Adjustment adjustment) {
    std::vector<double> values = AdjustedPairs(comparison, adjustment);
    EXPECT_TRUE(std::isnan(values[1]));
    values[1] = 0.0;
    return values;
  };
  const auto near = [](const std::vector<double>& wanted) {
    return Pointwise(DoubleNear(kTolerance), wanted);
  };
  EXPECT_THAT(adjusted(Adjustment::None), near({0.01, 0.0, 0.02, 0.03}));
  EXPECT_THAT(adjusted(Adjustment::Bonferroni), near({0.0401, 0.0, 0.08, 0.12}));
  EXPECT_THAT(adjusted(Adjustment::Holm), near({0.04, 0.0, 0.06, 0.06}));
  EXPECT_THAT(adjusted(Adjustment::BenjaminiHochberg), near({0.04, 0.0, 0.04, 0.04}));
}

}  // namespace
}  // namespace npar_host
