#pragma once

#include <span>

#include "kit/statistics/normal.h"

/// The Jonckheere-Terpstra statistic J of k >= 2 ordered groups of n_j > 0 values: the pairs in
/// which the value of the later group is the larger one, equal ones a half. With e and f the sums
/// of t (t - 1) and t^2 (t - 1) over the groups of t tied values and N >= 3 the sum of n_j,
///   mean = (N^2 - sum n_j^2) / 4
///   variance = (N (N - 1)(2N + 5) - sum n_j (n_j - 1)(2 n_j + 5) - (2f + 5e)) / 72
///            + sum n_j (n_j - 1)(n_j - 2) (f - 2e) / (36 N (N - 1)(N - 2))
///            + sum n_j (n_j - 1) e / (8 N (N - 1))
/// A variance within 1e-12 of the sum of its terms' magnitudes is what their rounding left of 0,
/// and z then is 0. N = 2 has the variance of the Mann-Whitney statistic. Differences between the
/// whole and its groups are summed as such: in very unequal groups they would cancel. Source: A. R.
/// Jonckheere, Biometrika 41 (1954); M. Hollander, D. A. Wolfe, Nonparametric Statistical Methods,
/// 2nd ed. (1999), 6.19.
[[nodiscard]] NormalFigures JonckheereTerpstra(double statistic, double tiedPairs,
                                               double tiedTriples,
                                               std::span<const double> groupSizes);
