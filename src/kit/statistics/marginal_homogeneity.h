#pragma once

#include <cstdint>
#include <span>

#include "kit/statistics/normal.h"

struct MarginalHomogeneity {
  double statistic = 0.0;  ///< T
  NormalFigures figures;
};
/// Do two fields with the same ordered categories have the same distribution? n_ij is the element
/// i c + j of the c x c table of pairs, s_i the scores; pairs of equal categories play no part:
///   T = sum n_ij s_i,  E = sum n_ij (s_i + s_j) / 2,  V = sum n_ij ((s_i - s_j) / 2)^2
///   z = (T - E) / sqrt(V), 0 for V = 0
/// T - E is summed as such, since large scores that differ little would cancel in it.
/// Source: A. Agresti, Categorical Data Analysis (1990), 10.3; A. Stuart, Biometrika 42 (1955).
[[nodiscard]] MarginalHomogeneity TestMarginalHomogeneity(std::span<const double> scores,
                                                          std::span<const std::int64_t> table);
