#pragma once

#include <optional>
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

/// What H, with ties corrected, of k groups of n units in all tells beside its significance
/// (docs/statistics/kruskal_wallis.md). What a sample is too small for is left out.
struct KruskalWallisEffects {
  /// The analysis of variance of the ranks.
  struct Conover {
    double f = 0.0;
    double df1 = 0.0;
    double df2 = 0.0;
    double sig = 1.0;  ///< upper tail
  };
  double epsilonSquared = 0.0;
  std::optional<double> etaSquared;  ///< below 0 for a small H
  std::optional<Conover> conover;  ///< nothing where H is within 1e-12 of the largest there can be
};
/// Not all n values tie. M. Tomczak, E. Tomczak, Trends in Sport Sciences 21 (2014); W. J. Conover,
/// R. L. Iman, The American Statistician 35 (1981).
[[nodiscard]] KruskalWallisEffects EffectsOf(double h, double k, double n);
