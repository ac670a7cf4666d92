#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "kit/statistics/exact_tails.h"
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

/// The same with exact significances, given how many records change between which two categories.
/// "Less" means a second field of lower scores. Scores are brought to whole numbers: times 1, 10,
/// 100 or 1000, the first that does it to 1e-9.
/// Nothing for no unit that changes or more than 1000, scores that are no such numbers, and where
/// the units times the sum of their changes of score pass 2e8. Throws std::bad_alloc.
[[nodiscard]] std::optional<ExactTails> ExactMarginalHomogeneity(
    std::span<const double> scores, std::span<const std::int64_t> table);
