#include "kit/statistics/runs.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <vector>

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

/// How many orders have r runs, by r, all to one scale that lets the rarest fall to 0. With i
/// stretches of either kind there are a(i) = C(n1 - 1, i - 1) C(n2 - 1, i - 1) orders of each
/// beginning, and a(i) (n - 2 i) / i with one stretch more of either.
std::vector<double> OrdersByRuns(std::int64_t n1, std::int64_t n2) {
  constexpr double kTop = 1e280;  // of the most frequent: sums stay finite, and rare ones normal
  const std::int64_t most = std::min(n1, n2);
  std::vector<double> orders(static_cast<std::size_t>(2 * most + 2), 0.0);
  const auto put = [&](std::int64_t i, double a) {
    const auto place = static_cast<std::size_t>(2 * i);
    orders[place] = 2.0 * a;
    orders[place + 1] = a * static_cast<double>(n1 + n2 - 2 * i) / static_cast<double>(i);
  };
  // a(i + 1) / a(i)
  const auto ratio = [&](std::int64_t i) {
    return static_cast<double>((n1 - i) * (n2 - i)) / static_cast<double>(i * i);
  };
  const std::int64_t mode = n1 * n2 / (n1 + n2) + 1;
  double a = kTop;
  for (std::int64_t i = mode; i <= most; ++i) {
    put(i, a);
    a = NormalOrNone(a * ratio(i));
  }
  a = kTop;
  for (std::int64_t i = mode - 1; i >= 1; --i) {
    a = NormalOrNone(a / ratio(i));
    put(i, a);
  }
  return orders;
}

/// Of the numbers of runs that `isCounted(r)` tells, each half of them from its far end.
template <typename IsCounted>
double SumOfOrders(const std::vector<double>& orders, std::size_t middle, IsCounted isCounted) {
  double low = 0.0;
  double high = 0.0;
  for (std::size_t r = 2; r < middle; ++r) low += isCounted(r) ? orders[r] : 0.0;
  for (std::size_t r = orders.size() - 1; r >= middle; --r) high += isCounted(r) ? orders[r] : 0.0;
  return low + high;
}

}  // namespace

double RunsLowerTail(std::int64_t n1, std::int64_t n2, std::int64_t r) {
  double orders = 0.0;
  for (std::int64_t q = 2; q <= r; ++q) orders += OrdersWithRuns(n1, n2, q);
  return orders / Combinations(n1 + n2, n1);
}

std::optional<ExactTails> ExactRunsTails(std::int64_t n1, std::int64_t n2, std::int64_t r) {
  const std::int64_t n = n1 + n2;
  if (n1 < 1 || n2 < 1 || n > kMostExactRunsUnits) return std::nullopt;
  const std::vector<double> orders = OrdersByRuns(n1, n2);
  const std::int64_t timesMean = 2 * n1 * n2 + n;
  const auto distance = [&](std::int64_t runs) { return std::abs(n * runs - timesMean); };
  const auto share = [&, middle = static_cast<std::size_t>(timesMean / n)](auto isCounted) {
    return SumOfOrders(orders, middle, [&](std::size_t runs) {
      return isCounted(static_cast<std::int64_t>(runs));
    });
  };
  const double all = share([](std::int64_t) { return true; });
  return ExactTails{share([r](std::int64_t runs) { return runs <= r; }) / all,
                    share([r](std::int64_t runs) { return runs >= r; }) / all,
                    share([&](std::int64_t runs) { return distance(runs) >= distance(r); }) / all};
}
