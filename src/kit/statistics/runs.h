#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

#include "kit/statistics/exact_tails.h"
#include "kit/statistics/normal.h"

/// Normal approximation of the number of runs of two kinds of units, of which there are n1 and n2,
/// at least 1 each, in random order (docs/statistics/runs.md, docs/statistics/wald_wolfowitz.md).
///
/// A. Wald, J. Wolfowitz, Ann. Math. Stat. 11 (1940); correction as in J. V. Bradley,
/// Distribution-Free Statistical Tests (1968).
struct RunsApproximation {
  /// The smallest N without continuity correction.
  static constexpr double kUncorrectedFrom = 50.0;

  RunsApproximation() = default;
  RunsApproximation(double n1, double n2) : total(n1 + n2) {
    const double t = 2.0 * n1 * n2;
    mean = t / total + 1.0;
    standardError = std::sqrt((t - total) * t / (total * total * (total - 1.0)));
  }

  /// The correction moves a number of runs by 1/2 toward the mean and never past it. z is 0 where
  /// only one number of runs is possible.
  [[nodiscard]] NormalFigures FiguresOf(std::int64_t runs) const {
    const double deviation = static_cast<double>(runs) - mean;
    return StandardizedFigures(
        total < kUncorrectedFrom ? CorrectedForContinuity(deviation) : deviation, standardError);
  }

  double total = 0.0;
  double mean = 0.0;
  double standardError = 0.0;
};

/// P(R <= r) of the number of runs R of n1 and n2 units, at least 1 each, in random order
/// (docs/statistics/wald_wolfowitz.md). Exact to rounding for n1 + n2 up to 51; beyond, binomial
/// coefficients are rounded, and past 1000 or so they overflow and give not a number. J. D.
/// Gibbons, S. Chakraborti, Nonparametric Statistical Inference, 3.2.
[[nodiscard]] double RunsLowerTail(std::int64_t n1, std::int64_t n2, std::int64_t r);

/// Tails of the same R at any size up to kMostExactRunsUnits units, nothing beyond or for a group
/// without units. Two-sided is P(|R - mean| >= |r - mean|).
inline constexpr std::int64_t kMostExactRunsUnits = 100000;
[[nodiscard]] std::optional<ExactTails> ExactRunsTails(std::int64_t n1, std::int64_t n2,
                                                       std::int64_t r);
