#include "kit/statistics/jonckheere.h"

#include <cmath>

#include "kit/statistics/mann_whitney.h"

namespace {

constexpr double kVarianceTolerance = 1e-12;

double VarianceOf(double e, double f, std::span<const double> sizes) {
  double n = 0.0;
  double pairs = 0.0;
  double triples = 0.0;
  double cubes = 0.0;
  double between = 0.0;  // N (N - 1)(2N + 5) less its like of the groups
  for (const double size : sizes) {
    pairs += size * (size - 1.0);
    triples += (size - 2.0) * size * (size - 1.0);
    cubes += (2.0 * size + 5.0) * size * (size - 1.0);
    between += 6.0 * n * size * (n + size + 1.0);
    n += size;
  }
  const double all = (2.0 * n + 5.0) * (n - 1.0) * n;
  const double p = (f - 2.0 * e) * triples / (36.0 * n * (n - 1.0) * (n - 2.0));
  const double q = (between - 2.0 * f - 5.0 * e) / 72.0;
  const double s = pairs * e / (8.0 * n * (n - 1.0));
  const double magnitude =
      std::fabs(p) + (all + std::fabs(cubes) + 2.0 * f + 5.0 * e) / 72.0 + std::fabs(s);
  const double variance = p + q + s;
  return std::fabs(variance) <= kVarianceTolerance * magnitude ? 0.0 : variance;
}

}  // namespace

NormalFigures JonckheereTerpstra(double statistic, double tiedPairs, double tiedTriples,
                                 std::span<const double> groupSizes) {
  double n = 0.0;
  double comparisons = 0.0;
  for (const double size : groupSizes) {
    comparisons += n * size;
    n += size;
  }
  // t^3 - t = t (t - 1) + t^2 (t - 1)
  const double variance = n >= 3.0 ? VarianceOf(tiedPairs, tiedTriples, groupSizes)
                                   : MannWhitneyVariance(1.0, 1.0, tiedPairs + tiedTriples);
  return StandardizedFigures(statistic - comparisons * 0.5, std::sqrt(variance));
}
