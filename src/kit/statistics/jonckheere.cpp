#include "kit/statistics/jonckheere.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <vector>

#include "kit/statistics/mann_whitney.h"
#include "kit/statistics/mann_whitney_exact.h"

namespace {

constexpr double kVarianceTolerance = 1e-12;

double VarianceOf(const DoubleDouble& e, const DoubleDouble& f, std::span<const double> sizes) {
  double n = 0.0;
  DoubleDouble pairs;
  DoubleDouble triples;
  double cubes = 0.0;
  DoubleDouble between;  // N (N - 1)(2N + 5) less its like of the groups
  for (const double size : sizes) {
    const DoubleDouble ordered = DoubleDouble::Product(size, size - 1.0);
    pairs = pairs + ordered;
    triples = triples + ordered * (size - 2.0);
    cubes += (2.0 * size + 5.0) * ordered.high;
    between = between + DoubleDouble::Product(n, size) * (6.0 * (n + size + 1.0));
    n += size;
  }
  const double all = (2.0 * n + 5.0) * (n - 1.0) * n;
  const DoubleDouble p = (f - e * 2.0) * triples / (36.0 * n) / (n - 1.0) / (n - 2.0);
  const DoubleDouble q = (between - f * 2.0 - e * 5.0) / 72.0;
  const DoubleDouble s = pairs * e / (8.0 * n) / (n - 1.0);
  const double magnitude = std::fabs(p.high) +
                           (all + std::fabs(cubes) + 2.0 * f.high + 5.0 * e.high) / 72.0 +
                           std::fabs(s.high);
  const double variance = (p + q + s).high;
  return std::fabs(variance) <= kVarianceTolerance * magnitude ? 0.0 : variance;
}

/// The distribution of the sum of two independent whole numbers from 0 on.
std::vector<double> Convolve(const std::vector<double>& a, const std::vector<double>& b) {
  std::vector<double> sums(a.size() + b.size() - 1, 0.0);
  for (std::size_t i = 0; i < a.size(); ++i) {
    double* const target = sums.data() + i;
    for (std::size_t j = 0; j < b.size(); ++j) target[j] += a[i] * b[j];
  }
  return sums;
}

}  // namespace

NormalFigures JonckheereTerpstra(double statistic, const DoubleDouble& tiedPairs,
                                 const DoubleDouble& tiedTriples,
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

double JonckheereSigToward(double overallZ, double z) {
  const double size = std::fabs(z);
  return (z < 0.0) == (overallZ < 0.0) ? QDDistFun::SfStdNorm(size) : QDDistFun::CdfStdNorm(size);
}

ExactTails JonckheereExact(std::int64_t statistic, std::span<const std::int64_t> groupSizes) {
  std::vector<double> probabilities{1.0};
  std::int64_t before = groupSizes.front();
  for (const std::int64_t size : groupSizes.subspan(1)) {
    const std::vector<double> ofGroup = MannWhitneyProbabilities(size, before);
    const bool isLonger = ofGroup.size() > probabilities.size();
    probabilities = isLonger ? Convolve(probabilities, ofGroup) : Convolve(ofGroup, probabilities);
    before += size;
  }
  // The distribution is symmetric.
  const auto lowerTail = [&probabilities](std::int64_t end) {
    return std::accumulate(probabilities.begin(), probabilities.begin() + end + 1, 0.0);
  };
  const auto largest = static_cast<std::int64_t>(probabilities.size()) - 1;
  ExactTails sigs{CutToOne(lowerTail(statistic)), CutToOne(lowerTail(largest - statistic))};
  sigs.twoSided = CutToOne(2.0 * std::min(sigs.less, sigs.greater));
  return sigs;
}

OrderedAssociation AssociationOf(double statistic, double pairs, double n,
                                 const DoubleDouble& tiedPairs) {
  const double excess = 2.0 * statistic - pairs;
  OrderedAssociation association{excess / pairs, std::nullopt};
  const double untied = (DoubleDouble::Product(n, n - 1.0) - tiedPairs).high * 0.5;
  if (untied > 0.0) association.kendallsTauB = excess / (std::sqrt(pairs) * std::sqrt(untied));
  return association;
}
