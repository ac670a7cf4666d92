#pragma once

#include <span>

#include "foundation/double_double.h"
#include "kit/statistics/normal.h"

/// Standardises the Jonckheere-Terpstra statistic of k >= 2 ordered groups of sizes above 0
/// (docs/statistics/jonckheere_terpstra.md). `tiedPairs` and `tiedTriples` are the sums over the
/// groups of t tied values of t (t - 1) and of t^2 (t - 1). z is 0 for a variance of 0, as which
/// counts what rounding left of 0.
/// Differences between the whole and its groups are summed as such: in very unequal groups they
/// would cancel.
/// M. Hollander, D. A. Wolfe, Nonparametric Statistical Methods, 2nd ed. (1999), 6.2.
[[nodiscard]] NormalFigures JonckheereTerpstra(double statistic, const DoubleDouble& tiedPairs,
                                               const DoubleDouble& tiedTriples,
                                               std::span<const double> groupSizes);
