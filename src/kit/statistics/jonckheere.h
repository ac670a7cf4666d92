#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "foundation/double_double.h"
#include "kit/statistics/exact_tails.h"
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

/// The significance of a z of some of the groups, one-sided in the direction of the z of them all.
[[nodiscard]] double JonckheereSigToward(double overallZ, double z);

/// The exact distribution of J is formed up to this number of pairs of units of different groups.
inline constexpr std::int64_t kMostJonckheerePairs = 10000;

/// Exact significances of the statistic of ordered groups of these sizes above 0, all their values
/// being different, with at most kMostJonckheerePairs pairs: J is a sum of independent Mann-Whitney
/// statistics, of each group against all before it. Relative error below 1e-12. Throws
/// std::bad_alloc. R. E. Odeh, Technometrics 13 (1971); Hollander and Wolfe, 6.2.
[[nodiscard]] ExactTails JonckheereExact(std::int64_t statistic,
                                         std::span<const std::int64_t> groupSizes);

/// How strongly values rise along the ordered groups, -1 to 1.
struct OrderedAssociation {
  double somersD = 0.0;                ///< of the values given the groups
  std::optional<double> kendallsTauB;  ///< nothing where all values tie
};
/// Of a statistic of J among `pairs` pairs of units of different groups, n units in all;
/// `tiedPairs` as above. M. G. Kendall, Rank Correlation Methods; R. H. Somers, Amer. Sociol. Rev.
/// 27 (1962).
[[nodiscard]] OrderedAssociation AssociationOf(double statistic, double pairs, double n,
                                               const DoubleDouble& tiedPairs);
