#include "kit/statistics/kolmogorov_smirnov.h"

#include <cmath>
#include <limits>

#include "arithmetic/elementary.h"

namespace {

constexpr double kPi = 3.141592653589793;
constexpr double kTwoPi = 6.283185307179586;
constexpr double kSmallest = 0.27;     // below, the distribution function is 0 to ten digits
constexpr double kSeriesChange = 1.0;  // where the other series takes over
constexpr double kLargest = 3.1;       // from here on the tail is below 1e-8

}  // namespace

bool KolmogorovSmirnovSig(double z, double& sig) {
  if (!(z >= 0.0) || z >= kLargest) {
    sig = 0.0;
    return true;
  }
  if (z < kSmallest) {
    sig = 1.0;
    return true;
  }
  const bool isSmall = z < kSeriesChange;
  const double exponent = isSmall ? -(kPi * kPi / 8.0) / (z * z) : -2.0 * z * z;
  double q = 0.0;
  if (QDPower::Exponent(exponent, q) != PowerStatus::Success) return false;
  const double q2 = q * q;
  const double q4 = q2 * q2;
  const double q8 = q4 * q4;
  const double q16 = q8 * q8;
  sig = isSmall ? 1.0 - std::sqrt(kTwoPi) / z * q * (1.0 + q8 + q16 * q8)
                : 2.0 * (q - q4 + q8 * q - q16);
  return true;
}

double LimitingKolmogorovSig(double z) {
  if (!(z >= 0.0)) return std::numeric_limits<double>::quiet_NaN();
  const bool isSmall = z < kSeriesChange;
  // exp(-unit k^2) for the odd k of one series; with changing signs for all k of the other.
  const double unit = isSmall ? kPi * kPi / 8.0 / (z * z) : 2.0 * z * z;
  double sum = 0.0;
  double term = 1.0;
  for (double k = 1.0; std::abs(term) > sum * QDPower::gMachineEpsilon; k += isSmall ? 2.0 : 1.0) {
    term = arithmetic::Exp(-unit * k * k);
    if (!isSmall && std::fmod(k, 2.0) == 0.0) term = -term;
    sum += term;
  }
  if (sum == 0.0) return isSmall ? 1.0 : 0.0;
  return isSmall ? 1.0 - std::sqrt(kTwoPi) / z * sum : 2.0 * sum;
}
