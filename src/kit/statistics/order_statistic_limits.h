#pragma once

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
/// these enclose nothing (docs/statistics/README.md, limits by order statistics).
template <typename Cumulative>
[[nodiscard]] std::optional<OrderStatisticLimits> LimitsByOrderStatistics(std::int64_t count,
                                                                          double confidenceLevel,
                                                                          Cumulative cumulative) {
  const double alpha = (1.0 - confidenceLevel) * kLevelSlack;
  std::int64_t low = 1;
  std::int64_t high = count / 2;
  while (low < high) {
    const std::int64_t middle = low + (high - low + 1) / 2;
    if (2.0 * cumulative(middle - 1) <= alpha) {
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
