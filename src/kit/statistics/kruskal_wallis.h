#pragma once

#include <span>

#include "kit/statistics/chi_square.h"

/// A group of values that were ranked with those of others, ties sharing the mean of their ranks.
struct RankedGroup {
  double rankSum;  ///< R_j
  double size;     ///< n_j, above 0
};

/// H of k >= 2 groups with k - 1 degrees of freedom. N is the sum of n_j; `tieSum` is T, the sum of
/// t^3 - t over the groups of t tied values:
///   H = 12 / (N (N + 1)) sum (R_j - n_j (N + 1) / 2)^2 / n_j / (1 - T / (N^3 - N))
/// about the known mean rank, since 12 / (N (N + 1)) sum R_j^2 / n_j - 3 (N + 1) cancels half of
/// the digits in large samples. 0 where all values tie.
/// Source: W. H. Kruskal, W. A. Wallis, JASA 47 (1952).
[[nodiscard]] ChiSquareFigures KruskalWallis(std::span<const RankedGroup> groups, double tieSum);

/// Standard error of the difference of the mean ranks of groups of n1 and n2 among N ranked values,
///   s^2 = (1 / n1 + 1 / n2) (N (N + 1) / 12 - T / (12 (N - 1)))
/// Source: O. J. Dunn, Technometrics 6 (1964).
[[nodiscard]] double DunnStandardError(double n1, double n2, double n, double tieSum);
