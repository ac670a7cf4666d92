#pragma once

#include <cmath>

/// Standard error of the Mann-Whitney statistic U of groups of n1 and n2 units, corrected for ties:
/// `tieSum` is the sum of t^3 - t over the groups of tied values. 0 where all values are tied.
/// n1 and n2 are at least 1. E. L. Lehmann, Nonparametrics (1975), 1.4.
[[nodiscard]] inline double MannWhitneyStandardError(double n1, double n2, double tieSum) {
  const double n = n1 + n2;
  const double variance = (n * n * n - n - tieSum) / 12.0;
  return std::sqrt(variance * (n1 * n2 / ((n - 1.0) * n)));
}
