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
