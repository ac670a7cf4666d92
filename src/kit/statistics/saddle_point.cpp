#include "kit/statistics/saddle_point.h"

#include <cmath>
#include <limits>

#include "arithmetic/elementary.h"
#include "foundation/names.h"

namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr double kHalf = 0.5;

/// ln n! less Stirling's (n + 1/2) ln n - n + ln(2 pi) / 2, for n from 1.
double StirlingError(double n) {
  constexpr double kSeriesFrom = 16.0;  // the first term left out is below 1e-16
  if (n < kSeriesFrom) {
    return QDDistFun::lyradnlgam(n + 1.0) - (n + kHalf) * arithmetic::Log(n) + n -
           arithmetic::Log(kTwoPi) * kHalf;
  }
  // Bernoulli's numbers over 2 j (2 j - 1).
  constexpr double kTerms[] = {1.0 / 12,    -1.0 / 360, 1.0 / 1260,
                               -1.0 / 1680, 1.0 / 1188, -691.0 / 360360};
  const double inverse = 1.0 / n;
  const double square = inverse * inverse;
  double sum = 0.0;
  double power = inverse;
  for (const double term : kTerms) {
    sum += term * power;
    power *= square;
  }
  return sum;
}

}  // namespace

double DevianceTerm(double x, double mean) {
  if (x == 0.0) return mean;
  const double difference = x - mean;
  constexpr double kNear = 0.1;
  if (!(std::abs(difference) < kNear * (x + mean)))
    return x * arithmetic::Log(x / mean) - difference;
  // With v = difference / (x + mean), ln(x / mean) is 2 artanh v.
  const double v = difference / (x + mean);
  double power = 2.0 * x * v;
  double sum = difference * v;
  double previous = sum - 1.0;
  for (double j = 3.0; sum != previous; j += 2.0) {
    previous = sum;
    power *= v * v;
    sum += power / j;
  }
  return sum;
}

double LogBinomialPoint(std::int64_t k, std::int64_t n, double p) {
  if (k < 0 || k > n) return -std::numeric_limits<double>::infinity();
  const auto trials = static_cast<double>(n);
  const auto successes = static_cast<double>(k);
  const auto failures = static_cast<double>(n - k);
  if (k == 0) return trials * arithmetic::Log1p(-p);
  if (k == n) return trials * arithmetic::Log(p);
  return StirlingError(trials) - StirlingError(successes) - StirlingError(failures) -
         DevianceTerm(successes, trials * p) - DevianceTerm(failures, trials * (1.0 - p)) +
         kHalf * arithmetic::Log(trials / (kTwoPi * successes * failures));
}

double PoissonPoint(std::int64_t k, double mean) {
  if (k == 0) return arithmetic::Exp(-mean);
  const auto count = static_cast<double>(k);
  return arithmetic::Exp(-StirlingError(count) - DevianceTerm(count, mean)) /
         std::sqrt(kTwoPi * count);
}
