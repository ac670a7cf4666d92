#include "kit/statistics/proportion_interval.h"

#include <algorithm>
#include <cmath>

#include "arithmetic/elementary.h"

ProportionEstimator::ProportionEstimator(std::int64_t successes, std::int64_t failures,
                                         double confidenceLevel)
    : a(static_cast<double>(successes)),
      b(static_cast<double>(failures)),
      n(a + b),
      proportion(a / n),
      level(confidenceLevel),
      isZero(std::abs(proportion) < QDPower::gMachineEpsilon),
      isOne(std::abs(proportion - 1.0) < QDPower::gMachineEpsilon) {}

ProportionInterval ProportionEstimator::ClopperPearson() const {
  const double alpha = (1.0 - level) * 0.5;
  ProportionInterval interval;
  if (!isZero) {
    const double f = QDDistFun::IdfF(alpha, 2.0 * a, 2.0 * (b + 1.0));
    interval.lower = 1.0 / ((b + 1.0) / (a * f) + 1.0);
  }
  if (!isOne) {
    const double f = QDDistFun::IdfF(1.0 - alpha, 2.0 * (a + 1.0), 2.0 * b);
    interval.upper = 1.0 / (b / ((a + 1.0) * f) + 1.0);
  }
  return interval;
}

ProportionInterval ProportionEstimator::Jeffreys() const {
  const double alpha = (1.0 - level) * 0.5;
  ProportionInterval interval;
  if (!isZero) interval.lower = QDDistFun::IdfBeta(alpha, a + 0.5, b + 0.5);
  if (!isOne) interval.upper = QDDistFun::IdfBeta(1.0 - alpha, a + 0.5, b + 0.5);
  return interval;
}

std::optional<ProportionInterval> ProportionEstimator::ProfileLikelihood() const {
  const double chiSquare = QDDistFun::IdfChi(level, 1.0);
  if (isZero || isOne) {
    double tail = 0.0;
    if (QDPower::Exponent(-(chiSquare / (2.0 * n)), tail) != PowerStatus::Success) {
      return std::nullopt;
    }
    return isZero ? ProportionInterval{0.0, 1.0 - tail} : ProportionInterval{tail, 1.0};
  }
  const ProportionInterval start = Jeffreys();
  const double lowerStart = proportion > start.lower ? start.lower : proportion * 0.5;
  const double upperStart = start.upper > proportion ? start.upper : (proportion + 1.0) * 0.5;
  return ProportionInterval{SolveProfile(lowerStart, chiSquare),
                            SolveProfile(upperStart, chiSquare)};
}

double ProportionEstimator::LogLikelihood(double x) const {
  if (!(x > 0.0 && x < 1.0)) return 0.0;
  return b * arithmetic::Log(1.0 - x) + a * arithmetic::Log(x);
}

double ProportionEstimator::SolveProfile(double start, double chiSquare) const {
  constexpr int kSteps = 50;
  constexpr int kHalvings = 20;
  constexpr double kTolerance = 1e-7;
  const double top = LogLikelihood(proportion);
  double f = LogLikelihood(start) - top + chiSquare * 0.5;
  double step = 1.0;
  int halvings = 0;
  double x = start;
  for (int i = 0; i < kSteps; ++i) {
    const double previous = x;
    x = x + (0.0 - x * step * (1.0 - x) * f / (a - n * x));
    bool improved = false;
    if (x > 0.0 && x < 1.0) {
      const double newF = LogLikelihood(x) - top + chiSquare * 0.5;
      improved = std::abs(f) > std::abs(newF);
      f = newF;
    }
    if (!improved) {
      step *= 0.5;
      ++halvings;
    }
    if (halvings == kHalvings) return x;
    const double difference = std::abs(x - previous);
    if (difference < kTolerance || difference / (std::abs(previous) + 1e-11) < kTolerance ||
        std::abs(f) < kTolerance) {
      break;
    }
  }
  return x;
}

namespace {

/// The normal quantile of a two-sided level.
double QuantileOfLevel(double confidenceLevel) {
  constexpr double kHalf = 0.5;
  return QDDistFun::IdfStdNorm(1.0 - (1.0 - confidenceLevel) * kHalf);
}

}  // namespace

ProportionInterval WilsonInterval(std::int64_t x, std::int64_t n, double confidenceLevel) {
  const auto units = static_cast<double>(n);
  const double p = static_cast<double>(x) / units;
  const double z = QuantileOfLevel(confidenceLevel);
  const double z2 = z * z;
  const double centre = p + z2 / (2.0 * units);
  const double reach = z * std::sqrt(p * (1.0 - p) / units + z2 / (4.0 * units * units));
  const double scale = 1.0 + z2 / units;
  return {x == 0 ? 0.0 : std::max((centre - reach) / scale, 0.0),
          x == n ? 1.0 : std::min((centre + reach) / scale, 1.0)};
}

ProportionInterval AgrestiCoullInterval(std::int64_t x, std::int64_t n, double confidenceLevel) {
  const double z = QuantileOfLevel(confidenceLevel);
  const double units = static_cast<double>(n) + z * z;
  const double p = (static_cast<double>(x) + z * z * 0.5) / units;
  const double reach = z * std::sqrt(p * (1.0 - p) / units);
  return {std::max(p - reach, 0.0), std::min(p + reach, 1.0)};
}
