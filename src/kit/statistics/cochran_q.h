#pragma once

#include <cstdint>
#include <span>

#include "kit/statistics/chi_square.h"

/// Cochran's Q of k >= 2 fields with the successes C_j, with k - 1 degrees of freedom.
/// `withinRecords` is the sum of r (k - r) over the records, r being a record's successes:
///   Q = k (k - 1) sum (C_j - C / k)^2 / sum r (k - r),  C = sum C_j
/// 0 where no record has both successes and failures.
/// Source: W. G. Cochran, Biometrika 37 (1950).
[[nodiscard]] ChiSquareFigures CochranQ(std::span<const std::int64_t> successes,
                                        double withinRecords);

/// Standard error of the difference of two fields' shares of successes in n records,
///   sqrt(2 sum r (k - r) / (n^2 k (k - 1)))
/// Source: L. A. Marascuilo, M. McSweeney, Psychological Bulletin 67 (1967).
[[nodiscard]] double CochranPairStandardError(double withinRecords, double n, double k);
