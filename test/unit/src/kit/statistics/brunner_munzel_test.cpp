#include "kit/statistics/brunner_munzel.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

#include "kit/ranks/placements.h"
#include "kit/statistics/superiority.h"
#include "support/matchers.h"

namespace {

struct Theta {
  double estimate;
  ProportionInterval newcombe;
  std::optional<BrunnerMunzelFigures> brunnerMunzel;
};

Theta ThetaOf(const std::vector<TiedUnits>& runs) {
  constexpr double kLevel = 0.95;
  Placements placements;
  for (const TiedUnits& run : runs) placements.Add(run);
  const auto n1 = static_cast<double>(placements.Count(0));
  const auto n2 = static_cast<double>(placements.Count(1));
  const double theta = static_cast<double>(placements.Sum(1)) / (2.0 * n1 * n2);
  return {theta, SuperiorityInterval(theta, n1, n2, kLevel),
          BrunnerMunzel(theta - 0.5, {n1, n2}, {*placements.Scatter(0), *placements.Scatter(1)},
                        kLevel)};
}

struct ThetaCase {
  const char* catches;
  std::vector<TiedUnits> runs;
  std::array<double, 3> theta;    // and Newcombe's limits
  std::vector<double> figures{};  // t, df, two-sided, less, greater, limits
};

// mpmath 1.4.1 at 40 digits, from the formulas, with variances in Python's fractions; statistic and
// significances of the first also SciPy 1.17.1, brunnermunzel([1,2,2,3,3,3,4,5], [2,3,4,4,5,5,6]),
// alternative="less" being "greater" here.
const ThetaCase kThetas[] = {
    {"ties",
     {{1, 0}, {2, 1}, {3, 1}, {1, 2}, {1, 2}, {0, 1}},
     {85.0 / 112, 0.4577742099860509, 0.91544222828298384},
     {1.994417885675593, 12.06051495208466, 0.069211681873487975, 0.96539415906325601,
      0.034605840936743987, 0.47621795977472757, 1.0}},
    {"one group does not vary",
     {{2, 0}, {1, 1}, {0, 3}},
     {23.0 / 24, 0.49637918744208111, 0.99783303770489085},
     {7.7781745930520228, 4.8, 0.00067555241614680265, 0.9996622237919266, 0.00033777620807340133,
      0.80494219896887836, 1.0}},
    {"groups apart have no variance", {{3, 0}, {0, 4}}, {1.0, 0.53969166719672723, 1.0}},
    {"groups apart, the other way", {{0, 3}, {4, 0}}, {0.0, 0.0, 1.0 - 0.53969166719672723}},
    {"all tie", {{3, 4}}, {0.5, 0.1668643268241947, 0.8331356731758053}},
};

TEST(BrunnerMunzelTest, ThetaHasTheIntervalsAndTheTestOfTheFormulas) {
  for (const ThetaCase& row : kThetas) {
    SCOPED_TRACE(row.catches);
    const Theta theta = ThetaOf(row.runs);
    EXPECT_THAT(theta.estimate, IsCloseTo(row.theta[0]));
    EXPECT_THAT(theta.newcombe.lower, IsCloseTo(row.theta[1], 1e-13));
    EXPECT_THAT(theta.newcombe.upper, IsCloseTo(row.theta[2], 1e-13));
    ASSERT_EQ(theta.brunnerMunzel.has_value(), !row.figures.empty());
    if (!theta.brunnerMunzel) continue;
    const auto& [t, df, sigs, limits] = *theta.brunnerMunzel;
    const double figures[] = {t,           df, sigs.twoSided, sigs.less, sigs.greater, limits.lower,
                              limits.upper};
    for (std::size_t i = 0; i < row.figures.size(); ++i) {
      EXPECT_THAT(figures[i], IsCloseTo(row.figures[i], 1e-13)) << i;
    }
  }
}

TEST(BrunnerMunzelTest, ALevelOfOneHasAllOfThetaAndOneOfZeroTheEstimate) {
  EXPECT_EQ(SuperiorityInterval(0.75, 4, 5, 1.0).lower, 0.0);
  EXPECT_EQ(SuperiorityInterval(0.75, 4, 5, 1.0).upper, 1.0);
  EXPECT_DOUBLE_EQ(SuperiorityInterval(0.75, 4, 5, 0.0).lower, 0.75);
}

}  // namespace
