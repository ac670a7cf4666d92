#pragma once

#include <cstdint>
#include <span>

#include "kit/statistics/normal.h"

struct MarginalHomogeneity {
  double statistic = 0.0;  ///< T
  NormalFigures figures;
};
/// Do two fields with the same c ordered categories have the same distribution
/// (docs/statistics/marginal_homogeneity.md)? Element i c + j of the table is the weight of the
/// pairs of categories i and j. z is 0 where all pairs are of equal categories or scores.
/// T - E is summed as such, since large scores that differ little would cancel in it.
/// A. Agresti, Categorical Data Analysis (1990), 10.3; A. Stuart, Biometrika 42 (1955).
[[nodiscard]] MarginalHomogeneity TestMarginalHomogeneity(std::span<const double> scores,
                                                          std::span<const std::int64_t> table);
