#include "kit/statistics/exact_binomial.h"

#include <cmath>

#include "arithmetic/elementary.h"
#include "kit/statistics/binomial.h"
#include "kit/statistics/saddle_point.h"

namespace {

/// The first count from `low` to `high` for which `isSmall` holds, which it goes on to do; `high` +
/// 1 where there is none.
template <typename IsSmall>
std::int64_t FirstSmall(std::int64_t low, std::int64_t high, IsSmall isSmall) {
  while (low <= high) {
    const std::int64_t middle = low + (high - low) / 2;
    if (isSmall(middle)) {
      high = middle - 1;
    } else {
      low = middle + 1;
    }
  }
  return low;
}

}  // namespace

std::optional<ExactTails> ExactBinomialTails(std::int64_t count, std::int64_t n, double p) {
  if (n < 1 || n > kMostExactTrials) return std::nullopt;
  const auto tails = TailsOfCount(count, n, p);
  if (!tails) return std::nullopt;
  ExactTails exact{tails->lower, tails->upper, 1.0};
  const double expected = static_cast<double>(n) * p;
  if (static_cast<double>(count) == expected) return exact;
  const double limit = LogBinomialPoint(count, n, p) + arithmetic::Log1p(kProbabilitySlack);
  const auto isSmall = [&](std::int64_t k) { return LogBinomialPoint(k, n, p) <= limit; };
  // Beyond the expected count probabilities fall, on either side.
  double far = 0.0;
  if (static_cast<double>(count) < expected) {
    const auto nearest = static_cast<std::int64_t>(std::ceil(expected));
    const std::int64_t first = FirstSmall(nearest, n, isSmall);
    if (first <= n) far = TailsOfCount(first, n, p)->upper;
    exact.twoSided = CutToOne(tails->lower + far);
  } else {
    const std::int64_t nearest = n - static_cast<std::int64_t>(std::floor(expected));
    const std::int64_t first =
        n - FirstSmall(nearest, n, [&](std::int64_t failures) { return isSmall(n - failures); });
    if (first >= 0) far = TailsOfCount(first, n, p)->lower;
    exact.twoSided = CutToOne(far + tails->upper);
  }
  return exact;
}

double CohensH(double share, double p) {
  return 2.0 * arithmetic::Asin(std::sqrt(share)) - 2.0 * arithmetic::Asin(std::sqrt(p));
}
