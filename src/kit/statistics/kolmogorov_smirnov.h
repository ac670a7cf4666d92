#pragma once

#include <cmath>

#include "foundation/names.h"

/// z of two groups of n1 and n2 units whose distribution functions are at most `difference` apart.
[[nodiscard]] inline double SmirnovStatistic(double n1, double n2, double difference) {
  return std::sqrt(n1 * n2 / (n1 + n2)) * difference;
}

/// Upper tail of Kolmogorov's limiting distribution at z, in the bands of
/// docs/statistics/ks_one_sample.md; 0 for a z below 0 or not a number. False, and `sig` unchanged,
/// where the exponential fails.
/// N. V. Smirnov, Ann. Math. Stat. 19 (1948).
[[nodiscard]] bool KolmogorovSmirnovSig(double z, double& sig);

/// The same tail without bands, to the accuracy of a double: 1 for a z of 0, not a number for
/// one below or not a number.
[[nodiscard]] double LimitingKolmogorovSig(double z);
