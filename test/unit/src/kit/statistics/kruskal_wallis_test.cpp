#include "kit/statistics/kruskal_wallis.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

#include "kit/ranks/ties.h"
#include "support/matchers.h"

namespace {

struct KruskalWallisCase {
  const char* catches;
  std::vector<RankedGroup> groups;
  DoubleDouble tieSum;
  double h, sig;
};

// Python's fractions and mpmath 1.4.1, from the formula; the first is SciPy 1.17.1's kruskal([1, 2,
// 2, 3, 5], [3, 5, 6, 6, 7, 9], [8, 10, 11, 12]) but for its correction.
const KruskalWallisCase kCases[] = {
    {"no ties", {{16.5, 5}, {51.5, 6}, {52, 4}}, 0, 10.6245833333333333, 0.00493061443589211142},
    {"ties", {{5, 2}, {10, 3}}, 6, 0.35087719298245614, 0.553616991965780381},
    {"equal mean ranks", {{9, 3}, {6, 2}}, 0, 0.0, 1.0},
    {"all tied", {{9, 3}, {6, 2}}, 120, 0.0, 1.0},
    // 12 sum R^2 / n / (N (N + 1)) - 3 (N + 1) keeps 8 digits of it.
    {"a hundred million values",
     {{1249700012500000, 25e6}, {1250100012500000, 25e6}, {2500200025000000, 50e6}},
     0,
     5.75999994240000058,
     0.0561347644508148982},
    // N^3 - N - T is 3 (N - 1) N, 16 digits below N^3.
    {"all but one tied",
     {{1e16, 1e8}, {1e16 + 1e8, 1e8}},
     TieTerm(199999999),
     1.0,
     0.317310507862914},
};

TEST(KruskalWallisStatisticTest, FiguresAgreeWithTheFormula) {
  for (const KruskalWallisCase& row : kCases) {
    SCOPED_TRACE(row.catches);
    const ChiSquareFigures figures = KruskalWallis(row.groups, row.tieSum);
    EXPECT_THAT(figures.statistic, IsCloseTo(row.h));
    EXPECT_THAT(figures.sig, IsCloseTo(row.sig, 1e-13));
  }
}

// sqrt((1 / 5 + 1 / 6) 20), sqrt((1 / 5 + 1 / 4)(20 - 66 / 168)), sqrt((1 / 2 + 1 / 3) 2), and
// sqrt((2 / n) (2 n) / 4) where all but one of 2 n values tie
TEST(KruskalWallisStatisticTest, DunnsStandardErrorIsCorrectedForTies) {
  EXPECT_THAT(DunnStandardError(5, 6, 15, 0), IsCloseTo(2.70801280154532012));
  EXPECT_THAT(DunnStandardError(4, 5, 15, 66), IsCloseTo(2.97038958483803698));
  EXPECT_THAT(DunnStandardError(2, 3, 5, 24), IsCloseTo(1.29099444873580563));
  EXPECT_THAT(DunnStandardError(1e8, 1e8, 2e8, TieTerm(199999999)), IsCloseTo(1.0));
}

struct EffectsCase {
  const char* catches;
  double h, k, n;
  double epsilonSquared;
  std::optional<double> etaSquared, f, sig;
};

// By hand; F and its tail of the first are SciPy 1.17.1's f_oneway of the mid-ranks of [1, 4, 2],
// [3, 3, 6, 5], [5, 7, 8], of which kruskal gives H.
const EffectsCase kEffects[] = {
    {"ranks of three groups", 5.648006134969323, 3, 10, 5.648006134969323 / 9,
     3.648006134969323 / 7, 5.897391901166779, 0.031529165035705374},
    {"a small H", 0.5, 3, 10, 0.5 / 9, -1.5 / 7, 0.25 / (8.5 / 7), 0.8186861756794399},
    {"as many groups as units", 3, 4, 4, 1.0, std::nullopt, std::nullopt, std::nullopt},
    {"nothing within the groups", 9, 3, 10, 1.0, 1.0, std::nullopt, std::nullopt},
    {"hardly anything", 9 - 1e-10, 3, 10, 1.0, 1.0, 3.15e11, 0.0},
};

TEST(KruskalWallisStatisticTest, EffectsStandOnH) {
  for (const EffectsCase& row : kEffects) {
    SCOPED_TRACE(row.catches);
    const KruskalWallisEffects effects = EffectsOf(row.h, row.k, row.n);
    EXPECT_THAT(effects.epsilonSquared, IsCloseTo(row.epsilonSquared, 1e-10));
    EXPECT_THAT(effects.etaSquared, IsCloseTo(row.etaSquared, 1e-10));
    ASSERT_EQ(effects.conover.has_value(), row.f.has_value());
    if (!effects.conover) continue;
    EXPECT_THAT(effects.conover->f, IsCloseTo(row.f, 1e-6));
    EXPECT_EQ(effects.conover->df1, row.k - 1);
    EXPECT_EQ(effects.conover->df2, row.n - row.k);
    EXPECT_NEAR(effects.conover->sig, *row.sig, 1e-13);
  }
}

}  // namespace
