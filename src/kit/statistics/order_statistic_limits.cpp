#include "kit/statistics/order_statistic_limits.h"

#include <cmath>
#include <cstddef>
#include <vector>

#include "foundation/names.h"
#include "kit/statistics/exact_tails.h"

namespace {

/// Up to here 2^-n is a double, and sums are quicker than tails.
constexpr std::int64_t kMostSummed = 1000;

/// P(B <= j) of B binomial(n, 1/2), for j up to n / 2.
std::vector<double> CumulativeHalves(std::int64_t n) {
  double term = std::ldexp(1.0, -static_cast<int>(n));
  double sum = term;
  std::vector<double> cumulative{CutToOne(sum)};
  for (std::int64_t j = 1; j <= n / 2; ++j) {
    term = term * static_cast<double>(n - j + 1) / static_cast<double>(j);
    sum += term;
    cumulative.push_back(CutToOne(sum));
  }
  return cumulative;
}

}  // namespace

std::optional<OrderStatisticLimits> MedianLimits(std::int64_t n, double confidenceLevel) {
  constexpr double kHalf = 0.5;
  if (n <= kMostSummed) {
    const std::vector<double> cumulative = CumulativeHalves(n);
    return LimitsByOrderStatistics(n, confidenceLevel, [&cumulative](std::int64_t j) {
      return cumulative[static_cast<std::size_t>(j)];
    });
  }
  const double size = static_cast<double>(n);
  const double reach = QDDistFun::IdfStdNorm(1.0 - (1.0 - confidenceLevel) * kHalf) * kHalf;
  const double guess = std::fmax(1.0, (size + 1.0) * kHalf - reach * std::sqrt(size));
  const auto cumulative = [n](std::int64_t j) {
    std::int32_t error = 0;
    return QDDistFun::CdfBin(static_cast<double>(j), static_cast<double>(n), kHalf, error);
  };
  return LimitsByOrderStatistics(n, confidenceLevel, cumulative, TruncateToInt64(guess));
}
