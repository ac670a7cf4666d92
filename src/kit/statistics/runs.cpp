#include "kit/statistics/runs.h"

#include "kit/statistics/combinations.h"

namespace {

/// Orders of n1 and n2 units in exactly q runs.
double OrdersWithRuns(std::int64_t n1, std::int64_t n2, std::int64_t q) {
  const auto stretches = [](std::int64_t n, std::int64_t runs) {
    return Combinations(n - 1, runs - 1);
  };
  const std::int64_t fewer = q / 2;
  const std::int64_t more = q - fewer;
  return stretches(n1, fewer) * stretches(n2, more) + stretches(n1, more) * stretches(n2, fewer);
}

}  // namespace

double RunsLowerTail(std::int64_t n1, std::int64_t n2, std::int64_t r) {
  double orders = 0.0;
  for (std::int64_t q = 2; q <= r; ++q) orders += OrdersWithRuns(n1, n2, q);
  return orders / Combinations(n1 + n2, n1);
}
