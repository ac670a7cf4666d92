#include "kit/statistics/kruskal_wallis.h"

#include <algorithm>
#include <cmath>

#include "foundation/names.h"
#include "kit/statistics/mann_whitney.h"

namespace {

/// Share of the ranks' variation within the groups that counts as some.
constexpr double kLeastWithin = 1e-12;

}  // namespace

ChiSquareFigures KruskalWallis(std::span<const RankedGroup> groups, const DoubleDouble& tieSum) {
  double n = 0.0;
  for (const RankedGroup& group : groups) n += group.size;
  double between = 0.0;
  for (const RankedGroup& group : groups) {
    const double deviation = group.rankSum - group.size * (n + 1.0) * 0.5;
    between += deviation * deviation / group.size;
  }
  // N^3 - N = (N - 1) N (N + 1), of which the correction for ties leaves only this.
  const double untied = UntiedSum(n, tieSum);
  const double h = untied == 0.0 ? 0.0 : 12.0 * (n - 1.0) * between / untied;
  return ChiSquareOf(std::max(0.0, h), groups.size());
}

double DunnStandardError(double n1, double n2, double n, const DoubleDouble& tieSum) {
  return std::sqrt((1.0 / n1 + 1.0 / n2) * (UntiedSum(n, tieSum) / (12.0 * (n - 1.0))));
}

KruskalWallisEffects EffectsOf(double h, double k, double n) {
  KruskalWallisEffects effects{h / (n - 1.0), std::nullopt, std::nullopt};
  if (!(n > k)) return effects;
  effects.etaSquared = (h - k + 1.0) / (n - k);
  const double within = n - 1.0 - h;
  if (within > kLeastWithin * (n - 1.0)) {
    const double f = h / (k - 1.0) / (within / (n - k));
    effects.conover = {f, k - 1.0, n - k, QDDistFun::SfF(f, k - 1.0, n - k)};
  }
  return effects;
}
