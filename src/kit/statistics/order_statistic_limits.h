#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

/// Limits by order statistics: the values of these ranks among M ascending ones, counted from 1.
struct OrderStatisticLimits {
  std::int64_t lower = 1;
  std::int64_t upper = 1;
  double attainedLevel = 0.0;
};

/// How much a level may be missed by rounding.
inline constexpr double kLevelSlack = 1.0 + 1e-9;

/// The limits for M values and a null distribution on 0..M that is symmetric, `cumulative(j)` being
/// P(T <= j): the narrowest that have the level, or else the outermost values, and nothing where
/// these enclose nothing (docs/statistics/README.md, limits by order statistics). Few values are
/// asked for where the lower rank is near `guess`.
template <typename Cumulative>
[[nodiscard]] std::optional<OrderStatisticLimits> LimitsByOrderStatistics(std::int64_t count,
                                                                          double confidenceLevel,
                                                                          Cumulative cumulative,
                                                                          std::int64_t guess = 1) {
  const double alpha = (1.0 - confidenceLevel) * kLevelSlack;
  const auto hasLevel = [&](std::int64_t rank) { return 2.0 * cumulative(rank - 1) <= alpha; };
  std::int64_t low = 1;
  std::int64_t high = std::max<std::int64_t>(1, count / 2);
  // From the guess in steps that double, then between the last two.
  std::int64_t middle = std::clamp(guess, low, high);
  for (std::int64_t step = 1; low < high; step *= 2) {
    const bool isLow = hasLevel(middle);
    (isLow ? low : high) = isLow ? middle : std::max(low, middle - 1);
    const std::int64_t next = isLow ? middle + step : middle - step;
    if (next <= low || next > high) break;
    middle = next;
  }
  while (low < high) {
    middle = low + (high - low + 1) / 2;
    if (hasLevel(middle)) {
      low = middle;
    } else {
      high = middle - 1;
    }
  }
  const double level = 1.0 - 2.0 * cumulative(low - 1);
  if (!(level > 0.0)) return std::nullopt;
  return OrderStatisticLimits{low, count + 1 - low, level};
}

/// Does any pair of order statistics have the level?
template <typename Cumulative>
[[nodiscard]] bool IsLevelAttainable(double confidenceLevel, Cumulative cumulative) {
  return 2.0 * cumulative(std::int64_t{0}) <= (1.0 - confidenceLevel) * kLevelSlack;
}

/// Limits for the median of n values: the distribution is binomial(n, 1/2). W. R. Thompson, Ann.
/// Math. Stat. 7 (1936).
[[nodiscard]] std::optional<OrderStatisticLimits> MedianLimits(std::int64_t n,
                                                               double confidenceLevel);
