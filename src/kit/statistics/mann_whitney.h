#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "foundation/double_double.h"
#include "kit/statistics/normal.h"

/// U of two groups of n1 and n2 units (docs/statistics/mann_whitney.md): the pairs in which the
/// unit of the second group is the larger one, equal ones a half. `rankSum1` is the sum of the
/// first group's mid-ranks.
[[nodiscard]] inline double MannWhitneyU(double n1, double n2, double rankSum1) {
  return (n1 + 1.0) * n1 * 0.5 + n1 * n2 - rankSum1;
}

/// N^3 - N - T, T being the sum of t^3 - t over the groups of t tied ones among N values: little is
/// left of either where nearly all values tie.
[[nodiscard]] inline double UntiedSum(double n, const DoubleDouble& tieSum) {
  return (DoubleDouble::Product(n, n) * n - n - tieSum).high;
}

/// Variance of U for n1 and n2 of at least 1; `tieSum` is the sum of t^3 - t over the groups of t
/// tied values. 0 where all values tie. E. L. Lehmann, Nonparametrics (1975), 1.4.
[[nodiscard]] inline double MannWhitneyVariance(double n1, double n2, const DoubleDouble& tieSum) {
  const double n = n1 + n2;
  return UntiedSum(n, tieSum) / 12.0 * (n1 * n2 / ((n - 1.0) * n));
}

/// U beside its mean, without continuity correction; z is 0 where all values tie. H. B. Mann, D. R.
/// Whitney, Ann. Math. Stat. 18 (1947).
[[nodiscard]] inline NormalFigures MannWhitneyApproximation(double u, double n1, double n2,
                                                            const DoubleDouble& tieSum) {
  return StandardizedFigures(u - n1 * n2 * 0.5, std::sqrt(MannWhitneyVariance(n1, n2, tieSum)));
}

/// Null distribution of the Mann-Whitney statistic U of two groups of `a` and `b` untied values:
/// element u is the number of arrangements with U = u, from 0 to a b. Empty for a group below 1.
/// Throws std::bad_alloc.
///
/// L. C. Dinneen, B. C. Blakesley, algorithm AS 62, Applied Statistics 22 (1973). Doubles
/// hold every frequency exactly up to C(a + b, a) = 2^53, and to rounding beyond.
[[nodiscard]] std::vector<double> MannWhitneyFrequencies(std::int64_t a, std::int64_t b);

/// Two-sided exact significance of U by the distribution without ties. A U between two integers,
/// from tied values, is compared with the integers beyond it in either tail. Not a number for a
/// group below 1.
[[nodiscard]] double ExactMannWhitneyP(std::int64_t a, std::int64_t b, double u);
/// Is the test decided by that significance? The distribution costs memory and time in proportion
/// to n1 n2.
[[nodiscard]] inline bool ExactMannWhitneyDecides(double n1, double n2) {
  constexpr double kMostPairs = 400.0;
  constexpr double kMostHalfPairsAndUnits = 220.0;
  const double pairs = n1 * n2;
  return pairs <= kMostPairs && pairs * 0.5 + std::min(n1, n2) <= kMostHalfPairsAndUnits;
}
