#include "tests/independent/jonckheere_statistic.h"

#include <algorithm>
#include <cmath>

namespace {

/// A variance this small beside its terms is what their rounding left of 0.
constexpr double kVarianceTolerance = 1e-12;

/// M. Hollander and D. A. Wolfe, Nonparametric Statistical Methods, 2nd edition (1999), 6.19.
double VarianceOf(const JonckheereSums& sums, const std::vector<double>& sizes, double n) {
  double pairs = 0.0;
  double triples = 0.0;
  double cubes = 0.0;
  for (const double size : sizes) {
    pairs += size * (size - 1.0);
    triples += (size - 2.0) * size * (size - 1.0);
    cubes += (2.0 * size + 5.0) * size * (size - 1.0);
  }
  const double e = sums.ties.pairs;
  const double f = sums.ties.triples;
  const double all = (2.0 * n + 5.0) * (n - 1.0) * n;
  const double p = (f - 2.0 * e) * triples / (36.0 * n * (n - 1.0) * (n - 2.0));
  const double q = (all - cubes - 2.0 * f - 5.0 * e) / 72.0;
  const double s = pairs * e / (8.0 * n * (n - 1.0));
  const double magnitude =
      std::fabs(p) + (all + std::fabs(cubes) + 2.0 * f + 5.0 * e) / 72.0 + std::fabs(s);
  const double variance = p + q + s;
  return std::fabs(variance) <= kVarianceTolerance * magnitude ? 0.0 : variance;
}

}  // namespace

JonckheereFigures StandardizeJonckheere(const JonckheereSums& sums,
                                        const std::vector<double>& groupSizes) {
  double n = 0.0;
  double squares = 0.0;
  for (const double size : groupSizes) {
    n += size;
    squares += size * size;
  }
  double variance = 0.0;
  if (n >= 3.0) {
    variance = VarianceOf(sums, groupSizes, n);
  } else {
    // One value in each of two groups.
    const double product = groupSizes[0] * groupSizes[1];
    variance = (n * n * n - n - sums.ties.Cubic()) / 12.0 * (product / ((n - 1.0) * n));
  }
  const double mean = (n * n - squares) * 0.25;
  const double standardError = std::sqrt(variance);
  const double z = standardError == 0.0 ? 0.0 : (sums.statistic - mean) / standardError;
  return {sums.statistic, standardError, z};
}

double JonckheereCounts::CountBefore(std::size_t place) const noexcept {
  double count = 0.0;
  for (std::size_t node = place; node > 0; node &= node - 1) count += tree[node];
  return count;
}

void JonckheereCounts::AddCount(std::size_t place, double weight) noexcept {
  for (std::size_t node = place + 1; node < tree.size(); node += node & (~node + 1)) {
    tree[node] += weight;
  }
}

void JonckheereCounts::CloseRun() {
  std::vector<std::size_t>& places = run.Places();
  std::sort(places.begin(), places.end());
  double earlierInRun = 0.0;
  for (const std::size_t place : places) {
    const double weight = run.WeightOf(place);
    sums.statistic += weight * (CountBefore(place) + 0.5 * earlierInRun);
    earlierInRun += weight;
  }
  for (const std::size_t place : places) AddCount(place, run.WeightOf(place));
  sums.ties.Add(static_cast<double>(run.Total()));
  run.Clear();
}

void JonckheerePair::CloseRun() noexcept {
  sums.statistic += laterInRun * (earlierBelow + 0.5 * earlierInRun);
  sums.ties.Add(earlierInRun + laterInRun);
  earlierBelow += earlierInRun;
  earlierInRun = 0.0;
  laterInRun = 0.0;
}
