#include "kit/ranks/walsh_interval.h"

#include "kit/statistics/order_statistic_limits.h"

std::optional<WalshInterval> FindWalshInterval(const WeightedValues& values,
                                               const SignFlipDistribution& ranks,
                                               double confidenceLevel) {
  const auto limits = LimitsByOrderStatistics(
      ranks.Largest(), confidenceLevel, [&ranks](std::int64_t count) { return ranks.UpTo(count); });
  if (!limits) return std::nullopt;
  const WalshAverages averages(values);
  return WalshInterval{averages.Select(limits->lower), averages.Select(limits->upper),
                       limits->attainedLevel};
}
