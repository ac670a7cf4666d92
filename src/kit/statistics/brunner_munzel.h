#pragma once

#include <array>
#include <optional>

#include "kit/statistics/exact_tails.h"
#include "kit/statistics/proportion_interval.h"

/// Brunner and Munzel's test of theta = 1/2 (docs/statistics/mann_whitney.md).
struct BrunnerMunzelFigures {
  double statistic = 0.0;
  double degreeOfFreedom = 0.0;
  ExactTails sigs;              ///< of the t distribution
  ProportionInterval interval;  ///< of theta
};

/// Of groups of `sizes` units, at least 2 each, with the estimate 1/2 + `excess` of theta.
/// `scatter` is each group's sum of the squared deviations of its doubled placements from their
/// mean; nothing where both are 0. E. Brunner, U. Munzel, Biometrical Journal 42 (2000).
[[nodiscard]] std::optional<BrunnerMunzelFigures> BrunnerMunzel(
    double excess, const std::array<double, 2>& sizes, const std::array<double, 2>& scatter,
    double confidenceLevel);
