#pragma once

#include <span>

#include "kit/statistics/chi_square.h"

/// Friedman's statistic of k >= 2 fields that n > 0 records rank, each its own k values, with k - 1
/// degrees of freedom. R_j are the sums of the ranks of a field over the records; `tieSum` is T,
/// the sum of t^3 - t over the groups of t tied values of every record, 0 for no correction:
///   X = 12 sum (R_j - n (k + 1) / 2)^2 / (n k (k + 1)) / (1 - T / (n k (k^2 - 1)))
/// about the known mean, since sum R_j^2 less its expectation would cancel most digits. 0 where
/// every record is one tie.
/// Source: M. Friedman, JASA 32 (1937); ties as in M. Hollander, D. A. Wolfe, Nonparametric
/// Statistical Methods, 2nd ed. (1999), 7.1.
[[nodiscard]] ChiSquareFigures Friedman(std::span<const double> rankSums, double n, double tieSum);

/// Standard error of the difference of two fields' mean ranks, sqrt(k (k + 1) / (6 n)).
[[nodiscard]] double FriedmanPairStandardError(double k, double n);

/// Kendall's coefficient of concordance from Friedman's statistic X: 1 where all n records agree in
/// the order of the k fields, 0 for no agreement. M. G. Kendall, B. Babington Smith, Ann. Math.
/// Stat. 10 (1939).
[[nodiscard]] constexpr double KendallsW(double chiSquare, double n, double k) {
  return chiSquare / ((k - 1.0) * n);
}
