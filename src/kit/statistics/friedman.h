#pragma once

#include <span>

#include "foundation/double_double.h"
#include "kit/statistics/chi_square.h"

/// Friedman's statistic of k >= 2 fields that n > 0 records rank, each its own k values, with k - 1
/// degrees of freedom (docs/statistics/friedman.md). `rankSums` are the R_j; `tieSum` is the sum of
/// t^3 - t over the groups of t tied values of every record, 0 for no correction. 0 where every
/// record is one tie.
/// Summed about the known mean, since the sum of R_j^2 less its expectation would cancel most
/// digits.
/// M. Friedman, JASA 32 (1937).
[[nodiscard]] ChiSquareFigures Friedman(std::span<const double> rankSums, double n,
                                        const DoubleDouble& tieSum);

/// Standard error of the difference of two fields' mean ranks, on the same page.
[[nodiscard]] double FriedmanPairStandardError(double k, double n);

/// Kendall's coefficient of concordance from Friedman's statistic (docs/statistics/kendall_w.md).
/// M. G. Kendall, B. Babington Smith, Ann. Math. Stat. 10 (1939).
[[nodiscard]] constexpr double KendallsW(double chiSquare, double n, double k) {
  return chiSquare / ((k - 1.0) * n);
}
