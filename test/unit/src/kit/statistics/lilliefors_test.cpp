#include "kit/statistics/lilliefors.h"

#include <gtest/gtest.h>

namespace {

using Kind = LillieforsSig::Kind;

struct NormalCase {
  std::int64_t n;
  double d;
  Kind kind;
  double sig;
};

// statsmodels 0.15.0: stats._lilliefors.pval_lf(d, n); 0.192 is the point at 0.05 of n = 20 in the
// table of Dallal and Wilkinson (1986).
const NormalCase kNormal[] = {
    {5, 0.3374, Kind::Value, 0.06445653440559704},  {20, 0.192, Kind::Value, 0.05162541384106065},
    {100, 0.1, Kind::Value, 0.015326804531700858},  {200, 0.07, Kind::Value, 0.01853577565294793},
    {1000, 0.03, Kind::Value, 0.03381348312742053},
};

TEST(LillieforsTest, TheNormalHasTheFormulaUpToATenth) {
  for (const NormalCase& row : kNormal) {
    SCOPED_TRACE(testing::Message() << row.n << ' ' << row.d);
    const LillieforsSig found = NormalLillieforsSig(row.n, row.d);
    EXPECT_EQ(found.kind, row.kind);
    EXPECT_NEAR(found.sig, row.sig, 1e-12 * row.sig);
  }
}

/// D of 25 units that has this modified statistic.
double DOf(double modified) { return modified / (5 + 0.26 + 0.1) + 0.2 / 25; }

TEST(LillieforsTest, TheExponentialHasStephensPointsAndBetweenThemTheirGeometricMeans) {
  const auto check = [](double modified, Kind kind, double sig) {
    SCOPED_TRACE(modified);
    const LillieforsSig found = ExponentialLillieforsSig(25, DOf(modified));
    EXPECT_EQ(found.kind, kind);
    EXPECT_NEAR(found.sig, sig, 1e-12);
  };
  check(0.9259, Kind::AtLeast, 0.15);
  check(0.9260001, Kind::Value, 0.14999990496914536);
  check((0.926 + 0.990) / 2, Kind::Value, 0.122474487139158905);
  check((1.190 + 1.308) / 2, Kind::Value, 0.0158113883008418967);
  check(1.3079999999, Kind::Value, 0.01000000000776517);
  check(1.3081, Kind::AtMost, 0.01);
}

}  // namespace
