#include "kit/statistics/lilliefors.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "arithmetic/elementary.h"

LillieforsSig NormalLillieforsSig(std::int64_t n, double d) {
  constexpr double kMostUnits = 100.0;
  constexpr double kPower = 0.49;
  constexpr double kLargestSig = 0.1;  // that the formula holds for
  const auto units = static_cast<double>(n);
  const double k = units > kMostUnits ? d * arithmetic::Pow(units / kMostUnits, kPower) : d;
  const double m = std::min(units, kMostUnits);
  const double scaled = m + 2.78019;
  const double sig = arithmetic::Exp(-7.01256 * k * k * scaled + 2.99587 * k * std::sqrt(scaled) -
                                     0.122119 + 0.974598 / std::sqrt(m) + 1.67997 / m);
  if (sig > kLargestSig) return {LillieforsSig::Kind::AtLeast, kLargestSig};
  return {LillieforsSig::Kind::Value, sig};
}

LillieforsSig ExponentialLillieforsSig(std::int64_t n, double d) {
  struct UpperPoint {
    double d;
    double sig;
  };
  static constexpr UpperPoint kPoints[] = {
      {0.926, 0.15}, {0.990, 0.10}, {1.094, 0.05}, {1.190, 0.025}, {1.308, 0.01}};
  const auto units = static_cast<double>(n);
  const double root = std::sqrt(units);
  const double modified = (d - 0.2 / units) * (root + 0.26 + 0.5 / root);
  const UpperPoint* const above =
      std::find_if(std::begin(kPoints), std::end(kPoints),
                   [modified](const UpperPoint& point) { return point.d >= modified; });
  if (above == std::end(kPoints)) return {LillieforsSig::Kind::AtMost, std::end(kPoints)[-1].sig};
  if (above->d == modified) return {LillieforsSig::Kind::Value, above->sig};
  if (above == std::begin(kPoints)) return {LillieforsSig::Kind::AtLeast, above->sig};
  const UpperPoint& below = above[-1];
  const double share = (modified - below.d) / (above->d - below.d);
  return {LillieforsSig::Kind::Value, arithmetic::Exp((1.0 - share) * arithmetic::Log(below.sig) +
                                                      share * arithmetic::Log(above->sig))};
}
