#pragma once

#include <cmath>

#include "kit/statistics/normal.h"

/// Moments of the sum of the ranks of the positive ones among n differences, none of them 0, that
/// are as likely positive as negative (docs/statistics/wilcoxon_pairs.md). `tieSum` is the sum of
/// t^3 - t over the groups of t differences of equal size; it takes at most a quarter of the
/// variance, so that no digits cancel.
/// F. Wilcoxon, Biometrics Bulletin 1 (1945); E. L. Lehmann, Nonparametrics (1975), 3.2.
struct SignedRankMoments {
  SignedRankMoments(double n, double tieSum) {
    const double product = n * (n + 1.0);
    mean = product * 0.25;
    standardError = std::sqrt((2.0 * n + 1.0) * product / 24.0 - tieSum / 48.0);
  }

  double mean;
  double standardError;
};

/// Wilcoxon's signed-rank test, without continuity correction; z and the significance are not a
/// number without a difference.
[[nodiscard]] inline NormalFigures WilcoxonSignedRank(double positiveRankSum, double n,
                                                      double tieSum) {
  const SignedRankMoments moments(n, tieSum);
  const double z = (positiveRankSum - moments.mean) / moments.standardError;
  return {moments.standardError, z, TwoSidedNormalSig(z)};
}

/// How far the signs agree, from -1 to 1: the rank sums' difference by their sum. The sum of the
/// positive ones is a multiple of 1/2, so that the difference is exact. D. S. Kerby, Comprehensive
/// Psychology 3 (2014).
[[nodiscard]] constexpr double RankBiserial(double positiveRankSum, double n) noexcept {
  const double all = n * (n + 1.0);
  return (4.0 * positiveRankSum - all) / all;
}

/// Signed ranks among all units, those of 0 included, which take the lowest ranks and count on
/// neither side.
struct PrattFigures {
  double statistic = 0.0;
  NormalFigures figures;
};
/// From the sum of the ranks without the zeros, n being the units other than 0, at least 1, and
/// `positives` those above 0 (docs/statistics/wilcoxon_pairs.md). J. W. Pratt, JASA 54 (1959).
[[nodiscard]] inline PrattFigures PrattSignedRank(double positiveRankSum, double positives,
                                                  double n, double zeros, double tieSum) {
  const SignedRankMoments moments(n, 0.0);
  const double deviation = (positiveRankSum - moments.mean) + zeros * (positives - n * 0.5);
  // Sum of (z + 1)^2 to (z + n)^2, as such: a difference of two such sums from 1 on would cancel.
  const double squares = n * (6.0 * zeros * (zeros + n + 1.0) + (n + 1.0) * (2.0 * n + 1.0)) / 6.0;
  const double standardError = std::sqrt(squares * 0.25 - tieSum / 48.0);
  return {positiveRankSum + zeros * positives, StandardizedFigures(deviation, standardError)};
}
