#include "kit/statistics/cochran_q.h"

#include <cmath>
#include <numeric>

ChiSquareFigures CochranQ(std::span<const std::int64_t> successes, double withinRecords) {
  if (withinRecords == 0.0) return ChiSquareOf(0.0, successes.size());
  const auto count = static_cast<std::int64_t>(successes.size());
  const auto k = static_cast<double>(count);
  const std::int64_t sum = std::accumulate(successes.begin(), successes.end(), std::int64_t{0});
  const std::int64_t wholeMean = sum / count;
  double squares = 0.0;
  for (const std::int64_t c : successes) {
    // k T_j - A, exact, and no product of counts that might wrap.
    const double deviation =
        k * static_cast<double>(c - wholeMean) - static_cast<double>(sum % count);
    squares += deviation * deviation;
  }
  return ChiSquareOf(squares / k * (k - 1.0) / withinRecords, successes.size());
}

double CochranPairStandardError(double withinRecords, double n, double k) {
  return std::sqrt(withinRecords * 2.0 / (n * n * (k - 1.0) * k));
}
