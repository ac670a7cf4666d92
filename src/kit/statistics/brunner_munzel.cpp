#include "kit/statistics/brunner_munzel.h"

#include <algorithm>
#include <cmath>

#include "foundation/names.h"

std::optional<BrunnerMunzelFigures> BrunnerMunzel(double excess, const std::array<double, 2>& sizes,
                                                  const std::array<double, 2>& scatter,
                                                  double confidenceLevel) {
  constexpr double kDoubledSquared = 4.0;
  // Each group's part of the variance of theta.
  const auto partOf = [&](std::size_t group) {
    const double n = sizes[group];
    const double other = sizes[1 - group];
    return scatter[group] / (kDoubledSquared * (n - 1.0)) / (n * other * other);
  };
  const double first = partOf(0);
  const double second = partOf(1);
  const double variance = first + second;
  if (!(variance > 0.0)) return std::nullopt;

  BrunnerMunzelFigures figures;
  const double standardError = std::sqrt(variance);
  const double t = excess / standardError;
  const double df =
      variance * variance / (first * first / (sizes[0] - 1.0) + second * second / (sizes[1] - 1.0));
  figures.statistic = t;
  figures.degreeOfFreedom = df;
  // The square of t is an F with 1 degree of freedom above.
  figures.sigs.twoSided = QDDistFun::SfF(t * t, 1.0, df);
  const double beyond = figures.sigs.twoSided * 0.5;
  figures.sigs.less = t < 0.0 ? beyond : 1.0 - beyond;
  figures.sigs.greater = t < 0.0 ? 1.0 - beyond : beyond;
  const double reach = std::sqrt(QDDistFun::IdfF(confidenceLevel, 1.0, df)) * standardError;
  figures.interval = {std::max(0.0, 0.5 + excess - reach), std::min(1.0, 0.5 + excess + reach)};
  return figures;
}
