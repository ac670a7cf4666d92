#include "kit/statistics/order_statistic_limits.h"

#include "foundation/names.h"

std::optional<OrderStatisticLimits> MedianLimits(std::int64_t n, double confidenceLevel) {
  constexpr double kHalf = 0.5;
  return LimitsByOrderStatistics(n, confidenceLevel, [n](std::int64_t j) {
    std::int32_t error = 0;
    return QDDistFun::CdfBin(static_cast<double>(j), static_cast<double>(n), kHalf, error);
  });
}
