// Tails of the gamma and beta distributions for every shape a double can hold.
//
// Small shapes are Boost's: its series and continued fractions, in long double. They need about the
// square root of the larger shape in steps, and their leading factor x^a y^b / B(a, b) is a product
// of powers that nearly cancel, so neither time nor digits last for large ones.
//
// From shape kLargeShape on (both shapes, for beta) the tail away from the mean is integrated, with
// t = ln x (gamma) or ln(x / y) (beta) as variable:
//   tail = density(t) * integral over s >= 0 of exp(h(t +- s) - h(t)),
//   h(t) = a t - e^t   or   a t - (a + b) ln(1 + e^t).
// h is concave and written below in differences that do not cancel, the integrand is positive,
// starts at 1 and falls: the double-exponential rule on a fixed set of points has all digits for
// each shape. The leading factor is taken apart as in C. Loader, Fast and accurate computation of
// binomial probabilities (2000): Stirling remainders, and a deviance that is a sum of positive
// terms.

#include "qdcommon/tails.h"

#include <array>
#include <boost/math/special_functions/beta.hpp>
#include <boost/math/special_functions/erf.hpp>
#include <boost/math/special_functions/gamma.hpp>
#include <cmath>

#include "qdcommon/quadrature.h"

namespace QDMath_700 {

namespace {

namespace policies = boost::math::policies;

// Boost answers with infinity or not-a-number instead of throwing, in the type it was asked in.
using Policy = policies::policy<policies::domain_error<policies::ignore_error>,
                                policies::pole_error<policies::ignore_error>,
                                policies::overflow_error<policies::ignore_error>,
                                policies::underflow_error<policies::ignore_error>,
                                policies::denorm_error<policies::ignore_error>,
                                policies::rounding_error<policies::ignore_error>,
                                policies::evaluation_error<policies::ignore_error>,
                                policies::indeterminate_result_error<policies::ignore_error>,
                                policies::promote_float<false>, policies::promote_double<false>>;

constexpr Real kTwoPi = 6.283185307179586476925286766559006L;
constexpr Real kHalfLogTwoPi = 0.918938533204672741780329736405618L;

// At 20, StirlingRemainder's first term left out is 4e-21.
constexpr Real kLargeShape = 20;

// From here on a beta variable whose other shape is below kLargeShape is a gamma variable: what the
// leading term of the expansion leaves out is below shape * ln(p)^2 / kHugeShape^2.
constexpr Real kHugeShape = 1e11L;

// e^s - 1 - s, without loss around 0.
Real ExpLess(Real s) {
  if (!(std::fabs(s) < 0.5L)) return std::expm1(s) - s;
  Real sum = 0;
  for (int k = 18; k >= 3; --k) sum = (1 + sum) * s / static_cast<Real>(k);
  return (1 + sum) * s * s / 2;
}

// The tail on the side of `excess`, away from the mean, and its complement.
Tails FromTail(Real tail, Real density, bool isUpper) {
  return isUpper ? Tails{1 - tail, tail, density} : Tails{tail, 1 - tail, density};
}

}  // namespace

Real LogLess(Real ratio, Real d) {
  if (!(std::fabs(d) <= 0.5L)) return std::log(ratio) - d;
  // With r = d / (2 + d): ln(1 + d) = 2 atanh(r) and 2 r - d = -d r.
  const Real r = d / (2 + d);
  const Real square = r * r;
  Real sum = 0;
  for (int k = 43; k >= 3; k -= 2) sum = sum * square + 1 / static_cast<Real>(k);
  return -d * r + 2 * r * square * sum;
}

Real LogGamma(Real x) { return boost::math::lgamma(x, Policy()); }

Real NormalQuantile(Real p) { return -std::sqrt(2.0L) * boost::math::erfc_inv(2 * p, Policy()); }

Real StirlingRemainder(Real a) {
  if (a < kLargeShape) return LogGamma(a) - (a - 0.5L) * std::log(a) + a - kHalfLogTwoPi;
  static constexpr std::array<Real, 7> kTerms = {
      1 / 156.0L, -691 / 360360.0L, 1 / 1188.0L, -1 / 1680.0L, 1 / 1260.0L, -1 / 360.0L, 1 / 12.0L};
  const Real square = 1 / (a * a);
  Real sum = 0;
  for (const Real term : kTerms) sum = sum * square + term;
  return sum / a;
}

Tails GammaTails(Real a, Real x) {
  const Real excess = x - a;
  const Real density =
      std::sqrt(a / kTwoPi) * std::exp(a * LogLess(x / a, excess / a) - StirlingRemainder(a));
  if (a < kLargeShape) {
    return {boost::math::gamma_p(a, x, Policy()), boost::math::gamma_q(a, x, Policy()), density};
  }
  const bool isUpper = excess > 0;
  const Real sign = isUpper ? 1 : -1;
  const Real scale = 1 / std::fmax(std::fabs(excess), std::sqrt(x));
  const Real integral = TailRule::Get().Integrate(scale, [&](Real distance) {
    const Real s = sign * distance;
    return -excess * s - x * ExpLess(s);
  });
  return FromTail(density * integral, density, isUpper);
}

Tails BetaTails(Real a, Real b, Real x, Real y, Real excess) {
  if (x > y) {
    const Tails mirrored = BetaTails(b, a, y, x, -excess);
    return {mirrored.upper, mirrored.lower, mirrored.density};
  }
  const Real n = a + b;
  const Real deviance =
      a * LogLess(x * (n / a), excess / a) + b * LogLess(y * (n / b), -excess / b);
  const Real density =
      std::sqrt(a / kTwoPi * (b / n)) *
      std::exp(deviance + StirlingRemainder(n) - StirlingRemainder(a) - StirlingRemainder(b));
  if (std::fmin(a, b) < kLargeShape) {
    if (b > kHugeShape) {
      const Tails limit = GammaTails(a, -(b + (a - 1) / 2) * std::log1p(-x));
      return {limit.lower, limit.upper, density};
    }
    if (a > kHugeShape) {
      const Tails limit = GammaTails(b, -(a + (b - 1) / 2) * std::log(x));
      return {limit.upper, limit.lower, density};
    }
    return {boost::math::ibeta(a, b, x, Policy()), boost::math::ibetac(a, b, x, Policy()), density};
  }
  const bool isUpper = excess > 0;
  const Real sign = isUpper ? 1 : -1;
  const Real scale = 1 / std::fmax(std::fabs(excess), std::sqrt(n * x * y));
  const Real integral = TailRule::Get().Integrate(scale, [&](Real distance) {
    const Real s = sign * distance;
    // h(t + s) - h(t) = a s - n ln(1 + z)
    const Real z = x * std::expm1(s);
    return -excess * s - n * (LogLess(1 + z, z) + x * ExpLess(s));
  });
  return FromTail(density * integral, density, isUpper);
}

}  // namespace QDMath_700
