#pragma once

#include <cstdint>
#include <span>

#include "kit/statistics/chi_square.h"

/// Cochran's Q of k >= 2 fields with these successes, with k - 1 degrees of freedom
/// (docs/statistics/cochran_q.md). `withinRecords` is the sum of R (k - R) over the records, R
/// being a record's successes; where it is 0, so is Q.
/// W. G. Cochran, Biometrika 37 (1950).
[[nodiscard]] ChiSquareFigures CochranQ(std::span<const std::int64_t> successes,
                                        double withinRecords);

/// Standard error of the difference of two fields' proportions of successes in n > 0 records, on
/// the same page. L. A. Marascuilo, M. McSweeney, Psychological Bulletin 67 (1967).
[[nodiscard]] double CochranPairStandardError(double withinRecords, double n, double k);

/// How much of the largest Q there can be k fields reach, from 0 to 1. R. C. Serlin, J. Carr, L. A.
/// Marascuilo, Psychological Bulletin 92 (1982).
[[nodiscard]] constexpr double EtaSquaredQ(double q, double n, double k) noexcept {
  return q / (n * (k - 1.0));
}
