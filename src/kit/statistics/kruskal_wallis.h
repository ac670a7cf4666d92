#pragma once

#include <span>

#include "foundation/double_double.h"
#include "kit/statistics/chi_square.h"

/// A group of values that were ranked with those of others, ties sharing the mean of their ranks.
struct RankedGroup {
  double rankSum;  ///< R_j
  double size;     ///< n_j, above 0
};

/// H of k >= 2 groups with k - 1 degrees of freedom (docs/statistics/kruskal_wallis.md). `tieSum`
/// is the sum of t^3 - t over the groups of t tied values. 0 where all values tie.
/// Summed about the known mean rank: the form without it cancels half of the digits in large
/// samples.
/// W. H. Kruskal, W. A. Wallis, JASA 47 (1952).
[[nodiscard]] ChiSquareFigures KruskalWallis(std::span<const RankedGroup> groups,
                                             const DoubleDouble& tieSum);

/// Standard error of the difference of the mean ranks of groups of n1 and n2 among n ranked values,
/// on the same page. O. J. Dunn, Technometrics 6 (1964).
[[nodiscard]] double DunnStandardError(double n1, double n2, double n, const DoubleDouble& tieSum);
