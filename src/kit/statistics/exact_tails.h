#pragma once

#include <algorithm>

/// What the exact distribution of a statistic says of an observed value t, which all but the point
/// include.
struct ExactTails {
  double less = 1.0;      ///< P(T <= t)
  double greater = 1.0;   ///< P(T >= t)
  double twoSided = 1.0;  ///< of outcomes as far from the expected one, or as improbable
};

/// A sum of probabilities, which rounding may have taken past 1.
[[nodiscard]] constexpr double CutToOne(double probability) noexcept {
  return std::min(probability, 1.0);
}
