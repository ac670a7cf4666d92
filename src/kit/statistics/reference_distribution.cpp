#include "kit/statistics/reference_distribution.h"

#include <cmath>
#include <numbers>

#include "arithmetic/elementary.h"

void ReferenceDistribution::SetFamily(std::string_view word) {
  family = word == "uniform"       ? Family::Uniform
           : word == "poisson"     ? Family::Poisson
           : word == "exponential" ? Family::Exponential
                                   : Family::Normal;
}

void ReferenceDistribution::UseNormalForPoisson() {
  stdDev = std::sqrt(mean);
  normalForPoisson = true;
}

double ReferenceDistribution::Cdf(double x) {
  switch (family) {
    case Family::Uniform:
      return (x - minimum) / (maximum - minimum);
    case Family::Poisson:
      if (!normalForPoisson) return PoissonCdf(x);
      break;
    case Family::Normal:
      break;
    case Family::Exponential: {
      double tail = 0.0;
      if (QDPower::Exponent(-x / mean, tail) == PowerStatus::Overflow) return QDMV::gMissingValue;
      return 1.0 - tail;
    }
  }
  return QDDistFun::CdfStdNorm((x - mean) / stdDev);
}

double ReferenceDistribution::RoughCdf(double x) {
  if (family != Family::Normal) return Cdf(x);
  // No figure: what the system's function differs by from another's is far below the margin.
  return 0.5 * std::erfc((mean - x) / (stdDev * std::numbers::sqrt2));
}

double ReferenceDistribution::PoissonCdf(double x) {
  if (x < 0.0) return 0.0;
  if (x < nextCount - 1.0) {
    nextCount = 0.0;
    poissonSum = 0.0;
  }
  const double logarithmOfMean = arithmetic::Log(mean);
  for (; nextCount <= x; nextCount += 1.0) {
    double term = 0.0;
    const double exponent =
        nextCount * logarithmOfMean - mean - QDDistFun::lyradnlgam(nextCount + 1.0);
    if (QDPower::Exponent(exponent, term) == PowerStatus::Overflow) return QDMV::gMissingValue;
    // Beyond the mean the terms fall: once one is 0, so are all that follow.
    if (term == 0.0 && nextCount > mean) break;
    poissonSum += term;
  }
  return poissonSum;
}
