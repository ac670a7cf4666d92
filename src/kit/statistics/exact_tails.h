#pragma once

#include <algorithm>
#include <limits>

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

/// The number, or 0 for one so small that it has lost digits: products of such are slow, and can
/// stay where they are for ever.
[[nodiscard]] constexpr double NormalOrNone(double positive) noexcept {
  return positive < std::numeric_limits<double>::min() ? 0.0 : positive;
}

/// Probabilities no further apart than this count as equal where outcomes are ordered by them.
inline constexpr double kProbabilitySlack = 1e-7;
